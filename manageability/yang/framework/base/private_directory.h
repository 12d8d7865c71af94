// A temporary directory private to this process.
#ifndef YFW_BASE_PRIVATE_DIRECTORY_H
#define YFW_BASE_PRIVATE_DIRECTORY_H

#include <filesystem>
#include <string>

#include "base/descriptor.h"

namespace yfw {

// Created in the directory for temporary files, accessible to its user only, and removed with the object.
// Creating one also removes what killed processes left behind under the same name.
class PrivateDirectory {
public:
    // `name`: prefix of the directory's name. Throws Error when it cannot be created.
    explicit PrivateDirectory(const std::string &name);
    ~PrivateDirectory();
    PrivateDirectory(const PrivateDirectory &) = delete;
    PrivateDirectory &operator=(const PrivateDirectory &) = delete;

    const std::filesystem::path &path() const { return path_; }

private:
    std::filesystem::path path_;
    Descriptor lock_; // marks it as in use; the system releases it when the process ends
};

} // namespace yfw

#endif

// A directory of this process alone, for as long as it lives.
#ifndef YFW_BASE_PRIVATE_DIRECTORY_H
#define YFW_BASE_PRIVATE_DIRECTORY_H

#include <filesystem>
#include <string>

#include "base/descriptor.h"

namespace yfw {

// Made among the temporary files, for its user only, and removed with the object. What processes that were
// killed left behind under the same name is removed when the next one is made.
class PrivateDirectory {
public:
    // `name`: what its name begins with. Throws Error when it cannot be made.
    explicit PrivateDirectory(const std::string &name);
    ~PrivateDirectory();
    PrivateDirectory(const PrivateDirectory &) = delete;
    PrivateDirectory &operator=(const PrivateDirectory &) = delete;

    const std::filesystem::path &path() const { return path_; }

private:
    std::filesystem::path path_;
    Descriptor lock_; // tells others that it is in use; the system lets go of it when the process ends
};

} // namespace yfw

#endif

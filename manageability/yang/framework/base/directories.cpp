#include "base/directories.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/descriptor.h"

namespace yfw {
namespace {

std::error_code last_error() {
    return {errno, std::system_category()};
}

bool exists_as_directory(const std::filesystem::path &path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}

} // namespace

std::error_code make_private_directories(const std::filesystem::path &directory) {
    if (directory.empty() || exists_as_directory(directory))
        return {};
    const std::filesystem::path above = directory.parent_path();
    if (const std::error_code error = make_private_directories(above))
        return error;
    if (::mkdir(directory.c_str(), S_IRWXU) != 0) {
        const std::error_code error = last_error();
        return exists_as_directory(directory) ? std::error_code()
                                              : error; // another process may have been faster
    }
    return sync_directory(above.empty() ? "." : above);
}

std::error_code sync_directory(const std::filesystem::path &directory) {
    const Descriptor opened(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.is_open())
        return errno == EACCES ? std::error_code() : last_error();
    return ::fsync(opened.get()) == 0 || errno == EINVAL ? std::error_code() : last_error();
}

} // namespace yfw

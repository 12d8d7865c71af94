// Writes a file with rules.
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/directories.h"
#include "base/error.h"
#include "base/system_error.h"
#include "device/access/nacm_rules.h"

namespace yfw::access {
namespace {

[[noreturn]] void fail(const std::filesystem::path &file) {
    throw Error(ErrorTag::operation_failed, file.string(),
                "the access rules cannot be written: " + system_error_text());
}

// Behind links, so that they stay.
std::filesystem::path real_path(const std::filesystem::path &file) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(file, error);
    return error ? file : real;
}

bool keeps_access(int file, const struct stat &former) {
    return ::fchown(file, former.st_uid, former.st_gid) == 0 && ::fchmod(file, former.st_mode & ALLPERMS) == 0;
}

} // namespace

void replace_rules_text(const std::filesystem::path &file, const std::string &text) {
    const std::filesystem::path real = real_path(file);
    struct stat former {};
    if (::stat(real.c_str(), &former) != 0 || ::faccessat(AT_FDCWD, real.c_str(), W_OK, AT_EACCESS) != 0)
        fail(file);
    std::string made = real.string() + ".new-XXXXXX";
    Descriptor written(::mkostemp(made.data(), O_CLOEXEC));
    if (!written.is_open())
        fail(file);
    if (!write_all(written.get(), text) || !keeps_access(written.get(), former) ||
        ::fsync(written.get()) != 0 || ::rename(made.c_str(), real.c_str()) != 0) {
        const int error = errno;
        ::unlink(made.c_str());
        errno = error;
        fail(file);
    }
    if (sync_directory(real.has_parent_path() ? real.parent_path() : "."))
        fail(file);
}

} // namespace yfw::access

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

std::filesystem::path real_path(const std::filesystem::path &file) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(file, error);
    return error ? file : real;
}

bool keeps_access(int file, const struct stat &former) {
    return ::fchown(file, former.st_uid, former.st_gid) == 0 && ::fchmod(file, former.st_mode & ALLPERMS) == 0;
}

} // namespace

NewRulesFile::NewRulesFile(std::filesystem::path file, const std::string &text)
    : file_(std::move(file)), real_(real_path(file_)), made_(real_.string() + ".new-XXXXXX") {
    struct stat former {};
    if (::stat(real_.c_str(), &former) != 0 || ::faccessat(AT_FDCWD, real_.c_str(), W_OK, AT_EACCESS) != 0)
        fail(file_);
    const Descriptor written(::mkostemp(made_.data(), O_CLOEXEC));
    if (!written.is_open())
        fail(file_);
    if (write_all(written.get(), text) && keeps_access(written.get(), former) && ::fsync(written.get()) == 0)
        return;
    const int error = errno;
    ::unlink(made_.c_str());
    errno = error;
    fail(file_);
}

NewRulesFile::~NewRulesFile() {
    if (!made_.empty())
        ::unlink(made_.c_str());
}

void NewRulesFile::replace_former() {
    if (::rename(made_.c_str(), real_.c_str()) != 0)
        fail(file_);
    made_.clear();
    // The rules are in force; after a crash of the machine, the former ones may be.
    static_cast<void>(sync_directory(real_.has_parent_path() ? real_.parent_path() : "."));
}

} // namespace yfw::access

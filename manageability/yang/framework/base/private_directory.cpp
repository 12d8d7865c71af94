#include "base/private_directory.h"

#include <cstdlib>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/error.h"
#include "base/system_error.h"

namespace yfw {
namespace {

constexpr const char *lock_name = "lock";

bool is_own(const std::filesystem::path &path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid();
}

// A directory without a lock is still being created.
bool is_left_behind(const std::filesystem::path &directory) {
    const Descriptor lock(open((directory / lock_name).c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
    return lock.is_open() && flock(lock.get(), LOCK_EX | LOCK_NB) == 0;
}

void remove_left_behind(const std::filesystem::path &among, const std::string &name) {
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator(among, error))
        if (entry.path().filename().string().rfind(name + "-", 0) == 0 && is_own(entry.path()) &&
            is_left_behind(entry.path()))
            std::filesystem::remove_all(entry.path(), error);
}

[[noreturn]] void fail(const std::filesystem::path &path) {
    throw Error(ErrorTag::operation_failed, path.string(), "cannot be created: " + system_error_text());
}

std::filesystem::path directory_for_temporary_files() {
    std::error_code error;
    std::filesystem::path directory = std::filesystem::temp_directory_path(error);
    if (error)
        throw Error(ErrorTag::operation_failed, "", "there is no directory for temporary files: see TMPDIR");
    return directory;
}

} // namespace

PrivateDirectory::PrivateDirectory(const std::string &name) {
    const std::filesystem::path among = directory_for_temporary_files();
    remove_left_behind(among, name);
    std::string pattern = (among / (name + "-XXXXXX")).string();
    if (mkdtemp(pattern.data()) == nullptr)
        fail(pattern);
    path_ = pattern;
    lock_ = Descriptor(open((path_ / lock_name).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock_.is_open() || flock(lock_.get(), LOCK_EX | LOCK_NB) != 0)
        fail(path_ / lock_name);
}

PrivateDirectory::~PrivateDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace yfw

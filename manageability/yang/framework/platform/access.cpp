// The process's own `access`, replacing the C library's. A plug-in uses it to test whether the system
// database's library is installed. The current platform answers for paths below "/pkg/", so no file has to
// exist there; every other path goes to the kernel.
//
// It can be called from anywhere in the process, even before main and before a sanitizer's runtime is up, so it
// allocates nothing, locks nothing and calls no library function except syscall.
#include <cerrno>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/platform.h"

namespace {

constexpr char package_directory[] = "/pkg/";
constexpr char system_database_library[] = "/pkg/lib/libsysdb.so";

#define YFW_UNSANITIZED __attribute__((no_sanitize("address", "undefined")))

YFW_UNSANITIZED bool starts_with(const char *text, const char *prefix) noexcept {
    while (*prefix != '\0' && *text == *prefix) {
        ++text;
        ++prefix;
    }
    return *prefix == '\0';
}

YFW_UNSANITIZED bool equals(const char *a, const char *b) noexcept {
    while (*a != '\0' && *a == *b) {
        ++a;
        ++b;
    }
    return *a == *b;
}

int failed(int error) noexcept {
    errno = error;
    return -1;
}

int answer_below_package_directory(const char *path, int mode) noexcept {
    if ((mode & ~(R_OK | W_OK | X_OK)) != 0) {
        return failed(EINVAL);
    }
    const yfw::platform::Platform *platform = yfw::platform::Platform::current();
    if (platform == nullptr || !platform->settings().library_present ||
        !equals(path, system_database_library)) {
        return failed(ENOENT);
    }
    return (mode & (W_OK | X_OK)) != 0 ? failed(EACCES) : 0;
}

} // namespace

extern "C" YFW_UNSANITIZED int access(const char *path, int mode) noexcept {
    // <unistd.h> declares the path as never null, but it may be: reading it through a volatile keeps the check.
    // The kernel answers a null path with EFAULT.
    const char *const volatile unchecked = path;
    const char *const checked = unchecked;
    if (checked != nullptr && starts_with(checked, package_directory)) {
        return answer_below_package_directory(checked, mode);
    }
    return static_cast<int>(syscall(SYS_faccessat, AT_FDCWD, checked, mode));
}

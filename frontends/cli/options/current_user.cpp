#include "frontends/cli/options/current_user.h"

#include <cstdlib>

#include <pwd.h>
#include <unistd.h>

namespace yfw::cli {

std::string current_user() {
    if (const char *invoker = std::getenv("SUDO_USER"); invoker != nullptr && *invoker != '\0')
        return invoker;
    const passwd *user = getpwuid(getuid());
    return user != nullptr ? user->pw_name : std::to_string(getuid());
}

} // namespace yfw::cli

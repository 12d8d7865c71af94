#include "frontends/cli/output/terminal.h"

#include <cstdlib>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

namespace yfw::cli {
namespace {

constexpr size_t usual_width = 80;

std::string_view environment(const char *name) {
    const char *value = std::getenv(name);
    return value != nullptr ? value : "";
}

} // namespace

bool is_terminal(std::FILE *to) {
    return ::isatty(::fileno(to)) == 1;
}

std::optional<size_t> terminal_width() {
    if (!is_terminal(stdout))
        return std::nullopt;
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual_width;
}

bool shows_colors() {
    return is_terminal(stdout) && environment("NO_COLOR").empty() && environment("TERM") != "dumb";
}

} // namespace yfw::cli

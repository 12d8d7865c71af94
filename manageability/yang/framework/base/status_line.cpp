#include "base/status_line.h"

#include <cstdlib>
#include <mutex>
#include <string>

#include <sys/ioctl.h>
#include <unistd.h>

#include "base/printable.h"
#include "base/text_width.h"

namespace yfw {
namespace {

// The column that a cursor leaves a full line by.
constexpr size_t reserved = 1;
constexpr size_t usual_width = 80;

struct Shown {
    std::mutex lock;
    bool is_there = false;
};

Shown &shown() {
    static Shown one;
    return one;
}

size_t width() {
    winsize size{};
    const bool is_known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > reserved;
    return (is_known ? size.ws_col : usual_width) - reserved;
}

void write_to_terminal(const std::string &text) {
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
}

constexpr const char *erase_line = "\r\x1b[K";

} // namespace

bool has_status_line() {
    const char *terminal = std::getenv("TERM");
    return ::isatty(STDERR_FILENO) == 1 && terminal != nullptr && std::string_view(terminal) != "dumb" &&
           *terminal != '\0';
}

void show_status(std::string_view text) {
    if (!has_status_line())
        return;
    const std::lock_guard guard(shown().lock);
    write_to_terminal(erase_line + fitted(printable(text), width()));
    shown().is_there = true;
}

void clear_status() {
    const std::lock_guard guard(shown().lock);
    if (shown().is_there)
        write_to_terminal(erase_line);
    shown().is_there = false;
}

} // namespace yfw

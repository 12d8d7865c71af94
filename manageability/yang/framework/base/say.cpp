#include "base/say.h"

#include <iostream>
#include <string>

#include "base/printable.h"
#include "base/status_line.h"

namespace yfw {
namespace {

// In one piece, since threads and processes may share standard error.
void say_line(std::string line) {
    clear_status();
    line += '\n';
    std::cerr << line << std::flush;
}

} // namespace

void say(std::string_view text) {
    say_line("yfw: " + printable(text));
}

void warn(std::string_view text) {
    say_line("yfw: warning: " + printable(text));
}

} // namespace yfw

// What standard output is.
#ifndef YFW_FRONTENDS_CLI_OUTPUT_TERMINAL_H
#define YFW_FRONTENDS_CLI_OUTPUT_TERMINAL_H

#include <cstddef>
#include <cstdio>
#include <optional>

namespace yfw::cli {

// Whether a terminal shows what is written.
bool is_terminal(std::FILE *to);

// The columns of the terminal that standard output is; nothing when it is something else.
std::optional<size_t> terminal_width();

// Whether standard output shows colours: it is a terminal, which TERM does not call dumb, and NO_COLOR is not
// set to anything.
bool shows_colors();

} // namespace yfw::cli

#endif

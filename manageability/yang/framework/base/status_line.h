// One line on a terminal that says what the program is doing, gone when something else is printed.
#ifndef YFW_BASE_STATUS_LINE_H
#define YFW_BASE_STATUS_LINE_H

#include <string_view>

namespace yfw {

// Whether standard error is a terminal that can take a line back.
bool has_status_line();

// Shows the text, cut to the terminal's width, in place of the last one. Does nothing where there is no such
// terminal. Any thread may call these.
void show_status(std::string_view text);

// Takes the line away, if there is one.
void clear_status();

} // namespace yfw

#endif

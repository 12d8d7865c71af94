// What the program tells its user beside the answers.
#ifndef YFW_BASE_SAY_H
#define YFW_BASE_SAY_H

#include <string_view>

namespace yfw {

// Prints one line on standard error: "yfw: " and the text, which may quote what neighbors announced.
void say(std::string_view text);

// The same as a warning.
void warn(std::string_view text);

} // namespace yfw

#endif

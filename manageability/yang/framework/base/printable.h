// Text of neighbors and clients in lines for people.
#ifndef YFW_BASE_PRINTABLE_H
#define YFW_BASE_PRINTABLE_H

#include <string>
#include <string_view>

namespace yfw {

// The text as a part of one line, safe for a terminal: control characters and bytes that are no UTF-8 are
// written as \x and two digits, and characters that end a line, reorder it or cannot be seen as \u and four to
// six digits. Everything else stays as it is, backslashes included. Every line that the program prints goes
// through here: a neighbor may announce any bytes as its name.
std::string printable(std::string_view text);

// Whether printable() leaves the character as it is. Formats with an escape of their own, such as JSON, use it
// for the others.
bool is_printable(char32_t character);

} // namespace yfw

#endif

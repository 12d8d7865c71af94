// How many columns text takes on a terminal.
#ifndef YFW_BASE_TEXT_WIDTH_H
#define YFW_BASE_TEXT_WIDTH_H

#include <cstddef>
#include <string>
#include <string_view>

namespace yfw {

// The columns that a printable text (see printable.h) takes: none for a combining character, two for a wide one
// such as 路.
size_t text_width(std::string_view text);

// The text or, if it takes more columns than that, its beginning with "…" at the end.
std::string fitted(std::string_view text, size_t columns);

} // namespace yfw

#endif

// UTF-8, RFC 3629.
#ifndef YFW_BASE_UTF8_H
#define YFW_BASE_UTF8_H

#include <optional>
#include <string_view>

namespace yfw {

// What some programs write at the beginning of a text, and which is not part of it (RFC 3629 section 6).
constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";

// Removes the first character from the text, which must not be empty, and returns it. Bytes that are no UTF-8
// are removed one at a time, and nothing is returned.
std::optional<char32_t> take_character(std::string_view &text);

// The longest beginning of the text of at most `size` bytes that does not end inside a character. Text that is
// no UTF-8 may be cut anywhere.
std::string_view cut_between_characters(std::string_view text, size_t size);

} // namespace yfw

#endif

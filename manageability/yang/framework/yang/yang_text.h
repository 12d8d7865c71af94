// The characters a YANG string may contain, and quoting long texts.
#ifndef YFW_YANG_YANG_TEXT_H
#define YFW_YANG_YANG_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace yfw::yang {

// Whether the text is UTF-8 and consists of characters allowed by RFC 7950 section 9.4. Neighbors may send
// devices arbitrary bytes, and texts may have been cut inside a character.
bool is_yang_text(std::string_view text);

// The text as a literal of a path: in single quotes or, if it has one, in double quotes; double quotes in it
// are doubled then.
std::string quoted_literal(std::string_view text);

// The text, or its beginning of at most `most` bytes followed by "...". UTF-8 stays valid.
std::string shortened(std::string_view text, size_t most);

} // namespace yfw::yang

#endif

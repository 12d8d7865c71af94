// The characters a YANG string may contain.
#ifndef YFW_YANG_YANG_TEXT_H
#define YFW_YANG_YANG_TEXT_H

#include <string_view>

namespace yfw::yang {

// Whether the text is UTF-8 and consists of characters allowed by RFC 7950 section 9.4. Neighbors may send
// devices arbitrary bytes, and texts may have been cut inside a character.
bool is_yang_text(std::string_view text);

} // namespace yfw::yang

#endif

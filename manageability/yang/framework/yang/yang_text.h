// What a YANG string may hold.
#ifndef YFW_YANG_YANG_TEXT_H
#define YFW_YANG_YANG_TEXT_H

namespace yfw::yang {

// Whether the text is UTF-8 of characters that RFC 7950 section 9.4 allows. Devices hear all kinds of bytes
// from their neighbors, and texts may have been cut within a character.
bool is_yang_text(const char *text);

} // namespace yfw::yang

#endif

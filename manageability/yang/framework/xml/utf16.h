// Documents in UTF-16.
#ifndef YFW_XML_UTF16_H
#define YFW_XML_UTF16_H

#include <optional>
#include <string>
#include <string_view>

namespace yfw::xml {

// The document in UTF-8 if it is in UTF-16, as its byte order mark or its first character says (XML appendix
// F); nothing if it is in another encoding. Throws DocumentError for UTF-16 that is not well formed.
std::optional<std::string> from_utf16(std::string_view document);

} // namespace yfw::xml

#endif

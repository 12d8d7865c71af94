// Text in XML documents.
#ifndef YFW_XML_TEXT_H
#define YFW_XML_TEXT_H

#include <string>
#include <string_view>

namespace yfw::xml {

// Whether it is white space only (XML section 2.3), or empty.
bool is_white_space(std::string_view text);

// Appends character data as a document's text, which parsers read back unchanged: a literal carriage return
// would be read as a line feed.
void append_escaped(std::string &to, std::string_view text);

} // namespace yfw::xml

#endif

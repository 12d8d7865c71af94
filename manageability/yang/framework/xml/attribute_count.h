// How many attributes the tags of a document have, told before it is parsed.
#ifndef YFW_XML_ATTRIBUTE_COUNT_H
#define YFW_XML_ATTRIBUTE_COUNT_H

#include <cstddef>
#include <string_view>

namespace yfw::xml {

// The most attributes that a tag of the text has, declarations of namespaces counted. The text need not be well
// formed. libxml2 compares each attribute of a tag with each other one before it tells anybody of the tag, so
// their number is limited before it sees them.
size_t most_attributes_of_a_tag(std::string_view text);

} // namespace yfw::xml

#endif

// Counts the attributes in a document's tags before it is parsed.
#ifndef YFW_XML_ATTRIBUTE_COUNT_H
#define YFW_XML_ATTRIBUTE_COUNT_H

#include <cstddef>
#include <string_view>

namespace yfw::xml {

// The largest number of attributes in any tag of the text, including namespace declarations. The text need not
// be well-formed. libxml2 compares every pair of a tag's attributes before it reports the tag, so their number
// has to be limited beforehand.
size_t most_attributes_of_a_tag(std::string_view text);

} // namespace yfw::xml

#endif

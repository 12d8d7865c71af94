// Documents that a terminal shows: the same data, with what could command the terminal, reorder text or forge
// lines written as the format's own escapes.
#ifndef YFW_FRONTENDS_CLI_OUTPUT_SHOWN_DOCUMENT_H
#define YFW_FRONTENDS_CLI_OUTPUT_SHOWN_DOCUMENT_H

#include <string>
#include <string_view>

namespace yfw::cli {

// JSON, or a piece of it that ends between two characters: such characters become \u and four digits.
std::string shown_json(std::string_view json);

// XML without comments, CDATA and processing instructions, or a piece of it that ends between two nodes. They
// become character references, and so do line ends and tabs in the text of an element.
std::string shown_xml(std::string_view xml);

} // namespace yfw::cli

#endif

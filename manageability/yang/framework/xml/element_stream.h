// Elements as they are read, without a tree of them.
#ifndef YFW_XML_ELEMENT_STREAM_H
#define YFW_XML_ELEMENT_STREAM_H

#include <istream>
#include <string_view>

namespace yfw::xml {

// Takes what is read. Every function returns whether to go on.
class ElementHandler {
public:
    virtual ~ElementHandler() = default;

    // `ns`: NULL without a namespace. Equal names and namespaces have the same address, valid until the end.
    virtual bool start(const char *name, const char *ns, bool has_attributes) = 0;
    virtual bool end() = 0;
    // Character data of the open element, in several pieces perhaps; references and CDATA sections resolved,
    // comments and processing instructions left out.
    virtual bool text(std::string_view piece) = 0;
};

// Reads a sequence of elements in UTF-8, with or without an XML declaration, in bounded memory. Returns whether
// all of it was read: false when it is in another encoding, not well-formed (XML, Namespaces in XML), has a
// document type, or the handler did not go on.
bool read_elements(std::istream &from, ElementHandler &handler);

} // namespace yfw::xml

#endif

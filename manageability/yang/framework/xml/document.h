// XML documents, parsed once, with limits.
#ifndef YFW_XML_DOCUMENT_H
#define YFW_XML_DOCUMENT_H

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "xml/element.h"

struct _xmlDoc;

namespace yfw::xml {

// Limits on the cost of a document.
struct Limits {
    size_t depth = 128; // levels of elements
    // Each takes some hundred bytes of memory.
    size_t elements = 500000;
    // Of an element and its ancestors together, including namespace declarations.
    size_t attributes = 1000;
};

// The text is rejected: not well-formed (XML, Namespaces in XML), has a document type, or exceeds a limit. The
// message is a single line with the line number if known.
class DocumentError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// One document with one root, in UTF-8 whatever its declaration says (RFC 6241 section 3). Safe for concurrent
// reads.
class Document {
public:
    // Throws DocumentError.
    explicit Document(std::string_view text, const Limits &limits = {});

    Element root() const;

    // Puts elements without a namespace into this one, except those below an xmlns="".
    void adopt(std::string_view ns);

    // Owned by the Document; valid as long as it lives.
    const _xmlDoc *raw() const { return document_.get(); }

private:
    struct Free {
        void operator()(_xmlDoc *document) const;
    };
    std::unique_ptr<_xmlDoc, Free> document_;
};

} // namespace yfw::xml

#endif

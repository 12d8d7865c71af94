// XML documents, parsed once and within limits.
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

// What a document may cost whoever reads it.
struct Limits {
    size_t depth = 128; // levels of elements
    // Each takes some hundred bytes of memory.
    size_t elements = 500000;
    // Of an element together with those around it, declarations of namespaces counted.
    size_t attributes = 1000;
};

// The text is no document that is taken: not well formed (XML, Namespaces in XML), with a document type, or
// beyond a limit. The message is one line that names the line of the text where it is known.
class DocumentError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// One document with one root, in UTF-8 whatever its declaration says (RFC 6241 section 3). May be read by
// several threads.
class Document {
public:
    // Throws DocumentError.
    explicit Document(std::string_view text, const Limits &limits = {});

    Element root() const;

    // Puts the elements without a namespace into this one, but for those below an xmlns="".
    void adopt(std::string_view ns);

    // The document's only owner knows it for as long as it lives.
    const _xmlDoc *raw() const { return document_.get(); }

private:
    struct Free {
        void operator()(_xmlDoc *document) const;
    };
    std::unique_ptr<_xmlDoc, Free> document_;
};

} // namespace yfw::xml

#endif

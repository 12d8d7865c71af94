#include "xml/document.h"

#include <climits>
#include <new>
#include <optional>
#include <vector>

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "xml/attribute_count.h"

namespace yfw::xml {
namespace {

const xmlChar *bytes(const char *text) {
    return reinterpret_cast<const xmlChar *>(text);
}

// Tracks the parser's open elements, and stops the parse when a limit is exceeded.
class Bounds {
public:
    explicit Bounds(const Limits &limits) : limits_(limits) {}

    // False: skip the element.
    bool open(size_t attributes) {
        attributes_ += attributes;
        open_.push_back(attributes);
        if (open_.size() > limits_.depth)
            return refuse("elements are nested deeper than " + std::to_string(limits_.depth));
        if (++elements_ > limits_.elements)
            return refuse("a document has more than " + std::to_string(limits_.elements) + " elements");
        if (attributes_ > limits_.attributes)
            return refuse("an element has more than " + std::to_string(limits_.attributes) +
                          " attributes, including those of its ancestors");
        return true;
    }

    void close() {
        attributes_ -= open_.back();
        open_.pop_back();
    }

    bool refuse(std::string why) {
        if (!refused_.has_value())
            refused_ = std::move(why);
        return false;
    }
    const std::optional<std::string> &refused() const { return refused_; }

private:
    const Limits limits_;
    std::vector<size_t> open_; // number of attributes of each open element
    size_t attributes_ = 0;
    size_t elements_ = 0;
    std::optional<std::string> refused_;
};

Bounds &bounds_of(xmlParserCtxt *parser) {
    return *static_cast<Bounds *>(parser->_private);
}

// ---- what the parser calls -----------------------------------------------------------------------------

void on_start(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri,
              int namespace_count, const xmlChar **namespaces, int attribute_count, int defaulted,
              const xmlChar **attributes) {
    auto *parser = static_cast<xmlParserCtxt *>(context);
    if (!bounds_of(parser).open(static_cast<size_t>(namespace_count) + static_cast<size_t>(attribute_count))) {
        xmlStopParser(parser);
        return;
    }
    xmlSAX2StartElementNs(context, name, prefix, uri, namespace_count, namespaces, attribute_count, defaulted,
                          attributes);
}

void on_end(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri) {
    auto *parser = static_cast<xmlParserCtxt *>(context);
    if (bounds_of(parser).refused().has_value())
        return;
    bounds_of(parser).close();
    xmlSAX2EndElementNs(context, name, prefix, uri);
}

void on_document_type(void *context, const xmlChar *, const xmlChar *, const xmlChar *) {
    auto *parser = static_cast<xmlParserCtxt *>(context);
    bounds_of(parser).refuse("a document type is not allowed");
    xmlStopParser(parser);
}

// ---- the parse -----------------------------------------------------------------------------------------

struct FreeParser {
    void operator()(xmlParserCtxt *parser) const { xmlFreeParserCtxt(parser); }
};

using Parser = std::unique_ptr<xmlParserCtxt, FreeParser>;

Parser parser_with(Bounds &bounds) {
    static const bool is_ready = (xmlInitParser(), true);
    static_cast<void>(is_ready);
    Parser parser(xmlNewParserCtxt());
    if (parser == nullptr)
        throw std::bad_alloc();
    parser->_private = &bounds;
    parser->sax->startElementNs = on_start;
    parser->sax->endElementNs = on_end;
    parser->sax->internalSubset = on_document_type;
    return parser;
}

std::string one_line(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
        text.pop_back();
    for (char &c : text)
        c = c == '\n' ? ' ' : c;
    return text;
}

[[noreturn]] void fail(const xmlParserCtxt &parser) {
    const xmlError &error = parser.lastError;
    const std::string why =
        error.message != nullptr ? one_line(error.message) : "the document is not well formed";
    throw DocumentError(error.line > 0 ? "line " + std::to_string(error.line) + ": " + why : why);
}

bool declares_default(const xmlNode *element) {
    for (const xmlNs *declared = element->nsDef; declared != nullptr; declared = declared->next)
        if (declared->prefix == nullptr)
            return true;
    return false;
}

void put_below_into(xmlNode *parent, xmlNs *ns) {
    for (xmlNode *child = parent->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE || declares_default(child))
            continue;
        child->ns = child->ns != nullptr ? child->ns : ns;
        put_below_into(child, ns);
    }
}

} // namespace

void Document::Free::operator()(_xmlDoc *document) const {
    xmlFreeDoc(document);
}

Document::Document(std::string_view text, const Limits &limits) {
    if (text.size() > static_cast<size_t>(INT_MAX))
        throw DocumentError("the document is longer than " + std::to_string(INT_MAX) + " bytes");
    if (text.find('\0') != std::string_view::npos) // libxml2 takes a NUL after the root for the end
        throw DocumentError("the document contains a NUL character");
    if (most_attributes_of_a_tag(text) > limits.attributes)
        throw DocumentError("an element has more than " + std::to_string(limits.attributes) + " attributes");
    if (text.find_first_not_of(" \t\r\n") == std::string_view::npos)
        throw DocumentError("the document has no element");
    Bounds bounds(limits);
    const Parser parser = parser_with(bounds);
    document_.reset(
        xmlCtxtReadMemory(parser.get(), text.data(), static_cast<int>(text.size()), nullptr, "UTF-8",
                          XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NOENT));
    if (bounds.refused().has_value())
        throw DocumentError(*bounds.refused());
    if (document_ == nullptr || parser->nsWellFormed == 0 || xmlDocGetRootElement(document_.get()) == nullptr)
        fail(*parser);
}

Element Document::root() const {
    return Element(xmlDocGetRootElement(document_.get()));
}

void Document::adopt(std::string_view ns) {
    xmlNode *root = xmlDocGetRootElement(document_.get());
    // NULL when the root itself declares a default namespace.
    if (xmlNs *adopting = xmlNewNs(root, bytes(std::string(ns).c_str()), nullptr)) {
        root->ns = root->ns != nullptr ? root->ns : adopting;
        put_below_into(root, adopting);
    }
}

} // namespace yfw::xml

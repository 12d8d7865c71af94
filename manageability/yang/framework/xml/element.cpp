#include "xml/element.h"

#include <memory>
#include <new>

#include <libxml/tree.h>

namespace yfw::xml {
namespace {

const char *chars(const xmlChar *text) {
    return text != nullptr ? reinterpret_cast<const char *>(text) : "";
}

const xmlNode *next_element(const xmlNode *node) {
    while (node != nullptr && node->type != XML_ELEMENT_NODE)
        node = node->next;
    return node;
}

std::string without_surrounding_space(const std::string &text) {
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return "";
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

struct FreeDocument {
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
};

struct FreeBuffer {
    void operator()(xmlBuffer *buffer) const { xmlBufferFree(buffer); }
};

} // namespace

std::string_view Element::name() const {
    return chars(node_->name);
}

std::string_view Element::ns() const {
    return node_->ns != nullptr ? chars(node_->ns->href) : "";
}

std::string Element::character_data() const {
    std::string text;
    for (const xmlNode *child = node_->children; child != nullptr; child = child->next)
        if (child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE)
            text += chars(child->content);
    return text;
}

std::string Element::text() const {
    return without_surrounding_space(character_data());
}

std::vector<Element::Attribute> Element::attributes() const {
    std::vector<Attribute> found;
    for (const xmlAttr *at = node_->properties; at != nullptr; at = at->next) {
        std::string value;
        for (const xmlNode *part = at->children; part != nullptr; part = part->next)
            value += chars(part->content);
        found.push_back({chars(at->name), at->ns != nullptr ? chars(at->ns->prefix) : "",
                         at->ns != nullptr ? chars(at->ns->href) : "", std::move(value)});
    }
    return found;
}

std::optional<std::string> Element::attribute(std::string_view wanted) const {
    for (Attribute &attribute : attributes())
        if (attribute.name == wanted)
            return std::move(attribute.value);
    return std::nullopt;
}

Prefixes Element::prefixes() const {
    Prefixes found;
    for (const xmlNode *at = node_; at != nullptr && at->type == XML_ELEMENT_NODE; at = at->parent)
        for (const xmlNs *declared = at->nsDef; declared != nullptr; declared = declared->next)
            if (declared->prefix != nullptr)
                found.emplace(chars(declared->prefix), chars(declared->href)); // the innermost declaration wins
    return found;
}

std::optional<std::string> Element::namespace_of(std::string_view prefix) const {
    for (const xmlNode *at = node_; at != nullptr && at->type == XML_ELEMENT_NODE; at = at->parent)
        for (const xmlNs *declared = at->nsDef; declared != nullptr; declared = declared->next)
            if (prefix == chars(declared->prefix))
                return chars(declared->href);
    return std::nullopt;
}

std::vector<Element> Element::children() const {
    std::vector<Element> found;
    for (const xmlNode *child = next_element(node_->children); child != nullptr;
         child = next_element(child->next))
        found.emplace_back(child);
    return found;
}

std::optional<Element> Element::child(std::string_view wanted) const {
    for (const xmlNode *child = next_element(node_->children); child != nullptr;
         child = next_element(child->next))
        if (Element(child).is(ns(), wanted))
            return Element(child);
    return std::nullopt;
}

// The copy redeclares the namespaces that the element inherits.
std::string Element::print() const {
    const std::unique_ptr<xmlDoc, FreeDocument> copy(xmlNewDoc(nullptr));
    xmlNode *root = copy != nullptr ? xmlDocCopyNode(const_cast<xmlNode *>(node_), copy.get(), 1) : nullptr;
    if (root == nullptr)
        throw std::bad_alloc();
    xmlDocSetRootElement(copy.get(), root);
    for (const auto &[prefix, ns] : prefixes())
        xmlNewNs(root, reinterpret_cast<const xmlChar *>(ns.c_str()),
                 reinterpret_cast<const xmlChar *>(prefix.c_str())); // fails if already declared
    const std::unique_ptr<xmlBuffer, FreeBuffer> text(xmlBufferCreate());
    if (text == nullptr || xmlNodeDump(text.get(), copy.get(), root, 0, 0) < 0)
        throw std::bad_alloc();
    return chars(xmlBufferContent(text.get()));
}

} // namespace yfw::xml

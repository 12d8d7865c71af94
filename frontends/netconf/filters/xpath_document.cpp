#include <cstdint>
#include <new>

#include <libxml/tree.h>

#include "frontends/netconf/filters/xpath_evaluation.h"

namespace yfw::netconf {
namespace {

const xmlChar *bytes(const char *text) {
    return reinterpret_cast<const xmlChar *>(text);
}

template <class Made> Made *made(Made *what) {
    if (what == nullptr)
        throw std::bad_alloc();
    return what;
}

} // namespace

void XPathDocument::Free::operator()(_xmlDoc *document) const {
    xmlFreeDoc(document);
}

// Names are interned in the document's dictionary.
XPathDocument::XPathDocument(const std::vector<const lyd_node *> &forests)
    : document_(made(xmlNewDoc(bytes("1.0")))) {
    document_->dict = made(xmlDictCreate());
    for (const lyd_node *forest : forests)
        for (const lyd_node *top = forest; top != nullptr; top = top->next)
            add(reinterpret_cast<xmlNode *>(document_.get()), top);
}

// Declared on the document's first element, which outlives the others.
_xmlNs *XPathDocument::namespace_for(const lys_module *module) {
    for (const auto &[known, ns] : namespaces_)
        if (known == module)
            return ns;
    xmlNs *ns = made(xmlNewNs(nullptr, bytes(module->ns), nullptr));
    xmlNode *first = xmlDocGetRootElement(document_.get());
    ns->next = first->nsDef;
    first->nsDef = ns;
    return namespaces_.emplace_back(module, ns).second;
}

const lyd_node *XPathDocument::data_of(const _xmlNode *node) const {
    if (node->type == XML_TEXT_NODE)
        node = node->parent;
    const bool is_element = node != nullptr && node->type == XML_ELEMENT_NODE;
    return is_element ? nodes_.at(reinterpret_cast<uintptr_t>(node->_private) - 1) : nullptr;
}

_xmlNode *XPathDocument::element_of(const lyd_node *data) const {
    for (size_t place = places_.size(); place < nodes_.size(); place++)
        places_.emplace(nodes_[place], place);
    const auto place = places_.find(data);
    return place != places_.end() ? elements_[place->second] : nullptr;
}

void XPathDocument::add(_xmlNode *parent, const lyd_node *data) {
    const auto *name = made(xmlDictLookup(document_->dict, bytes(data->schema->name), -1));
    xmlNode *node = made(xmlNewDocNodeEatName(document_.get(), nullptr, const_cast<xmlChar *>(name), nullptr));
    xmlAddChild(parent, node);
    node->ns = namespace_for(data->schema->module);
    nodes_.push_back(data);
    elements_.push_back(node);
    node->_private = reinterpret_cast<void *>(nodes_.size()); // its position, from 1
    if ((data->schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0)
        xmlAddChild(node, made(xmlNewDocText(document_.get(), bytes(lyd_get_value(data)))));
    for (const lyd_node *child = lyd_child(data); child != nullptr; child = child->next)
        add(node, child);
}

} // namespace yfw::netconf

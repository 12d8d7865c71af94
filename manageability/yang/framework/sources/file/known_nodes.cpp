#include "sources/file/known_nodes.h"

#include <algorithm>

#include "yang/leaf_type.h"
#include "yang/node_kind.h"

namespace yfw::sources {
namespace {

// Whether the text of a value alone says what it means: prefixes depend on the element.
bool needs_no_prefixes(const lysc_type *type) {
    constexpr LY_DATA_TYPE others[] = {LY_TYPE_IDENT, LY_TYPE_INST, LY_TYPE_UNION, LY_TYPE_UNKNOWN};
    return std::find(std::begin(others), std::end(others), type->basetype) == std::end(others);
}

} // namespace

KnownNode::KnownNode(const lysc_node *node) : schema(node) {
    if (yang::is_term(node)) {
        is_plain = needs_no_prefixes(yang::leaf_type(node));
        check = std::make_unique<yang::ValueCheck>(node);
        return;
    }
    is_plain = (node->nodetype & (LYS_CONTAINER | LYS_LIST)) != 0;
    for (const lysc_node *child = lysc_node_child(node); child != nullptr && lysc_is_key(child);
         child = child->next)
        keys.push_back(child);
}

KnownNode *KnownNodes::find(const lysc_node *parent, const char *name, const char *ns) {
    const lys_module *module = ns != nullptr ? ly_ctx_get_module_implemented_ns(context_, ns) : nullptr;
    const lysc_node *schema = module != nullptr ? lys_find_child(parent, module, name, 0, 0, 0) : nullptr;
    if (schema == nullptr)
        return nullptr;
    std::unique_ptr<KnownNode> &node = nodes_[schema];
    if (node == nullptr)
        node = std::make_unique<KnownNode>(schema);
    return node.get();
}

KnownNode *KnownNodes::top(const char *name, const char *ns) {
    return find(nullptr, name, ns);
}

KnownNode *KnownNodes::child(KnownNode &parent, const char *name, const char *ns) {
    for (const KnownNode::Child &known : parent.children)
        if (known.name == name && known.ns == ns)
            return known.node;
    KnownNode *node = find(parent.schema, name, ns);
    if (node != nullptr)
        parent.children.push_back({name, ns, node});
    return node;
}

void KnownNodes::forget_names() {
    for (auto &[schema, node] : nodes_)
        node->children.clear();
}

} // namespace yfw::sources

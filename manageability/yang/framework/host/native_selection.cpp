#include "host/native_selection.h"

#include "base/error.h"
#include "yang/path_words.h"

namespace yfw::host {
namespace {

[[noreturn]] void unknown(const NativePath &path) {
    throw Error(ErrorTag::operation_failed, path.path,
                "the mapping reads a path that the native models do not have");
}

SelectedNode &find_or_add(std::vector<std::unique_ptr<SelectedNode>> &nodes, const lysc_node *schema) {
    for (const auto &node : nodes)
        if (node->node == schema)
            return *node;
    nodes.push_back(std::make_unique<SelectedNode>());
    nodes.back()->node = schema;
    return *nodes.back();
}

} // namespace

const SelectedNode *SelectedNode::child(const lysc_node *schema) const {
    for (const auto &candidate : children)
        if (candidate->node == schema)
            return candidate.get();
    return nullptr;
}

SelectedNode &NativeSelection::tree_for(const NativePath &path, std::string_view top) {
    const lysc_node *schema = schemas_.native_root(path.ns, top);
    if (schema == nullptr)
        unknown(path);
    return find_or_add(trees_, schema);
}

void NativeSelection::add(const NativePath &path) {
    yang::PathWords words(path.path);
    std::string_view word;
    if (!words.next(word))
        unknown(path);
    SelectedNode *at = &tree_for(path, word);
    while (words.next(word)) {
        const lysc_node *schema = yang::schema_child(at->node, word);
        if (schema == nullptr)
            unknown(path);
        at = &find_or_add(at->children, schema);
    }
    at->whole = true;
    if (path.value.has_value() && lysc_is_key(at->node))
        at->value = path.value;
}

const SelectedNode *NativeSelection::tree(const lysc_node *top) const {
    for (const auto &tree : trees_)
        if (tree->node == top)
            return tree.get();
    return nullptr;
}

} // namespace yfw::host

#include "device/suspension.h"

#include <algorithm>

#include "base/error.h"
#include "yang/edit_instance.h"
#include "yang/forest.h"
#include "yang/schema_place.h"

namespace yfw::device {
namespace {

const lysc_node *found(const yang::Schemas &schemas, const host::MappingDescription &mapping,
                       const std::string &module, const std::string &path) {
    const lysc_node *node = schemas.find(module, path);
    if (node == nullptr)
        throw Error(ErrorTag::invalid_value, mapping.file.string(),
                    "member \"openconfig.suspensions\" names " + path + ", which module " + module +
                        " does not have");
    return node;
}

// The instances of a schema node at or below these siblings.
void collect(lyd_node *siblings, const lysc_node *wanted, std::vector<lyd_node *> &instances) {
    for (lyd_node *node = siblings; node != nullptr; node = node->next) {
        if (node->schema == wanted)
            instances.push_back(node);
        else if (yang::is_at_or_below(wanted, node->schema))
            collect(lyd_child(node), wanted, instances);
    }
}

} // namespace

Suspensions::Suspensions(const yang::Schemas &schemas, const host::MappingDescription &mapping,
                         const lyd_node *configuration) {
    const std::string &openconfig = mapping.modules.openconfig.front();
    for (const host::Suspension &suspension : mapping.suspensions) {
        const lysc_node *leaf = found(schemas, mapping, openconfig, suspension.leaf);
        const lyd_node *instance = yang::instance_of(leaf, configuration);
        if (instance == nullptr || suspension.value != lyd_get_value(instance))
            continue;
        for (const std::string &path : suspension.nodes)
            held_.push_back(
                {leaf, found(schemas, mapping, openconfig, path), suspension.leaf + " is " + suspension.value});
        for (const host::NativeNode &node : suspension.native)
            native_.push_back(found(schemas, mapping, node.module, node.path));
    }
}

const std::string *Suspensions::reason(const lysc_node *node) const {
    if ((node->flags & LYS_CONFIG_R) != 0)
        return nullptr;
    for (const Held &held : held_)
        if (node != held.leaf && yang::is_at_or_below(node, held.node))
            return &held.reason;
    return nullptr;
}

bool Suspensions::is_cause(const lysc_node *leaf) const {
    return std::any_of(held_.begin(), held_.end(), [&](const Held &held) { return held.leaf == leaf; });
}

bool Suspensions::holds_all_below(const lysc_node *node) const {
    return holds(node) && std::none_of(held_.begin(), held_.end(),
                                       [&](const Held &held) { return yang::is_at_or_below(held.leaf, node); });
}

// Returns whether anything of the node remains.
bool Suspensions::hold_back_node(yang::EditNode &edit, const lyd_node *siblings) const {
    const lyd_node *present = yang::find_instance(siblings, edit);
    const bool is_suspended = holds_all_below(edit.node);
    if (yang::takes_away(edit.operation))
        return !is_suspended || present != nullptr;
    if (is_suspended && edit.operation == yang::Operation::replace && present != nullptr) {
        edit.operation = yang::Operation::remove;
        yang::drop_deleted_content(edit);
        return true;
    }
    if ((edit.node->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0)
        return !is_suspended;
    const lyd_node *below = present != nullptr ? lyd_child(present) : nullptr;
    std::erase_if(edit.children,
                  [&](yang::EditNode &child) { return !child.is_key() && !hold_back_node(child, below); });
    const bool has_content = std::any_of(edit.children.begin(), edit.children.end(),
                                         [](const yang::EditNode &child) { return !child.is_key(); });
    if (has_content && is_suspended) // only removals are left
        edit.operation = yang::Operation::none;
    return has_content || !is_suspended;
}

void Suspensions::hold_back(yang::EditNode &edit, const lyd_node *present) const {
    if (any() && !hold_back_node(edit, present))
        edit.children.clear();
}

void Suspensions::lift(yang::DataTree &configuration) const {
    for (const Held &held : held_)
        if (const lyd_node *leaf = yang::instance_of(held.leaf, configuration.get()))
            yang::remove(configuration, const_cast<lyd_node *>(leaf));
}

void Suspensions::remove_native(yang::DataTree &native) const {
    for (const lysc_node *node : native_) {
        std::vector<lyd_node *> instances;
        collect(native.get(), node, instances);
        for (lyd_node *instance : instances)
            yang::remove(native, instance);
    }
}

} // namespace yfw::device

#include "host/answer_tree.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <type_traits>

#include "host/host_status.h"

namespace yfw::host {
namespace {

bool stands_on_path(const AnswerNode &candidate, const AnswerNode &target) {
    for (const AnswerNode *at = &target; at != nullptr; at = at->parent)
        if (at == &candidate)
            return true;
    return false;
}

const lys_module *module_of(const ly_ctx *context, const char *ns) {
    const lys_module *implemented = ly_ctx_get_module_implemented_ns(context, ns);
    return implemented != nullptr ? implemented : ly_ctx_get_module_latest_ns(context, ns);
}

// Of all members zero.
template <class Entry> Entry *new_in(std::pmr::memory_resource &memory) {
    return new (memory.allocate(sizeof(Entry), alignof(Entry))) Entry{};
}

} // namespace

std::string keys_of(const AnswerEntry &entry) {
    std::string keys;
    for (const AnswerNode *key : entry.schema->keys) {
        const char *text = entry.slots[key->index].text;
        keys.append(text != nullptr ? text : "").push_back('\0');
    }
    return keys;
}

std::string path_of(const AnswerEntry &entry) {
    const AnswerNode &node = *entry.schema;
    if (node.parent == nullptr)
        return "";
    std::string path = path_of(*entry.parent) + "/";
    if (node.parent->schema == nullptr || node.parent->schema->module != node.schema->module)
        path.append(node.schema->module->name).append(":");
    path += node.schema->name;
    for (const AnswerNode *key : node.keys) {
        const std::string value = entry.slots[key->index].text;
        const char quote = value.find('\'') == std::string::npos ? '\'' : '"';
        path.append("[").append(key->schema->name).append("=") += quote + value + quote + "]";
    }
    return path;
}

AnswerTree::AnswerTree(const AnswerSchema &schema)
    : schema_(schema), root_(make_entry(schema.root(), nullptr)) {}

AnswerTree::~AnswerTree() {
    for (LeafHandle &handle : handles_)
        if (handle.node.value_ns != nullptr)
            qdos_named_free(handle.node.value_ns);
}

const char *AnswerTree::keep(std::string_view text) {
    char *to = static_cast<char *>(memory_.allocate(text.size() + 1, 1));
    std::memcpy(to, text.data(), text.size());
    to[text.size()] = '\0';
    return to;
}

AnswerEntry &AnswerTree::entry_of(tidl_yfw_datatree &node) {
    static_assert(std::is_standard_layout_v<EntryHandle> && offsetof(EntryHandle, node) == 0);
    return *reinterpret_cast<EntryHandle &>(node).entry;
}

tidl_yfw_datatree *AnswerTree::handle_of(AnswerEntry &entry) {
    if (entry.handle != nullptr)
        return entry.handle;
    auto *handle = static_cast<EntryHandle *>(memory_.allocate(sizeof(EntryHandle), alignof(EntryHandle)));
    *handle = EntryHandle{{}, &entry};
    const lysc_node *schema = entry.schema->schema;
    handle->node.name = schema != nullptr ? schema->name : "";
    handle->node.ns = schema != nullptr ? schema->module->ns : nullptr;
    handle->node.framework_private = static_cast<TreeOwner *>(this);
    entry.handle = &handle->node;
    return entry.handle;
}

AnswerEntry *AnswerTree::make_entry(const AnswerNode &schema, AnswerEntry *parent) {
    AnswerEntry *entry = schema.is_list() ? new_in<AnswerListEntry>(memory_) : new_in<AnswerEntry>(memory_);
    entry->schema = &schema;
    entry->parent = parent;
    const size_t count = schema.children.size();
    entry->slots = static_cast<AnswerSlot *>(memory_.allocate(count * sizeof(AnswerSlot), alignof(AnswerSlot)));
    std::fill_n(entry->slots, count, AnswerSlot{nullptr});
    return entry;
}

AnswerEntry &AnswerTree::current_child(AnswerEntry &parent, const AnswerNode &schema) {
    if (schema.is_list()) {
        AnswerList &list = list_at(parent, schema);
        return list.current != nullptr ? *list.current : append_entry(parent, schema);
    }
    AnswerSlot &slot = parent.slots[schema.index];
    if (slot.container == nullptr)
        slot.container = make_entry(schema, &parent);
    return *slot.container;
}

AnswerEntry &AnswerTree::reach(AnswerEntry &start, const AnswerNode &schema) {
    if (start.schema == &schema)
        return start;
    return current_child(reach(start, *schema.parent), schema);
}

AnswerEntry &AnswerTree::start_for(tidl_yfw_datatree &parent, const AnswerNode &target) {
    AnswerEntry &entry = entry_of(parent);
    return stands_on_path(*entry.schema, *target.parent) ? entry : *root_;
}

const AnswerNode *AnswerTree::resolve(tidl_yfw_datatree &parent, std::string_view path) const {
    if (path.empty() || path.front() != '/')
        return entry_of(parent).schema->child(path);
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return schema_.find(path);
}

// An add without a value keeps the existing one.
const char **AnswerTree::set_value(AnswerEntry &parent, const AnswerNode &target, const char *value) {
    AnswerSlot &slot = parent.slots[target.index];
    if (value != nullptr)
        record(target);
    if (target.is_leaf()) {
        if (value != nullptr) {
            const char *before = slot.text;
            slot.text = keep(value);
            if (target.is_key)
                index_key(parent, before, slot.text);
        }
        return &slot.text;
    }
    if (value == nullptr)
        return nullptr;
    AnswerLeafListValue **at = &slot.values;
    for (; *at != nullptr; at = &(*at)->next)
        if (std::strcmp((*at)->text, value) == 0)
            return &(*at)->text;
    *at = static_cast<AnswerLeafListValue *>(
        memory_.allocate(sizeof(AnswerLeafListValue), alignof(AnswerLeafListValue)));
    **at = {keep(value), nullptr};
    return &(*at)->text;
}

tidl_yfw_datatree *AnswerTree::hand_out(const char **text, const AnswerNode &target) {
    if (text == nullptr)
        return nullptr;
    LeafHandle &handle = handles_.emplace_back();
    handle.text = text;
    handle.node.name = target.schema->name;
    handle.node.ns = target.schema->module->ns;
    handle.node.value = *text;
    return &handle.node; // no owner: nothing can be added below a leaf
}

terrno AnswerTree::add(tidl_yfw_datatree &parent, const AddArguments &arguments) {
    const AnswerNode *target = resolve(parent, arguments.path);
    if (target == nullptr) {
        if (arguments.path[0] != '/')
            return status_unknown_path;
        unknown_paths_.emplace(arguments.path);
        if (arguments.slot != nullptr)
            *arguments.slot = nullptr;
        return YMAP_OK;
    }
    AnswerEntry &start = start_for(parent, *target);
    AnswerEntry &above = reach(start, *target->parent);
    if (target->is_leaf() || target->is_leaf_list()) {
        const char **text = set_value(above, *target, arguments.value);
        if (arguments.slot != nullptr)
            *arguments.slot = hand_out(text, *target);
        return YMAP_OK;
    }
    const bool opens_entry = target->is_list() && arguments.list_entry != 0;
    AnswerEntry &added = opens_entry ? append_entry(above, *target) : current_child(above, *target);
    if (arguments.slot != nullptr)
        *arguments.slot = handle_of(added);
    return YMAP_OK;
}

void AnswerTree::qualify_identities(const ly_ctx *context) {
    std::string_view ns; // of the last value; most are of the same
    const lys_module *module = nullptr;
    for (LeafHandle &handle : handles_) {
        tidl_yfw_datatree &node = handle.node;
        if ((node.framework_flags & YFW_FW_HAS_VALUE_NS) == 0 || node.value_ns == nullptr ||
            *handle.text == nullptr)
            continue;
        if (ns.data() == nullptr || ns != node.value_ns) {
            ns = node.value_ns;
            module = module_of(context, node.value_ns);
        }
        if (module != nullptr && std::strchr(*handle.text, ':') == nullptr)
            *handle.text = keep(std::string(module->name) + ":" + *handle.text);
    }
}

} // namespace yfw::host

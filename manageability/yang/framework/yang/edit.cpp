#include "yang/edit.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/error.h"
#include "yang/edit_instance.h"
#include "yang/identity_value.h"
#include "yang/node_kind.h"
#include "yang/refused_value.h"
#include "yang/yang_text.h"

namespace yfw::yang {
namespace {

constexpr std::array<std::pair<Operation, std::string_view>, 6> operation_words{{
    {Operation::merge, "merge"},
    {Operation::replace, "replace"},
    {Operation::create, "create"},
    {Operation::delete_existing, "delete"},
    {Operation::remove, "remove"},
    {Operation::none, "none"},
}};

std::string qualified(const lysc_node *leaf, const std::string &value) {
    return qualified_identity(reinterpret_cast<const lysc_node_leaf *>(leaf)->type, value);
}

void check_value(const Path &path, const std::string &value) {
    const lysc_node *leaf = path.back().node;
    if (!is_yang_text(value))
        throw Error(ErrorTag::invalid_value, to_string(path),
                    "contains bytes or characters that are not allowed in a YANG string");
    const LY_ERR status =
        lyd_value_validate(leaf->module->ctx, leaf, value.c_str(), value.size(), nullptr, nullptr, nullptr);
    ly_err_clean(leaf->module->ctx, nullptr);
    if (status == LY_EVALID)
        throw Error(ErrorTag::invalid_value, to_string(path), refused_value(leaf, value));
}

void check_target(const Path &path, const std::optional<std::string> &value, Operation operation) {
    const lysc_node *target = path.back().node;
    if (value.has_value() && !is_term(target))
        throw Error(ErrorTag::invalid_value, to_string(path), "takes no value because it is not a leaf");
    if (!value.has_value() && is_term(target) && !takes_away(operation))
        throw Error(ErrorTag::missing_element, to_string(path), "needs a value");
    if (value.has_value())
        check_value(path, *value);
}

const Predicate *predicate_for(const PathStep &step, const lysc_node *key, const std::string &place) {
    const Predicate *found = nullptr;
    for (const Predicate &predicate : step.predicates) {
        if (predicate.leaf != key)
            continue;
        if (found != nullptr)
            throw Error(ErrorTag::invalid_value, place,
                        "[" + std::string(key == step.node ? "." : key->name) + "='...'] is repeated");
        found = &predicate;
    }
    return found;
}

// The keys of a list step, in schema order.
std::vector<EditNode> keys_of(const PathStep &step, const std::string &place) {
    std::vector<EditNode> keys;
    if (step.node->nodetype != LYS_LIST)
        return keys;
    for (const lysc_node *key = lysc_node_child(step.node); key != nullptr && lysc_is_key(key);
         key = key->next) {
        const Predicate *predicate = predicate_for(step, key, place);
        if (predicate == nullptr)
            throw Error(ErrorTag::missing_element, place,
                        "the entry's key [" + std::string(key->name) + "='...'] is missing");
        keys.push_back({key, predicate->value, {}, Operation::none});
    }
    return keys;
}

bool same_keys(const EditNode &entry, const std::vector<EditNode> &keys) {
    return std::equal(
        keys.begin(), keys.end(), entry.children.begin(),
        entry.children.begin() + static_cast<std::ptrdiff_t>(std::min(keys.size(), entry.children.size())),
        [](const EditNode &a, const EditNode &b) { return a.node == b.node && a.value == b.value; });
}

void add_conditions(EditNode &to, const PathStep &step) {
    for (const Predicate &predicate : step.predicates)
        if (predicate.leaf != step.node && !lysc_is_key(predicate.leaf))
            to.conditions.push_back(predicate);
}

EditNode &child_for(EditNode &parent, const PathStep &step, const std::string &place) {
    std::vector<EditNode> keys = keys_of(step, place);
    for (EditNode &child : parent.children)
        if (child.node == step.node && same_keys(child, keys))
            return child;
    return parent.children.emplace_back(
        EditNode{step.node, std::nullopt, std::move(keys), Operation::none, true});
}

// Without a value, all values of a leaf-list are meant.
EditNode &values_for(EditNode &parent, const lysc_node *leaf_list, const std::optional<std::string> &value) {
    if (!value.has_value())
        std::erase_if(parent.children, [&](const EditNode &child) { return child.node == leaf_list; });
    for (EditNode &child : parent.children)
        if (child.node == leaf_list && child.value == value)
            return child;
    return parent.children.emplace_back(EditNode{leaf_list, value, {}, Operation::none});
}

EditNode &target_for(EditNode &parent, const PathStep &step, const std::optional<std::string> &value,
                     const std::string &place) {
    return step.node->nodetype == LYS_LEAFLIST ? values_for(parent, step.node, value)
                                               : child_for(parent, step, place);
}

// The value that an edit gives, or its path does.
std::optional<std::string> value_of(const Path &path, const std::optional<std::string> &given) {
    const PathStep &target = path.back();
    if (!is_term(target.node))
        return given;
    const Predicate *own = predicate_for(target, target.node, to_string(path));
    if (own == nullptr)
        return given.has_value() ? std::optional(qualified(target.node, *given)) : std::nullopt;
    const std::string value = qualified(target.node, own->value);
    if (given.has_value() && qualified(target.node, *given) != value)
        throw Error(ErrorTag::invalid_value, to_string(path), "cannot be set to another value than its path's");
    return value;
}

void check_key(const EditNode &leaf, const std::optional<std::string> &value, Operation operation,
               const std::string &place) {
    if (!leaf.is_key())
        return;
    if (takes_away(operation))
        throw Error(ErrorTag::bad_element, place, "a key cannot be deleted; delete its entry");
    if (leaf.value != value)
        throw Error(ErrorTag::invalid_value, place, "a key cannot be changed; its entry has another one");
}

} // namespace

std::string_view to_string(Operation operation) {
    for (const auto &[known, word] : operation_words)
        if (known == operation)
            return word;
    return "none";
}

std::optional<Operation> operation_from(std::string_view word) {
    for (const auto &[operation, known] : operation_words)
        if (known == word)
            return operation;
    return std::nullopt;
}

void add_edit(EditNode &root, const Path &path, const std::optional<std::string> &given, Operation operation) {
    const std::optional<std::string> value = value_of(path, given);
    check_target(path, value, operation);
    const std::string place = to_string(path);
    EditNode *at = &root;
    add_conditions(root, path.front());
    for (size_t i = 1; i < path.size(); i++) {
        // The node was deleted earlier and is now set again below: only the new content remains.
        if (takes_away(at->operation))
            at->operation = Operation::replace;
        at = i + 1 == path.size() ? &target_for(*at, path[i], value, place) : &child_for(*at, path[i], place);
        add_conditions(*at, path[i]);
    }
    check_key(*at, value, operation, place);
    if (!is_term(at->node))
        std::erase_if(at->children, [](const EditNode &child) { return !child.is_key(); });
    at->value = value;
    at->operation = operation;
}

EditNode with_deleted_values(const EditNode &edit, const lyd_node *current) {
    const lyd_node *data = find_instance(current, edit);
    EditNode made = edit;
    made.children.clear();
    for (const EditNode &child : edit.children) {
        if (child.node->nodetype != LYS_LEAFLIST || child.value.has_value()) {
            made.children.push_back(with_deleted_values(child, data != nullptr ? lyd_child(data) : nullptr));
            continue;
        }
        for (const lyd_node *entry = data != nullptr ? lyd_child(data) : nullptr; entry != nullptr;
             entry = entry->next)
            if (entry->schema == child.node)
                made.children.push_back({child.node, lyd_get_value(entry), {}, child.operation});
    }
    return made;
}

void drop_deleted_content(EditNode &root) {
    if (takes_away(root.operation))
        std::erase_if(root.children, [](const EditNode &child) { return !child.is_key(); });
    for (EditNode &child : root.children)
        drop_deleted_content(child);
}

std::string instance_path(std::string_view parent, const EditNode &node) {
    std::string path(parent);
    path.append("/").append(node.node->name);
    for (const EditNode &child : node.children)
        if (child.is_key() && child.value.has_value())
            path.append("[")
                .append(child.node->name)
                .append("=")
                .append(quoted_literal(*child.value))
                .append("]");
    if (node.node->nodetype == LYS_LEAFLIST && node.value.has_value())
        path.append("[.=").append(quoted_literal(*node.value)).append("]");
    return path;
}

namespace {

void check_conditions(const EditNode &node, const lyd_node *data, const std::string &path) {
    for (const Predicate &condition : node.conditions) {
        const EditNode leaf{condition.leaf, std::nullopt, {}};
        const lyd_node *found = data != nullptr ? find_instance(lyd_child(data), leaf) : nullptr;
        if (found == nullptr || !holds_value(found, condition.value))
            throw Error(ErrorTag::data_missing, path,
                        "the condition [" + std::string(condition.leaf->name) + "=" +
                            quoted_literal(condition.value) + "] does not hold");
    }
}

bool is_state(const EditNode &node) {
    return (node.node->flags & LYS_CONFIG_R) != 0;
}

// State may well exist, where it is no configuration. Other operations on it are the mapping's to refuse.
void check_deletion(const EditNode &node, const lyd_node *data, const std::string &path) {
    if (node.operation != Operation::delete_existing || data != nullptr)
        return;
    if (is_state(node))
        throw Error(ErrorTag::unknown_element, path, "is state, which cannot be changed");
    throw Error(ErrorTag::data_missing, path, "cannot be deleted: it does not exist");
}

// RFC 6241 section 7.2: without an operation of its own, an entry or a leaf must be there.
void check_level(const EditNode &node, const lyd_node *data, const std::string &path) {
    const bool is_named = node.operation == Operation::none && !node.is_step && !node.is_key();
    if (is_named && data == nullptr && !is_state(node) && node.node->nodetype != LYS_CONTAINER)
        throw Error(ErrorTag::data_missing, path, "does not exist, and the edit does not create it");
}

// `is_new`: what is there now is replaced.
void check_node(const EditNode &node, const lyd_node *siblings, bool is_new, std::string_view parent) {
    const lyd_node *data = find_instance(siblings, node);
    const std::string path = instance_path(parent, node);
    if (node.operation == Operation::create && data != nullptr && !is_new)
        throw Error(ErrorTag::data_exists, path, "cannot be created: it already exists");
    check_deletion(node, data, path);
    check_level(node, data, path);
    check_conditions(node, data, path);
    if (takes_away(node.operation))
        return;
    for (const EditNode &child : node.children)
        if (!child.is_key())
            check_node(child, data != nullptr ? lyd_child(data) : nullptr,
                       is_new || node.operation == Operation::replace, path);
}

} // namespace

void check_existence(const EditNode &root, const lyd_node *current) {
    check_node(root, current, false, "");
}

} // namespace yfw::yang

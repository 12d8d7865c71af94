#include "frontends/gnmi/values/given_edit.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <set>

#include "base/base64.h"
#include "frontends/gnmi/messages/refusal.h"
#include "frontends/gnmi/paths/key_value.h"
#include "frontends/gnmi/values/given_json.h"
#include "yang/edit_element.h"
#include "yang/json_values.h"
#include "yang/key_reference.h"
#include "yang/leaf_type.h"
#include "yang/node_kind.h"
#include "yang/refused_value.h"

namespace yfw::gnmi {
namespace {

using Json = nlohmann::ordered_json;
using Operation = yang::Operation;

[[noreturn]] void refuse(const std::string &place, const std::string &why) {
    throw Refusal(Code::invalid_argument, place + ": " + why);
}

// ---- scalars

std::string text_of(double number) {
    char text[400];
    const auto [end, error] = std::to_chars(std::begin(text), std::end(text), number, std::chars_format::fixed);
    return error == std::errc() ? std::string(text, end) : "";
}

std::string text_of(const ::gnmi::Decimal64 &number) {
    std::string digits = std::to_string(number.digits());
    if (number.precision() == 0)
        return digits;
    const bool is_negative = digits.front() == '-';
    digits.erase(0, is_negative ? 1 : 0);
    const size_t precision = std::min<size_t>(number.precision(), 18); // RFC 7950 section 9.3
    if (digits.size() <= precision)
        digits.insert(0, precision + 1 - digits.size(), '0');
    return (is_negative ? "-" : "") + digits.insert(digits.size() - precision, 1, '.');
}

// The types that a scalar may set; what a string says is for the type to judge.
bool fits(const ::gnmi::TypedValue &value, LY_DATA_TYPE type) {
    if (yang::is_integer(type))
        return value.has_int_val() || value.has_uint_val();
    switch (type) {
    case LY_TYPE_BOOL:
        return value.has_bool_val();
    case LY_TYPE_BINARY:
        return value.has_bytes_val() || value.has_string_val();
    case LY_TYPE_DEC64:
        return value.has_double_val() || value.has_float_val() || value.has_decimal_val() ||
               value.has_int_val() || value.has_uint_val();
    case LY_TYPE_EMPTY:
        return value.has_bool_val() && value.bool_val();
    case LY_TYPE_UNION:
        return true;
    default:
        return value.has_string_val();
    }
}

std::string text_of(const ::gnmi::TypedValue &value, LY_DATA_TYPE type, const std::string &place) {
    switch (value.value_case()) {
    case ::gnmi::TypedValue::kStringVal:
        return value.string_val();
    case ::gnmi::TypedValue::kIntVal:
        return std::to_string(value.int_val());
    case ::gnmi::TypedValue::kUintVal:
        return std::to_string(value.uint_val());
    case ::gnmi::TypedValue::kBoolVal:
        return type == LY_TYPE_EMPTY ? "" : value.bool_val() ? "true" : "false";
    case ::gnmi::TypedValue::kBytesVal:
        return base64(value.bytes_val());
    case ::gnmi::TypedValue::kFloatVal:
        return text_of(static_cast<double>(value.float_val()));
    case ::gnmi::TypedValue::kDoubleVal:
        return text_of(value.double_val());
    case ::gnmi::TypedValue::kDecimalVal:
        return text_of(value.decimal_val());
    default:
        refuse(place, "the value is not a scalar");
    }
}

std::string scalar_of(const lysc_node *leaf, const ::gnmi::TypedValue &value, const std::string &place) {
    const LY_DATA_TYPE type = yang::leaf_type(leaf)->basetype;
    const std::string text = text_of(value, type, place);
    if (!fits(value, type))
        refuse(place, "the value has another type than the leaf");
    const auto canonical = canonical_value(leaf, text);
    if (!canonical.has_value())
        refuse(place, yang::refused_value(leaf, text));
    return *canonical;
}

// ---- nodes

yang::EditNode node_of(const PatternStep &step, Operation operation) {
    yang::EditNode node{step.node, std::nullopt, {}, operation};
    const lysc_node *key = lysc_node_child(step.node);
    for (const auto &value : step.keys) {
        node.children.push_back({key, value, {}, Operation::none});
        key = key->next;
    }
    return node;
}

// Sets `root` to the steps of the path. Returns the node that stands for the last one.
yang::EditNode &steps_of(const PathPattern &path, yang::EditNode &root) {
    yang::EditNode *at = nullptr;
    for (const PatternStep &step : path.steps) {
        yang::EditNode node = node_of(step, Operation::none);
        node.is_step = true;
        if (at == nullptr) {
            root = std::move(node);
            at = &root;
        } else {
            const auto is_key = [&step](const yang::EditNode &child) { return child.node == step.node; };
            const auto key = std::find_if(at->children.begin(), at->children.end(), is_key);
            at = key != at->children.end() && key->is_key() ? &*key
                                                            : &at->children.emplace_back(std::move(node));
        }
    }
    return *at;
}

// A value for a key must be the one that the path has; setting it makes the entry.
void set_key(const yang::EditNode &key, const std::string &value, const std::string &place) {
    if (key.value != value)
        refuse(place, "the key cannot have another value than the path's");
}

yang::EditNode scalar_edit(const yang::Schemas &schemas, const PathPattern &path,
                           const ::gnmi::TypedValue &value, const std::string &place) {
    const lysc_node *leaf = path.node();
    if (leaf == nullptr || leaf->nodetype != LYS_LEAF)
        refuse(place, "a scalar cannot be the value of anything but a leaf");
    const std::string text = scalar_of(leaf, value, place);
    if (lysc_is_key(leaf)) {
        PathPattern entry = path;
        entry.steps.pop_back();
        yang::EditNode edit = edit_at(schemas, entry, Operation::merge);
        const yang::EditNode *at = &edit;
        for (size_t i = 1; i < entry.steps.size(); i++)
            at = &at->children.back();
        for (const yang::EditNode &key : at->children)
            if (key.node == leaf)
                set_key(key, text, place);
        return edit;
    }
    yang::EditNode root;
    yang::EditNode &target = steps_of(path, root);
    target.value = text;
    target.operation = Operation::merge;
    target.is_step = false;
    return root;
}

// The node that holds the values of a leaf-list at the end of the path, with `values` in it.
yang::EditNode values_edit(const PathPattern &path, const std::vector<std::string> &values, Keeps keeps) {
    PathPattern holder = path;
    holder.steps.pop_back();
    yang::EditNode root;
    yang::EditNode &target = steps_of(holder, root);
    if (keeps == Keeps::nothing)
        target.children.push_back({path.node(), std::nullopt, {}, Operation::remove});
    for (const std::string &value : values)
        target.children.push_back({path.node(), value, {}, Operation::merge});
    return root;
}

yang::EditNode leaf_list_edit(const PathPattern &path, const ::gnmi::ScalarArray &array, Keeps keeps,
                              const std::string &place) {
    const lysc_node *leaf_list = path.node();
    if (leaf_list == nullptr || leaf_list->nodetype != LYS_LEAFLIST)
        refuse(place, "an array of scalars can only be the value of a leaf-list");
    std::vector<std::string> values;
    std::set<std::string> seen;
    for (const ::gnmi::TypedValue &each : array.element()) {
        const std::string value = scalar_of(leaf_list, each, place);
        if (!seen.insert(value).second)
            refuse(place, "the value \"" + value + "\" is repeated");
        values.push_back(value);
    }
    return values_edit(path, values, keeps);
}

// ---- JSON

std::string full_name(const lysc_node *node) {
    return node->module->name + std::string(":") + node->name;
}

// Adds the keys of the path to an entry; those that it has must be the same.
void add_keys(const PatternStep &step, Json &entry, const std::string &place) {
    const lysc_node *key = lysc_node_child(step.node);
    Json keys = Json::object();
    for (const auto &value : step.keys) {
        const auto given = entry.find(full_name(key));
        if (given == entry.end()) {
            Json number = Json::parse(*value, nullptr, false);
            const bool is_bare = yang::is_bare_in_json(yang::leaf_type(key)->basetype);
            keys[full_name(key)] = is_bare && !number.is_discarded() ? number : Json(*value);
        } else {
            const std::string text = given->is_string() ? given->get<std::string>() : given->dump();
            if (canonical_value(key, text) != value)
                refuse(place, "the key \"" + std::string(key->name) + "\" has another value than in the path");
            keys[full_name(key)] = *given;
            entry.erase(given);
        }
        key = key->next;
    }
    keys.update(entry);
    entry = std::move(keys);
}

// The value inside the nodes that lead to it, down from step `at`.
Json wrapped(const PathPattern &path, size_t at, Json value, const std::string &place) {
    const PatternStep &step = path.steps[at];
    const bool is_target = at + 1 == path.steps.size();
    Json content = is_target ? std::move(value) : Json::object();
    if (!is_target) {
        const lysc_node *below = path.steps[at + 1].node;
        content[full_name(below)] = wrapped(path, at + 1, std::move(value), place);
    }
    if (step.node->nodetype != LYS_LIST)
        return content;
    if (!content.is_object())
        refuse(place, "the value of an entry must be a JSON object");
    if (is_target && content.empty())
        refuse(place, "the value of an entry cannot be {}");
    add_keys(step, content, place);
    return Json::array({content});
}

// Makes the nodes above the target steps, which exist by what is below them.
void mark_steps(yang::EditNode &root, const PathPattern &path, Operation at_target) {
    yang::EditNode *at = &root;
    for (size_t i = 1; i < path.steps.size(); i++) {
        at->operation = Operation::none;
        at->is_step = true;
        const auto below =
            std::find_if(at->children.begin(), at->children.end(),
                         [&](const yang::EditNode &child) { return child.node == path.steps[i].node; });
        if (below == at->children.end()) // an empty array
            return;
        at = &*below;
    }
    if (!yang::is_term(at->node))
        at->operation = at_target;
}

Json top_of(const lysc_node *root, Json value, const std::string &place) {
    for (const auto &[name, member] : value.items())
        if (name != root->name && name != full_name(root))
            refuse(place + name, "is not in the model");
    if (value.size() > 1)
        refuse(place, "the member \"" + std::string(root->name) + "\" is repeated");
    return std::move(value.begin().value());
}

yang::EditNode json_edit(const yang::Schemas &schemas, PathPattern path, const std::string &text, Keeps keeps,
                         const std::string &place) {
    const lysc_node *root = schemas.openconfig_root();
    Json value = parse_given(path.node(), text, place);
    const Operation operation = keeps == Keeps::nothing ? Operation::replace : Operation::merge;
    if (path.steps.empty()) {
        if (!value.is_object())
            refuse(place, "the value must be a JSON object");
        path.steps.push_back({root, {}});
        if (value.empty())
            return edit_at(schemas, path, keeps == Keeps::nothing ? Operation::remove : Operation::none);
        value = top_of(root, std::move(value), place);
    }
    if (value.is_null())
        refuse(place, "the value cannot be null; delete the node instead");
    if (!yang::is_term(path.node()) && !value.is_object())
        refuse(place, "the value must be a JSON object");
    const lysc_node *target = path.node();
    value = as_ietf(target, std::move(value), place);
    if (target->nodetype == LYS_LEAFLIST && !value.is_array())
        refuse(place, "the value of a leaf-list must be a JSON array");
    Json document = Json::object();
    document[full_name(root)] = wrapped(path, 0, std::move(value), place);
    yang::EditNode edit = yang::read_edit(
        schemas, yang::edit_element_from_json(schemas.context(), document.dump()), Operation::merge);
    if (target->nodetype != LYS_LEAFLIST) {
        const bool is_key = lysc_is_key(target); // setting it makes the entry
        if (is_key)
            path.steps.pop_back();
        mark_steps(edit, path, is_key ? Operation::merge : operation);
        return edit;
    }
    std::vector<std::string> values;
    const yang::EditNode *holder = &edit;
    for (size_t i = 1; i + 1 < path.steps.size(); i++)
        holder = &holder->children.back();
    for (const yang::EditNode &child : holder->children)
        if (child.node == target && child.value.has_value())
            values.push_back(*child.value);
    return values_edit(path, values, keeps);
}

// ---- keys that are leaves of the entry, too

// The node at the end of the steps below an entry; NULL when the edit has none.
const yang::EditNode *find_below(const yang::EditNode &entry, const std::vector<const lysc_node *> &steps) {
    const yang::EditNode *at = &entry;
    for (const lysc_node *step : steps) {
        const auto next = std::find_if(at->children.begin(), at->children.end(),
                                       [step](const yang::EditNode &child) { return child.node == step; });
        if (next == at->children.end())
            return nullptr;
        at = &*next;
    }
    return at;
}

// Refuses values of leaves that keys refer to, such as config/name, when they differ from the keys.
class KeyCheck {
public:
    explicit KeyCheck(const std::string &place) : place_(place) {}

    void check(const yang::EditNode &edit, const std::string &parent) {
        const std::string path = yang::instance_path(parent, edit);
        for (const yang::EditNode &child : edit.children) {
            if (child.is_key())
                check_key(edit, child, path);
            else if (!yang::is_term(child.node))
                check(child, path);
        }
    }

private:
    void check_key(const yang::EditNode &entry, const yang::EditNode &key, const std::string &path) {
        const auto [steps, is_new] = steps_.try_emplace(key.node);
        if (is_new)
            steps->second = yang::leaf_behind_key(key.node);
        if (steps->second.empty())
            return;
        const yang::EditNode *leaf = find_below(entry, steps->second);
        if (leaf == nullptr || !leaf->value.has_value() || leaf->value == key.value)
            return;
        const std::string name = steps->second.back()->name;
        refuse(place_, "\"" + name + "\" of " + path + " differs from the key \"" + key.node->name + "\"");
    }

    const std::string &place_;
    std::map<const lysc_node *, std::vector<const lysc_node *>> steps_;
};

yang::EditNode unchecked_edit_of(const yang::Schemas &schemas, const PathPattern &path,
                                 const ::gnmi::TypedValue &value, Keeps keeps, const std::string &place) {
    switch (value.value_case()) {
    case ::gnmi::TypedValue::kJsonVal:
        return json_edit(schemas, path, value.json_val(), keeps, place);
    case ::gnmi::TypedValue::kJsonIetfVal:
        return json_edit(schemas, path, value.json_ietf_val(), keeps, place);
    case ::gnmi::TypedValue::kLeaflistVal:
        return leaf_list_edit(path, value.leaflist_val(), keeps, place);
    case ::gnmi::TypedValue::VALUE_NOT_SET:
        refuse(place, "has no value");
    case ::gnmi::TypedValue::kAnyVal:
    case ::gnmi::TypedValue::kAsciiVal:
    case ::gnmi::TypedValue::kProtoBytes:
        throw Refusal(Code::unimplemented, place + ": values of this form are not supported");
    default:
        return scalar_edit(schemas, path, value, place);
    }
}

} // namespace

yang::EditNode edit_at(const yang::Schemas &schemas, const PathPattern &path, Operation operation) {
    PathPattern full = path;
    if (full.steps.empty())
        full.steps.push_back({schemas.openconfig_root(), {}});
    yang::EditNode root;
    yang::EditNode &target = steps_of(full, root);
    target.operation = operation;
    target.is_step = operation == Operation::none;
    return root;
}

yang::EditNode edit_of(const yang::Schemas &schemas, const PathPattern &path, const ::gnmi::TypedValue &value,
                       Keeps keeps, const std::string &place) {
    yang::EditNode edit = unchecked_edit_of(schemas, path, value, keeps, place);
    KeyCheck(place).check(edit, "");
    return edit;
}

} // namespace yfw::gnmi

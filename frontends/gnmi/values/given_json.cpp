#include "frontends/gnmi/values/given_json.h"

#include "base/error.h"
#include "base/utf8.h"
#include "frontends/gnmi/messages/refusal.h"
#include "frontends/gnmi/paths/key_value.h"
#include "yang/json_text.h"
#include "yang/leaf_type.h"
#include "yang/node_kind.h"
#include "yang/schemas.h"

namespace yfw::gnmi {
namespace {

using Json = nlohmann::ordered_json;

Json leaf_value(const lysc_node *leaf, Json value) {
    switch (yang::leaf_type(leaf)->basetype) {
    case LY_TYPE_INT64:
    case LY_TYPE_UINT64:
    case LY_TYPE_DEC64:
        return value.is_number() ? Json(value.dump()) : value;
    case LY_TYPE_IDENT:
        if (value.is_string())
            if (const auto full = canonical_value(leaf, value.get<std::string>()))
                return *full;
        return value;
    default:
        return value;
    }
}

const lysc_node *child_named(const lysc_node *parent, const std::string &name) {
    const size_t colon = name.find(':');
    const lysc_node *child =
        yang::schema_child(parent, colon == std::string::npos ? name : name.substr(colon + 1));
    const bool is_of_module =
        colon == std::string::npos || child == nullptr || name.substr(0, colon) == child->module->name;
    return is_of_module ? child : nullptr;
}

Json object_value(const lysc_node *node, Json value, const std::string &place) {
    if (!value.is_object())
        return value;
    Json made = Json::object();
    for (auto &[name, member] : value.items()) {
        if (name.starts_with('@'))
            throw Refusal(Code::invalid_argument,
                          place + ": annotations such as \"" + name + "\" are not allowed");
        const lysc_node *child = child_named(node, name);
        const bool is_complete = child == nullptr || name.find(':') != std::string::npos;
        const std::string full = is_complete ? name : child->module->name + std::string(":") + name;
        if (made.contains(full))
            throw Refusal(Code::invalid_argument, place + ": the member \"" + name + "\" is repeated");
        made[full] = child != nullptr ? as_ietf(child, std::move(member), place + "/" + child->name) : member;
    }
    return made;
}

bool is_utf8(std::string_view text) {
    while (!text.empty())
        if (!take_character(text).has_value())
            return false;
    return true;
}

} // namespace

Json parse_given(const lysc_node *node, const std::string &text, const std::string &place) {
    if (!is_utf8(text)) // RFC 8259 section 8.1
        throw Refusal(Code::invalid_argument, place + ": the value is not UTF-8");
    try {
        return yang::parse_json(text);
    } catch (const Error &error) {
        const bool is_word =
            !text.empty() && std::string_view("{[\"").find(text.front()) == std::string_view::npos;
        if (node != nullptr && node->nodetype == LYS_LEAF && is_word)
            return text;
        throw Refusal(Code::invalid_argument, place + ": " + error.what());
    }
}

Json as_ietf(const lysc_node *node, Json value, const std::string &place) {
    if (value.is_array()) {
        for (Json &each : value)
            each = yang::is_term(node) ? leaf_value(node, std::move(each))
                                       : object_value(node, std::move(each), place);
        return value;
    }
    return yang::is_term(node) ? leaf_value(node, std::move(value))
                               : object_value(node, std::move(value), place);
}

} // namespace yfw::gnmi

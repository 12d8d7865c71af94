#include "gnmi_data.h"

#include <stdexcept>
#include <vector>

#include <nlohmann/json.hpp>

#include "base/base64.h"
#include "yang/yang_text.h"

namespace yfw::test {
namespace {

using nlohmann::json;
using Strings = std::vector<std::string>;

const std::string module_name = "openconfig-lldp";
const std::string types_module = "openconfig-lldp-types:";

bool is_identity(const lysc_node *leaf) {
    const lysc_type *type = reinterpret_cast<const lysc_node_leaf *>(leaf)->type;
    if (type->basetype == LY_TYPE_LEAFREF)
        type = reinterpret_cast<const lysc_type_leafref *>(type)->realtype;
    return type->basetype == LY_TYPE_IDENT;
}

// Identities of paths and of PROTO have no module's name.
std::string with_module(const lysc_node *leaf, const std::string &value) {
    return is_identity(leaf) && value.find(':') == std::string::npos ? types_module + value : value;
}

// The elements of a path with their schema nodes, put into a tree one after the other.
class Builder {
public:
    explicit Builder(const ly_ctx *modules) : modules_(modules) {}

    void add(const ::gnmi::Path &path, const ::gnmi::TypedValue &value) {
        std::string text;
        const lysc_node *schema = nullptr;
        for (const ::gnmi::PathElem &element : path.elem()) {
            const lysc_node *parent = schema;
            schema = lys_find_child(parent, ly_ctx_get_module_implemented(modules_, module_name.c_str()),
                                    element.name().c_str(), 0, 0, 0);
            if (schema == nullptr)
                throw std::runtime_error("no node " + element.name() + " below " + text);
            text += "/" + module_name + ":" + element.name();
            for (const auto &[key, is] : element.key())
                text += "[" + key + "=" +
                        yang::quoted_literal(
                            with_module(lys_find_child(schema, schema->module, key.c_str(), 0, 0, 0), is)) +
                        "]";
        }
        if (value.has_json_ietf_val())
            put(text, schema, json::parse(value.json_ietf_val()));
        else
            for (const std::string &each : values_of(value))
                make(text, with_module(schema, each).c_str());
    }

    Tree take() { return std::move(tree_); }

private:
    lyd_node *make(const std::string &path, const char *value) {
        lyd_node *first = nullptr;
        lyd_node *made = nullptr;
        if (lyd_new_path2(tree_.get(), modules_, path.c_str(), value, 0, LYD_ANYDATA_STRING,
                          LYD_NEW_PATH_UPDATE, &first, &made) != LY_SUCCESS)
            throw std::runtime_error(path + ": " + ly_errmsg(modules_));
        if (tree_ == nullptr)
            tree_.reset(first);
        return made;
    }

    // A value as RFC 7951 writes it.
    void put(const std::string &path, const lysc_node *schema, json value) {
        if (value.is_array()) {
            for (const json &each : value)
                make(path, text_of(each).c_str());
        } else if (!value.is_object()) {
            make(path, text_of(value).c_str());
        } else {
            parse_below(make(path, nullptr), schema, std::move(value));
        }
    }

    void parse_below(lyd_node *parent, const lysc_node *schema, json members) {
        if (parent == nullptr) // is there already
            lyd_find_path(tree_.get(), yang_path(schema).c_str(), 0, &parent);
        for (const lysc_node *key = lysc_node_child(schema); key != nullptr && lysc_is_key(key);
             key = key->next)
            members.erase(module_name + ":" + key->name); // the path has them
        if (members.empty())
            return;
        const std::string text = members.dump();
        ly_in *input = nullptr;
        ly_in_new_memory(text.c_str(), &input);
        const LY_ERR error =
            lyd_parse_data(modules_, parent, input, LYD_JSON, LYD_PARSE_ONLY | LYD_PARSE_STRICT, 0, nullptr);
        ly_in_free(input, 0);
        if (error != LY_SUCCESS)
            throw std::runtime_error(text + ": " + ly_errmsg(modules_));
    }

    static std::string yang_path(const lysc_node *schema) {
        char *text = lysc_path(schema, LYSC_PATH_DATA, nullptr, 0);
        std::string path = text;
        std::free(text);
        return path;
    }

    static std::string text_of(const json &value) {
        return value.is_string() ? value.get<std::string>() : value.dump();
    }

    static Strings values_of(const ::gnmi::TypedValue &value) {
        switch (value.value_case()) {
        case ::gnmi::TypedValue::kStringVal:
            return {value.string_val()};
        case ::gnmi::TypedValue::kUintVal:
            return {std::to_string(value.uint_val())};
        case ::gnmi::TypedValue::kIntVal:
            return {std::to_string(value.int_val())};
        case ::gnmi::TypedValue::kBoolVal:
            return {value.bool_val() ? "true" : "false"};
        case ::gnmi::TypedValue::kBytesVal:
            return {base64(value.bytes_val())};
        case ::gnmi::TypedValue::kLeaflistVal: {
            Strings all;
            for (const ::gnmi::TypedValue &each : value.leaflist_val().element())
                for (std::string &text : values_of(each))
                    all.push_back(std::move(text));
            return all;
        }
        default:
            throw std::runtime_error("unexpected value: " + value.ShortDebugString());
        }
    }

    const ly_ctx *modules_;
    Tree tree_;
};

} // namespace

::gnmi::Path gnmi_path(const lyd_node *node) {
    ::gnmi::Path path;
    if (node->parent != nullptr)
        path = gnmi_path(lyd_parent(node));
    ::gnmi::PathElem &element = *path.add_elem();
    element.set_name(node->schema->name);
    if (node->schema->nodetype != LYS_LIST)
        return path;
    for (const lyd_node *key = lyd_child(node); key != nullptr && lysc_is_key(key->schema); key = key->next)
        if (!is_identity(key->schema))
            (*element.mutable_key())[key->schema->name] = lyd_get_value(key);
    return path;
}

std::string path_text(const ::gnmi::Path &path, const std::string &prefix) {
    std::string text;
    for (const ::gnmi::PathElem &element : path.elem()) {
        text += "/" + prefix + element.name();
        for (const auto &[key, value] : element.key())
            text += "[" + prefix + key + "=" + yang::quoted_literal(value) + "]";
    }
    return text;
}

Tree data_of(const ly_ctx *modules, const ::gnmi::GetResponse &response) {
    Builder builder(modules);
    for (const ::gnmi::Notification &notification : response.notification())
        for (const ::gnmi::Update &update : notification.update())
            builder.add(update.path(), update.val());
    return builder.take();
}

} // namespace yfw::test

#include "edit_values.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <limits>
#include <map>
#include <ostream>
#include <set>
#include <stdexcept>

#include <libyang/libyang.h>

#include "support/answers.h"
#include "yang/tree_text.h"

namespace yfw::test {
namespace {

using Strings = std::vector<std::string>;

constexpr const char *global_configuration = "/openconfig-lldp:lldp/config";
constexpr const char *interface_configuration = "/openconfig-lldp:lldp/interfaces/interface/config";

const lysc_node *node_at(const ly_ctx *context, const std::string &path) {
    return lys_find_path(context, nullptr, path.c_str(), 0);
}

// The schema path without module names.
std::string place_of(const lysc_node *node) {
    const std::string text = yang::LibyangText(lysc_path(node, LYSC_PATH_DATA, nullptr, 0)).c_str();
    const size_t colon = text.find(':');
    return "/" + text.substr(colon + 1);
}

const lysc_type *type_of(const lysc_node *node) {
    return node->nodetype == LYS_LEAFLIST ? reinterpret_cast<const lysc_node_leaflist *>(node)->type
                                          : reinterpret_cast<const lysc_node_leaf *>(node)->type;
}

std::vector<const lysc_node *> settable_nodes(const ly_ctx *context) {
    std::vector<const lysc_node *> nodes;
    for (const char *parent : {global_configuration, interface_configuration})
        for (const lysc_node *child = lysc_node_child(node_at(context, parent)); child != nullptr;
             child = child->next)
            nodes.push_back(child);
    return nodes;
}

void collect_identities(const lysc_ident *base, Strings &values) {
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(base->derived, i) {
        values.push_back(std::string(base->derived[i]->module->name) + ":" + base->derived[i]->name);
        collect_identities(base->derived[i], values);
    }
}

Strings identities(const lysc_type *type) {
    Strings values;
    const auto *reference = reinterpret_cast<const lysc_type_identityref *>(type);
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(reference->bases, i) collect_identities(reference->bases[i], values);
    return values;
}

Strings enumeration(const lysc_type *type) {
    Strings values;
    const auto *kinds = reinterpret_cast<const lysc_type_enum *>(type);
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(kinds->enums, i) values.emplace_back(kinds->enums[i].name);
    return values;
}

// Numbers around every bound of any leaf in the models.
Strings numbers() {
    std::set<uint64_t> values;
    for (const uint64_t bound :
         {UINT64_C(0), UINT64_C(5), UINT64_C(65534), UINT64_C(1) << 16U, UINT64_C(1) << 31U, UINT64_C(1) << 32U,
          UINT64_C(1) << 63U, std::numeric_limits<uint64_t>::max()})
        for (const uint64_t number : {bound - 1, bound, bound + 1})
            values.insert(number);
    values.insert({30, 3600});
    Strings texts;
    for (const uint64_t value : values)
        texts.push_back(std::to_string(value));
    return texts;
}

Strings texts() {
    return {"",
            "a",
            "router.example.net",
            " blanks around ",
            "true",
            "0",
            "-5",
            "--help",
            "<&>\"'",
            "]]>",
            "&amp;",
            "a\tb\nc",
            "carriage\rreturn",
            "Zürich 東京",
            "\xf0\x9f\x8c\x90",
            "[name='x']/y",
            std::string(255, 'x')};
}

// Values to try with the leaf's type; the model allows some of them.
Strings candidates(const lysc_node *node) {
    const lysc_type *type = type_of(node);
    switch (type->basetype) {
    case LY_TYPE_BOOL:
        return {"true", "false"};
    case LY_TYPE_ENUM:
        return enumeration(type);
    case LY_TYPE_IDENT:
        return identities(type);
    case LY_TYPE_UINT64:
        return numbers();
    case LY_TYPE_STRING: {
        Strings values = texts();
        if (reinterpret_cast<const lysc_type_str *>(type)->length == nullptr)
            values.emplace_back(5000, 'y');
        return values;
    }
    default:
        throw std::runtime_error(place_of(node) + ": no values are known for its type");
    }
}

bool allows(const ly_ctx *context, const lysc_node *node, const std::string &value, std::string *canonical) {
    const char *text = nullptr;
    const LY_ERR status =
        lyd_value_validate(context, node, value.c_str(), value.size(), nullptr, nullptr, &text);
    if (status == LY_SUCCESS && canonical != nullptr)
        *canonical = text;
    if (status == LY_SUCCESS)
        lydict_remove(context, text);
    return status == LY_SUCCESS;
}

// The value as the native models spell it.
std::string native_spelling(std::string value) {
    std::transform(value.begin(), value.end(), value.begin(),
                   [](unsigned char c) { return c == '_' ? '-' : static_cast<char>(std::tolower(c)); });
    return value.substr(value.find(':') + 1);
}

// Whether the leaf's type and its "must" allow the value.
bool is_valid(const ly_ctx *context, const std::string &path, const std::string &value) {
    lyd_node *tree = nullptr;
    const bool made = lyd_new_path(nullptr, context, path.c_str(), value.c_str(), 0, &tree) == LY_SUCCESS;
    const bool valid = made && lyd_validate_all(&tree, nullptr, LYD_VALIDATE_PRESENT, nullptr) == LY_SUCCESS;
    lyd_free_all(tree);
    return valid;
}

// Whether the native model has a leaf that allows the value.
bool native_holds(const ly_ctx *context, const std::string &leaf, const std::string &value) {
    const std::string lldp = "/Tarvo-QD-ethernet-lldp-cfg:lldp/";
    const std::string name = leaf.substr(leaf.rfind('/') + 1);
    if (name == "suppress-tlv-advertisement")
        return node_at(context, lldp + "tlv-select/" + native_spelling(value) + "/disable") != nullptr;
    if (name == "hello-timer")
        return allows(context, node_at(context, lldp + "timer"), value, nullptr);
    if (name == "enabled")
        return true;
    return is_valid(context, lldp + name, name == "chassis-id-type" ? native_spelling(value) : value);
}

std::string word(const std::string &text) {
    std::string result;
    for (const char c : text.substr(0, 24))
        if (std::isalnum(static_cast<unsigned char>(c)) != 0)
            result += c;
    return result;
}

Context all_modules() {
    Context context = openconfig_modules();
    if (ly_ctx_load_module(context.get(), "Tarvo-QD-ethernet-lldp-cfg", nullptr, nullptr) == nullptr)
        throw std::runtime_error("the native module cannot be loaded");
    return context;
}

} // namespace

void PrintTo(const LegalValue &value, std::ostream *to) {
    *to << value.leaf << " = \"" << value.text.substr(0, 80) << "\"";
}

Strings settable_leaves() {
    const Context context = all_modules();
    Strings leaves;
    for (const lysc_node *node : settable_nodes(context.get()))
        leaves.push_back(place_of(node));
    return leaves;
}

std::vector<LegalValue> legal_values() {
    const Context context = all_modules();
    std::vector<LegalValue> values;
    for (const lysc_node *node : settable_nodes(context.get())) {
        const std::string leaf = place_of(node);
        if (leaf == "/lldp/interfaces/interface/config/name")
            continue; // repeats the key
        for (const std::string &text : candidates(node)) {
            LegalValue value{.leaf = leaf, .text = text};
            if (!allows(context.get(), node, text, &value.canonical))
                continue;
            value.name = word(leaf) + "_" + std::to_string(values.size()) + "_" + word(text);
            value.native_holds_it = native_holds(context.get(), leaf, text);
            values.push_back(value);
        }
    }
    return values;
}

} // namespace yfw::test

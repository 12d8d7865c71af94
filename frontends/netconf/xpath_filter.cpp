// XPath filters (RFC 6241 section 8.9), in libyang's words.
#include <algorithm>
#include <cctype>
#include <memory>

#include "frontends/netconf/filter.h"
#include "frontends/netconf/rpc_error.h"
#include "frontends/netconf/xpath_cost.h"
#include "yang/schemas.h"

namespace yfw::netconf {
namespace {

// libyang needs the square of an expression's length for some.
constexpr size_t longest_expression = 16384;

size_t count_nodes(const lyd_node *data) {
    size_t count = 0;
    for (const lyd_node *node = data; node != nullptr; node = node->next)
        count += 1 + count_nodes(lyd_child(node));
    return count;
}

bool is_name_character(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '-' || c == '.';
}

std::string module_meant(const ly_ctx *context, const std::string &prefix, const Prefixes &prefixes) {
    const auto declared = prefixes.find(prefix);
    if (declared == prefixes.end())
        throw RpcError("protocol", "invalid-value", "the prefix \"" + prefix + "\" is not declared");
    const lys_module *module = ly_ctx_get_module_implemented_ns(context, declared->second.c_str());
    // A namespace that is not here selects nothing, which is no error; nor has this module data.
    return module != nullptr ? module->name : "ietf-netconf";
}

// libyang's own form of an expression: names of modules instead of the client's prefixes.
std::string in_module_names(const ly_ctx *context, const std::string &expression, const Prefixes &prefixes) {
    std::string out;
    for (size_t at = 0; at < expression.size();) {
        const char c = expression[at];
        size_t end = at + 1;
        if (c == '\'' || c == '"') {
            end = std::min(expression.find(c, end), expression.size() - 1) + 1;
        } else if (is_name_character(c)) {
            while (end < expression.size() && is_name_character(expression[end]))
                end++;
            const bool is_prefix =
                expression.compare(end, 1, ":") == 0 && expression.compare(end, 2, "::") != 0;
            if (is_prefix) {
                out += module_meant(context, expression.substr(at, end - at), prefixes);
                at = end;
                continue;
            }
        }
        out.append(expression, at, end - at);
        at = end;
    }
    return out;
}

} // namespace

// An evaluation cannot be interrupted, and holds up the end of the server.
void refuse_unbounded(const std::string &expression, size_t nodes, const XPathBound &bound) {
    if (expression.size() > longest_expression)
        throw RpcError("protocol", "too-big",
                       "an expression is longer than " + std::to_string(longest_expression) + " bytes");
    const double most = bound.steps + bound.for_each_node * static_cast<double>(nodes);
    if (xpath_cost(expression, nodes) > most)
        throw RpcError("protocol", "resource-denied",
                       "the expression looks through all data anew for each node that it finds");
}

yang::DataTree xpath_filtered(const lyd_node *data, const Filter &filter, uint32_t depth,
                              const XPathBound &bound) {
    if (data == nullptr)
        return nullptr;
    refuse_unbounded(filter.expression, count_nodes(data), bound);
    const std::string expression = in_module_names(LYD_CTX(data), filter.expression, filter.prefixes);
    ly_set *found = nullptr;
    const LY_ERR status = lyd_find_xpath3(nullptr, data, expression.c_str(), nullptr, &found);
    const auto free_set = [](ly_set *set) { ly_set_free(set, nullptr); };
    const std::unique_ptr<ly_set, decltype(free_set)> owner(found, free_set);
    if (status != LY_SUCCESS)
        throw RpcError("protocol", "invalid-value", yang::take_yang_error(LYD_CTX(data)));
    lyd_node *selected = nullptr;
    for (uint32_t i = 0; i < found->count; i++) {
        lyd_node *copy = nullptr;
        lyd_dup_single(found->dnodes[i], nullptr, LYD_DUP_RECURSIVE | LYD_DUP_WITH_PARENTS | LYD_DUP_WITH_FLAGS,
                       &copy);
        cut_below(copy, depth);
        while (copy != nullptr && lyd_parent(copy) != nullptr)
            copy = lyd_parent(copy);
        if (copy != nullptr)
            lyd_merge_siblings(&selected, copy, LYD_MERGE_DESTRUCT);
    }
    return yang::DataTree(selected);
}

} // namespace yfw::netconf

#include "frontends/netconf/filters/defaults.h"

#include <algorithm>
#include <array>
#include <utility>

#include "frontends/netconf/filters/selected.h"
#include "frontends/netconf/messages/rpc_error.h"
#include "yang/tree_text.h"

namespace yfw::netconf {
namespace {

constexpr std::array<std::pair<std::string_view, WithDefaults>, 4> words{{
    {"explicit", WithDefaults::as_set},
    {"report-all", WithDefaults::report_all},
    {"report-all-tagged", WithDefaults::report_all_tagged},
    {"trim", WithDefaults::trim},
}};

uint32_t print_option(WithDefaults mode) {
    switch (mode) {
    case WithDefaults::report_all:
        return LYD_PRINT_WD_ALL;
    case WithDefaults::report_all_tagged:
        return LYD_PRINT_WD_IMPL_TAG;
    case WithDefaults::trim:
        return LYD_PRINT_WD_TRIM;
    case WithDefaults::as_set:
        break;
    }
    return LYD_PRINT_WD_EXPLICIT;
}

// libyang prints a bare carriage return, which XML parsers normalize to a line feed (XML section 2.11).
void pass_carriage_returns(std::string_view xml, const yang::TextSink &sink) {
    while (!xml.empty()) {
        const size_t plain = std::min(xml.find('\r'), xml.size());
        sink(xml.substr(0, plain));
        xml.remove_prefix(plain);
        if (!xml.empty())
            sink("&#13;");
        xml.remove_prefix(xml.empty() ? 0 : 1);
    }
}

void print(const lyd_node *data, uint32_t options, const yang::TextSink &sink) {
    yang::print(data, LYD_XML, LYD_PRINT_SHRINK | LYD_PRINT_WITHSIBLINGS | options,
                [&](std::string_view piece) { pass_carriage_returns(piece, sink); });
}

const char *default_of(const lysc_node *node) {
    if (node->nodetype != LYS_LEAF || (node->flags & LYS_CONFIG_W) == 0)
        return nullptr;
    const lyd_value *value = reinterpret_cast<const lysc_node_leaf *>(node)->dflt;
    return value != nullptr ? lyd_value_get_canonical(node->module->ctx, value) : nullptr;
}

void add_to(lyd_node *parent, const Selections &selections) {
    const lysc_node *node = nullptr;
    while ((node = lys_getnext(node, parent->schema, nullptr, 0)) != nullptr) {
        const char *value = default_of(node);
        lyd_node *found = nullptr;
        if (value == nullptr || !selects_leaf(selections, node) ||
            lyd_find_sibling_val(lyd_child(parent), node, nullptr, 0, &found) != LY_ENOTFOUND)
            continue;
        lyd_node *added = nullptr;
        if (lyd_new_term(parent, nullptr, node->name, value, 0, &added) == LY_SUCCESS)
            added->flags |= LYD_DEFAULT;
    }
    const SelectedChildren below(selections);
    for (lyd_node *child = lyd_child(parent); child != nullptr; child = child->next)
        if ((child->schema->nodetype & (LYS_CONTAINER | LYS_LIST)) != 0)
            add_to(child, below.at(child));
}

} // namespace

std::string with_defaults_capability() {
    return "urn:ietf:params:netconf:capability:with-defaults:1.0?basic-mode=explicit"
           "&also-supported=report-all,report-all-tagged,trim";
}

WithDefaults with_defaults_of(const Element &operation, std::string_view also) {
    for (const Element &child : operation.children()) {
        if (!child.is(with_defaults_ns, "with-defaults") && !child.is(also, "with-defaults"))
            continue;
        for (const auto &[word, mode] : words)
            if (child.text() == word)
                return mode;
        throw RpcError("protocol", "invalid-value",
                       "<with-defaults> must be explicit, report-all, report-all-tagged or trim")
            .with_info("<bad-element>with-defaults</bad-element>");
    }
    return WithDefaults::as_set;
}

void add_defaults(lyd_node *data, const host::Selection &selection) {
    if (data != nullptr)
        add_to(data, {&selection});
}

void print_data(const lyd_node *data, WithDefaults mode, const yang::TextSink &sink) {
    print(data, print_option(mode), sink);
}

void print_cut_data(const lyd_node *data, WithDefaults mode, const yang::TextSink &sink) {
    print(data, print_option(mode) | LYD_PRINT_KEEPEMPTYCONT, sink);
}

std::string print_data(const lyd_node *data) {
    std::string xml;
    print_data(data, WithDefaults::as_set, [&xml](std::string_view piece) { xml += piece; });
    return xml;
}

} // namespace yfw::netconf

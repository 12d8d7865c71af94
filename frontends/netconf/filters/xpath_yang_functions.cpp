// RFC 7950 section 10. What has no meaning for a node is the empty result that the RFC names, not an error: a
// client's expression meets nodes of all kinds.
#include <array>
#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>
#include <libyang/plugins_types.h>

#include "frontends/netconf/filters/xpath_charging.h"
#include "frontends/netconf/filters/xpath_functions.h"

namespace yfw::netconf {
namespace {

struct FreeArgument {
    void operator()(xmlXPathObject *object) const { xmlXPathFreeObject(object); }
};
using Object = std::unique_ptr<xmlXPathObject, FreeArgument>;

bool has_arguments(xmlXPathParserContext *parser, int count, int wanted) {
    if (count == wanted && parser->valueNr >= wanted)
        return true;
    xmlXPathErr(parser, XPATH_INVALID_ARITY);
    return false;
}

// The last argument; NULL, with an error set, when it is no set of nodes.
Object take_nodes(xmlXPathParserContext *parser) {
    if (parser->value != nullptr && parser->value->type == XPATH_NODESET)
        return Object(valuePop(parser));
    xmlXPathErr(parser, XPATH_INVALID_TYPE);
    return nullptr;
}

// The last argument as a string; nothing, with an error set, when the limit is exceeded.
std::optional<std::string> take_string(xmlXPathParserContext *parser) {
    make_string(parser, parser->valueNr - 1);
    if (parser->error != XPATH_EXPRESSION_OK)
        return std::nullopt;
    const Object text(valuePop(parser));
    return reinterpret_cast<const char *>(text->stringval);
}

int size_of(const xmlXPathObject &nodes) {
    return nodes.nodesetval != nullptr ? nodes.nodesetval->nodeNr : 0;
}

// What the first node in document order stands for; NULL when there is none. The root comes before all others.
const lyd_node *first_of(const XPathDocument &document, const xmlXPathObject &nodes) {
    const xmlNode *first = nullptr;
    const auto place_of = [](const xmlNode *node) {
        return reinterpret_cast<uintptr_t>(node->type == XML_TEXT_NODE ? node->parent->_private
                                                                       : node->_private);
    };
    for (int i = 0; i < size_of(nodes); i++) {
        const xmlNode *node = nodes.nodesetval->nodeTab[i];
        if (node->type != XML_ELEMENT_NODE && node->type != XML_TEXT_NODE)
            return nullptr;
        if (first == nullptr || place_of(node) < place_of(first))
            first = node;
    }
    return first != nullptr ? document.data_of(first) : nullptr;
}

// The same for the function's only argument left; nothing, with an error set, when it is no set of nodes.
std::optional<const lyd_node *> take_first(xmlXPathParserContext *parser) {
    const Object nodes = take_nodes(parser);
    if (nodes == nullptr || !charge(parser, static_cast<size_t>(size_of(*nodes))))
        return std::nullopt;
    return first_of(evaluation_of(parser).document, *nodes);
}

// The value as its own type stores it, which a union wraps; NULL for what is no leaf.
const lyd_value *value_of(const lyd_node *node) {
    if (node == nullptr || (node->schema->nodetype & LYD_NODE_TERM) == 0)
        return nullptr;
    const lyd_value *value = &reinterpret_cast<const lyd_node_term *>(node)->value;
    while (value->realtype->basetype == LY_TYPE_UNION)
        value = &value->subvalue->value;
    return value;
}

const lyd_value *value_of_type(const lyd_node *node, LY_DATA_TYPE type) {
    const lyd_value *value = value_of(node);
    return value != nullptr && value->realtype->basetype == type ? value : nullptr;
}

// ---- section 10.1.1 --------------------------------------------------------------------------------------

// A filter's initial context node is the root (RFC 6241 section 8.9.1).
void current(xmlXPathParserContext *parser, int count) {
    if (has_arguments(parser, count, 0))
        valuePush(parser, xmlXPathNewNodeSet(reinterpret_cast<xmlNode *>(parser->context->doc)));
}

// ---- section 10.2.1 --------------------------------------------------------------------------------------

constexpr size_t cost_of_compiling = 4096;

// NULL, with an error set, when the pattern is none, or its compilation exceeds the limit.
const XsdPattern *pattern_of(xmlXPathParserContext *parser, const std::string &text) {
    auto &patterns = evaluation_of(parser).patterns;
    const auto known = patterns.find(text);
    if (known != patterns.end())
        return &known->second;
    if (!charge(parser, cost_of_compiling))
        return nullptr;
    const std::optional<XsdPattern> made = XsdPattern::of(text);
    if (!made.has_value()) {
        xmlXPathErr(parser, XPATH_EXPR_ERROR);
        return nullptr;
    }
    return &patterns.emplace(text, *made).first->second;
}

void re_match(xmlXPathParserContext *parser, int count) {
    if (!has_arguments(parser, count, 2) || !charge_arguments(parser, 2, false))
        return;
    const std::optional<std::string> pattern = take_string(parser);
    const std::optional<std::string> subject = pattern.has_value() ? take_string(parser) : std::nullopt;
    const XsdPattern *compiled = subject.has_value() ? pattern_of(parser, *pattern) : nullptr;
    if (compiled == nullptr)
        return;
    const std::optional<bool> matches = compiled->matches(*subject, evaluation_of(parser).characters_left);
    if (!matches.has_value())
        return xmlXPathErr(parser, XPATH_OP_LIMIT_EXCEEDED);
    valuePush(parser, xmlXPathNewBoolean(*matches ? 1 : 0));
}

// ---- section 10.3.1 --------------------------------------------------------------------------------------

const lysc_type *declared_type(const lysc_node *leaf) {
    return leaf->nodetype == LYS_LEAF ? reinterpret_cast<const lysc_node_leaf *>(leaf)->type
                                      : reinterpret_cast<const lysc_node_leaflist *>(leaf)->type;
}

// A reference within the same entry is looked up; another one may look through all data.
size_t cost_of_resolving(const lysc_type_leafref &reference, size_t nodes) {
    constexpr size_t cost_within_entry = 64;
    const std::string_view path = lyxp_get_expr(reference.path);
    return path.starts_with("../") && !path.starts_with("../../") ? cost_within_entry : nodes;
}

const lyd_node *referred_by_leafref(const lyd_node *leaf, const lysc_type_leafref &reference) {
    auto &value = const_cast<lyd_value &>(reinterpret_cast<const lyd_node_term *>(leaf)->value);
    const lyd_node *top = leaf;
    while (lyd_parent(top) != nullptr)
        top = lyd_parent(top);
    lyd_node *target = nullptr;
    char *reason = nullptr;
    const LY_ERR status =
        lyplg_type_resolve_leafref(&reference, leaf, &value, lyd_first_sibling(top), &target, &reason);
    std::free(reason);
    return status == LY_SUCCESS ? target : nullptr;
}

// NULL, also with an error set, when there is no such node.
const lyd_node *referred_by(xmlXPathParserContext *parser, const lyd_node *node) {
    const lyd_value *value = value_of(node);
    if (value == nullptr)
        return nullptr;
    const lysc_type *type = declared_type(node->schema);
    const size_t nodes = evaluation_of(parser).document.nodes().size();
    if (type->basetype == LY_TYPE_LEAFREF) {
        const auto &reference = *reinterpret_cast<const lysc_type_leafref *>(type);
        return charge(parser, cost_of_resolving(reference, nodes)) ? referred_by_leafref(node, reference)
                                                                   : nullptr;
    }
    if (type->basetype != LY_TYPE_INST || !charge(parser, nodes))
        return nullptr;
    const lyd_node *top = node;
    while (lyd_parent(top) != nullptr)
        top = lyd_parent(top);
    lyd_node *target = nullptr;
    return lyd_find_target(value->target, lyd_first_sibling(top), &target) == LY_SUCCESS ? target : nullptr;
}

void deref(xmlXPathParserContext *parser, int count) {
    const auto first = has_arguments(parser, count, 1) ? take_first(parser) : std::nullopt;
    if (!first.has_value())
        return;
    const lyd_node *target = referred_by(parser, *first);
    if (parser->error == XPATH_EXPRESSION_OK)
        valuePush(parser, xmlXPathNewNodeSet(
                              target != nullptr ? evaluation_of(parser).document.element_of(target) : nullptr));
}

// ---- section 10.4 ----------------------------------------------------------------------------------------

constexpr size_t cost_of_identity = 256; // all of a context are looked through

struct IdentityName {
    std::optional<std::string> ns; // nothing: of any module
    std::string name;
};

// Nothing, with an error set, when the prefix is not declared.
std::optional<IdentityName> identity_name(xmlXPathParserContext *parser, const std::string &text) {
    const size_t colon = text.find(':');
    if (colon == std::string::npos)
        return IdentityName{std::nullopt, text};
    const std::string prefix = text.substr(0, colon);
    const xmlChar *ns = xmlXPathNsLookup(parser->context, reinterpret_cast<const xmlChar *>(prefix.c_str()));
    if (ns != nullptr)
        return IdentityName{reinterpret_cast<const char *>(ns), text.substr(colon + 1)};
    xmlXPathErr(parser, XPATH_UNDEF_PREFIX_ERROR);
    return std::nullopt;
}

bool is_named(const lysc_ident &identity, const IdentityName &name) {
    return name.name == identity.name && (!name.ns.has_value() || *name.ns == identity.module->ns);
}

bool is_derived(const lysc_ident &identity, const IdentityName &from) {
    uint32_t index = 0;
    while (const lys_module *module = ly_ctx_get_module_iter(identity.module->ctx, &index)) {
        LY_ARRAY_COUNT_TYPE i = 0;
        LY_ARRAY_FOR(module->identities, i) {
            const lysc_ident &base = module->identities[i];
            if (is_named(base, from) && lyplg_type_identity_isderived(&base, &identity) == LY_SUCCESS)
                return true;
        }
    }
    return false;
}

void push_is_derived(xmlXPathParserContext *parser, int count, bool or_self) {
    const auto text = has_arguments(parser, count, 2) ? take_string(parser) : std::nullopt;
    const auto name = text.has_value() ? identity_name(parser, *text) : std::nullopt;
    const Object nodes = name.has_value() ? take_nodes(parser) : nullptr;
    if (nodes == nullptr)
        return;
    bool is_any = false;
    for (int i = 0; !is_any && i < size_of(*nodes); i++) {
        const lyd_node *node = evaluation_of(parser).document.data_of(nodes->nodesetval->nodeTab[i]);
        const lyd_value *value = value_of_type(node, LY_TYPE_IDENT);
        if (value == nullptr)
            continue;
        if (!charge(parser, cost_of_identity))
            return;
        is_any = (or_self && is_named(*value->ident, *name)) || is_derived(*value->ident, *name);
    }
    valuePush(parser, xmlXPathNewBoolean(is_any ? 1 : 0));
}

void derived_from(xmlXPathParserContext *parser, int count) {
    push_is_derived(parser, count, false);
}

void derived_from_or_self(xmlXPathParserContext *parser, int count) {
    push_is_derived(parser, count, true);
}

// ---- sections 10.5.1 and 10.6.1 --------------------------------------------------------------------------

void enum_value(xmlXPathParserContext *parser, int count) {
    const auto first = has_arguments(parser, count, 1) ? take_first(parser) : std::nullopt;
    if (!first.has_value())
        return;
    const lyd_value *value = value_of_type(*first, LY_TYPE_ENUM);
    valuePush(parser, xmlXPathNewFloat(value != nullptr ? value->enum_item->value
                                                        : std::numeric_limits<double>::quiet_NaN()));
}

bool has_bit(const lyd_value &value, const std::string &name) {
    static_assert(sizeof(lyd_value_bits) <= LYD_VALUE_FIXED_MEM_SIZE); // as LYD_VALUE_GET, which is C, finds it
    const auto &bits = *reinterpret_cast<const lyd_value_bits *>(value.fixed_mem);
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(bits.items, i) {
        if (name == bits.items[i]->name)
            return true;
    }
    return false;
}

void bit_is_set(xmlXPathParserContext *parser, int count) {
    const auto name = has_arguments(parser, count, 2) ? take_string(parser) : std::nullopt;
    const auto first = name.has_value() ? take_first(parser) : std::nullopt;
    if (!first.has_value())
        return;
    const lyd_value *value = value_of_type(*first, LY_TYPE_BITS);
    valuePush(parser, xmlXPathNewBoolean(value != nullptr && has_bit(*value, *name) ? 1 : 0));
}

struct YangFunction {
    const char *name;
    xmlXPathFunction function;
};

constexpr std::array<YangFunction, 7> yang_functions{{{"current", current},
                                                      {"re-match", re_match},
                                                      {"deref", deref},
                                                      {"derived-from", derived_from},
                                                      {"derived-from-or-self", derived_from_or_self},
                                                      {"enum-value", enum_value},
                                                      {"bit-is-set", bit_is_set}}};

} // namespace

void register_yang_functions(_xmlXPathContext *context) {
    for (const YangFunction &one : yang_functions)
        xmlXPathRegisterFunc(context, reinterpret_cast<const xmlChar *>(one.name), one.function);
}

} // namespace yfw::netconf

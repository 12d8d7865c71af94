#include "frontends/netconf/filters/origin.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "frontends/netconf/messages/rpc_error.h"
#include "yang/comparison.h"

namespace yfw::netconf {
namespace {

constexpr std::string_view origin_ns = "urn:ietf:params:xml:ns:yang:ietf-origin";
constexpr std::array<std::string_view, 7> identities{"origin",  "intended", "dynamic", "system",
                                                     "learned", "default",  "unknown"};

constexpr const char *intended = "intended";
constexpr const char *by_system = "system";

std::string identity_of(const Element &leaf) {
    const std::string text = leaf.text();
    const size_t colon = text.find(':');
    const Prefixes prefixes = leaf.prefixes();
    const auto prefix = prefixes.find(colon != std::string::npos ? text.substr(0, colon) : "");
    const std::string name = colon != std::string::npos ? text.substr(colon + 1) : text;
    if (prefix == prefixes.end() || prefix->second != origin_ns ||
        std::find(identities.begin(), identities.end(), name) == identities.end())
        throw RpcError("application", "invalid-value", "expected an identity of ietf-origin")
            .with_info("<bad-element>" + std::string(leaf.name()) + "</bad-element>");
    return name;
}

bool is_configuration(const lyd_node *node) {
    return (node->schema->flags & LYS_CONFIG_W) != 0;
}

const char *origin_of(const lyd_node *leaf, const lyd_node *configured) {
    const bool is_same =
        configured != nullptr && std::strcmp(lyd_get_value(leaf), lyd_get_value(configured)) == 0;
    return is_same ? intended : by_system;
}

class Walk {
public:
    explicit Walk(const Origins &origins) : origins_(origins) {}

    void visit(lyd_node *node, const lyd_node *configured, const char *inherited) {
        lyd_node *next = nullptr;
        for (lyd_node *child = lyd_child(node); child != nullptr; child = next) {
            next = child->next;
            if (!is_configuration(child) || lysc_is_key(child->schema))
                continue;
            const lyd_node *there =
                configured != nullptr ? yang::counterpart(child, lyd_child(configured)) : nullptr;
            if ((child->schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0)
                leaf(child, origin_of(child, there), inherited);
            else
                inner(child, there, inherited);
        }
    }

    void annotate(lyd_node *node, const char *origin) const {
        if (origins_.annotated)
            lyd_new_meta(LYD_CTX(node), node, nullptr, "ietf-origin:origin",
                         (std::string("ietf-origin:") + origin).c_str(), 0, nullptr);
    }

private:
    void leaf(lyd_node *node, const char *origin, const char *inherited) const {
        if (!is_wanted(origin))
            return lyd_free_tree(node);
        if (std::strcmp(origin, inherited) != 0)
            annotate(node, origin);
    }

    void inner(lyd_node *node, const lyd_node *configured, const char *inherited) {
        const bool is_entry = node->schema->nodetype == LYS_LIST;
        const char *origin = is_entry && configured == nullptr ? by_system : is_entry ? intended : inherited;
        if (is_entry && std::strcmp(origin, inherited) != 0)
            annotate(node, origin);
        visit(node, configured, origin);
        if (origins_.filter.has_value() && !has_content(node) && !(is_entry && is_wanted(origin)))
            lyd_free_tree(node);
    }

    static bool has_content(const lyd_node *node) {
        for (const lyd_node *child = lyd_child(node); child != nullptr; child = child->next)
            if (!lysc_is_key(child->schema))
                return true;
        return false;
    }

    bool is_wanted(const char *origin) const {
        if (!origins_.filter.has_value())
            return true;
        const bool is_named =
            origins_.filter->names.contains(origin) || origins_.filter->names.contains("origin");
        return is_named != origins_.filter->negated;
    }

    const Origins &origins_;
};

} // namespace

Origins origins_of(const Element &operation) {
    Origins origins;
    for (const Element &child : operation.children()) {
        const bool negated = child.name() == "negated-origin-filter";
        if (child.name() == "with-origin")
            origins.annotated = true;
        if (!negated && child.name() != "origin-filter")
            continue;
        if (origins.filter.has_value() && origins.filter->negated != negated)
            throw RpcError("protocol", "bad-element",
                           "<origin-filter> and <negated-origin-filter> exclude one another")
                .with_info("<bad-element>" + std::string(child.name()) + "</bad-element>");
        if (!origins.filter.has_value())
            origins.filter = Origins::Filter{{}, negated};
        origins.filter->names.insert(identity_of(child));
    }
    return origins;
}

void apply_origins(yang::DataTree &data, const lyd_node *running, const Origins &origins) {
    if (!data || (!origins.annotated && !origins.filter.has_value()))
        return;
    Walk walk(origins);
    walk.annotate(data.get(), intended);
    walk.visit(data.get(), running, intended);
    if (lyd_child(data.get()) == nullptr)
        data.reset();
}

} // namespace yfw::netconf

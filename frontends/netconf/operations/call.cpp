#include "frontends/netconf/operations/call.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>

#include "frontends/netconf/filters/defaults.h"
#include "frontends/netconf/messages/rpc_error.h"

namespace yfw::netconf {
namespace {

constexpr std::string_view datastores_ns = "urn:ietf:params:xml:ns:yang:ietf-datastores";

bool is_known(const Element &parent, const Element &child, std::initializer_list<std::string_view> known) {
    const bool is_defaults = child.is(with_defaults_ns, "with-defaults");
    const bool is_own =
        child.ns() == parent.ns() && (child.name() != "with-defaults" || parent.ns() == nmda_ns);
    const bool is_base_filter = child.is(base_ns, "filter"); // clients use it in <create-subscription>, too
    return (is_own || is_defaults || is_base_filter) &&
           std::find(known.begin(), known.end(), child.name()) != known.end();
}

constexpr std::string_view xml_ns = "http://www.w3.org/XML/1998/namespace";

std::string bad_element(const Element &element) {
    return bad_name("bad-element", element.name());
}

// The attributes of a <filter> (RFC 6241 section 8.9.5); they may have NETCONF's prefix.
bool takes_attribute(const Element &element, const Element::Attribute &attribute) {
    const bool is_own = attribute.ns.empty() || attribute.ns == base_ns;
    return attribute.ns == xml_ns ||
           (element.name() == "filter" && is_own && (attribute.name == "type" || attribute.name == "select"));
}

void refuse_text(const Element &element) {
    if (!element.text().empty())
        throw RpcError("protocol", "bad-element", "<" + std::string(element.name()) + "> must not contain text")
            .with_info(bad_element(element));
}

// All other parameters are leaves.
bool takes_elements(std::string_view name) {
    constexpr std::array<std::string_view, 5> containers{"target", "source", "config", "filter",
                                                         "subtree-filter"};
    return std::find(containers.begin(), containers.end(), name) != containers.end();
}

void check_parameter(const Element &parameter) {
    refuse_attributes(parameter);
    const std::vector<Element> children = parameter.children();
    if (!children.empty() && !takes_elements(parameter.name()))
        throw RpcError("protocol", "unknown-element",
                       "<" + std::string(parameter.name()) + "> must not contain elements")
            .with_info(bad_element(children.front()));
}

bool may_repeat(std::string_view name) {
    return name == "origin-filter" || name == "negated-origin-filter";
}

} // namespace

void refuse_attributes(const Element &element) {
    for (const Element::Attribute &attribute : element.attributes())
        if (!takes_attribute(element, attribute))
            throw RpcError("protocol", "unknown-attribute",
                           "<" + std::string(element.name()) + "> does not take it")
                .with_info(bad_name("bad-attribute", attribute.name) + bad_element(element));
}

void require_empty(const Element &element) {
    refuse_attributes(element);
    refuse_text(element);
    if (!element.children().empty())
        throw RpcError("protocol", "bad-element", "<" + std::string(element.name()) + "> must be empty")
            .with_info(bad_element(element));
}

Element required(const Element &parent, const char *name) {
    const std::optional<Element> found = parent.child(name);
    if (!found.has_value())
        throw RpcError("protocol", "missing-element", "expected <" + std::string(name) + ">")
            .with_info("<bad-element>" + std::string(name) + "</bad-element>");
    return *found;
}

std::optional<std::string> text_of(const Element &parent, const char *name) {
    const std::optional<Element> found = parent.child(name);
    return found.has_value() ? std::optional(found->text()) : std::nullopt;
}

uint32_t number_of(const Element &element, uint32_t least) {
    const std::string text = element.text();
    uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < least)
        throw RpcError("protocol", "invalid-value",
                       "<" + std::string(element.name()) + "> must be a number from " + std::to_string(least));
    return number;
}

void refuse_others(const Element &parent, std::initializer_list<std::string_view> known) {
    refuse_attributes(parent);
    refuse_text(parent);
    std::set<std::string_view> seen;
    for (const Element &child : parent.children()) {
        if (is_known(parent, child, known)) {
            if (!seen.insert(child.name()).second && !may_repeat(child.name()))
                throw RpcError("protocol", "bad-element", "<" + std::string(child.name()) + "> is repeated")
                    .with_info(bad_element(child));
            check_parameter(child);
            continue;
        }
        const bool is_own = child.ns() == parent.ns();
        throw RpcError("protocol", is_own ? "unknown-element" : "unknown-namespace",
                       "<" + std::string(parent.name()) + "> does not take it")
            .with_info(bad_element(child) + (is_own ? "" : bad_namespace(child.ns())));
    }
}

std::string datastore_name(const Element &leaf) {
    const std::string text = leaf.text();
    const size_t colon = text.find(':');
    const Prefixes prefixes = leaf.prefixes();
    const auto prefix = prefixes.find(text.substr(0, colon));
    const bool is_one =
        colon != std::string::npos && prefix != prefixes.end() && prefix->second == datastores_ns;
    return is_one ? text.substr(colon + 1) : "";
}

Datastore configuration_named_by(const Element &leaf) {
    const std::string name = datastore_name(leaf);
    if (name != "running" && name != "candidate")
        throw RpcError("protocol", "invalid-value",
                       "this server has only the configurations running and candidate")
            .with_info("<bad-element>datastore</bad-element>");
    return name == "running" ? Datastore::running : Datastore::candidate;
}

Datastore datastore_of(const Element &parent, const char *name) {
    const Element holder = required(parent, name);
    refuse_text(holder);
    if (holder.children().size() > 1)
        throw RpcError("protocol", "bad-element", "expected one datastore")
            .with_info(bad_element(holder.children()[1]));
    const std::vector<Element> named = holder.children();
    for (const auto datastore : {Datastore::running, Datastore::candidate}) {
        const std::string_view word = datastore == Datastore::running ? "running" : "candidate";
        if (named.empty() || !named.front().is(holder.ns(), word))
            continue;
        require_empty(named.front());
        return datastore;
    }
    if (!named.empty() && named.front().is(nmda_ns, "datastore"))
        return configuration_named_by(named.front());
    if (named.empty())
        throw RpcError("protocol", "missing-element", "expected a datastore")
            .with_info("<bad-element>" + std::string(name) + "</bad-element>");
    if (named.front().is(holder.ns(), "url"))
        throw RpcError("protocol", "operation-not-supported", "this server does not use URLs");
    throw RpcError("protocol", "invalid-value",
                   "this server has only the configurations running and candidate");
}

void require_writer(const Call &call) {
    if (!call.caller.may_write)
        throw RpcError("protocol", "access-denied", call.caller.user + " may only read");
}

} // namespace yfw::netconf

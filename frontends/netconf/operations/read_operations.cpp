#include "frontends/netconf/operations/read_operations.h"

#include <functional>

#include "frontends/netconf/filters/defaults.h"
#include "frontends/netconf/filters/filter.h"
#include "frontends/netconf/filters/origin.h"
#include "frontends/netconf/filters/xpath_narrowing.h"
#include "frontends/netconf/messages/rpc_error.h"
#include "frontends/netconf/operations/own_data.h"
#include "yang/text_writer.h"

namespace yfw::netconf {
namespace {

// What a client requests from a datastore.
struct Wanted {
    std::optional<Filter> filter;
    host::Content content = host::Content::all;
    uint32_t depth = unlimited_depth; // of each selected node
    WithDefaults defaults = WithDefaults::as_set;
    Origins origins; // of the operational datastore
};

using Read = std::function<host::SettledAnswer(const host::ReadRequest &)>;

bool wants_defaults(const Wanted &wanted) {
    return wanted.content != host::Content::state &&
           (wanted.defaults == WithDefaults::report_all || wanted.defaults == WithDefaults::report_all_tagged);
}

// Limited to what the caller may read. A content match must not reveal unreadable values, so a filter with
// values is applied after access control. Defaults are values like others: they are added before.
yang::DataTree read_readable(const Call &call, const Wanted &wanted, const host::Selection &selection,
                             const Read &read) {
    const bool has_defaults = wants_defaults(wanted);
    const bool is_filtered = has_defaults || has_to_be_filtered(selection);
    host::ReadRequest request{wanted.content, {}, is_filtered ? broadened(selection) : selection};
    if (has_defaults)
        request.selection = around_leaves(*request.selection);
    yang::DataTree data = read(request).take_data();
    if (has_defaults)
        add_defaults(data.get(), *request.selection);
    if (call.caller.rules != nullptr)
        call.caller.rules->remove_unreadable(data);
    if (is_filtered)
        keep_selected(data, selection);
    return data;
}

// The part of the OpenConfig tree that the filter needs; nothing when it needs none of it. Throws RpcError for
// one that names a node that is not served.
std::optional<host::Selection> needed_for(const std::optional<Filter> &filter, const lysc_node *root) {
    const host::Selection whole{root, std::nullopt, {}, false};
    if (!filter.has_value())
        return whole;
    if (filter->type == FilterType::subtree) {
        refuse_not_served(filter->element, root);
        return subtree_selection(filter->element, root);
    }
    const auto paths = xpath_narrowing(filter->expression, filter->prefixes, root);
    if (!paths.has_value())
        return whole;
    return paths->empty() ? std::nullopt : std::optional(host::merge_paths(*paths));
}

bool is_xpath(const Wanted &wanted) {
    return wanted.filter.has_value() && wanted.filter->type == FilterType::xpath;
}

// Reads only as much of the OpenConfig tree as the filter needs. NULL when it needs none of it.
yang::DataTree read_openconfig(const Call &call, const Wanted &wanted, const Read &read) {
    const auto needed = needed_for(wanted.filter, call.server.schemas().openconfig_root());
    if (!needed.has_value())
        return nullptr;
    yang::DataTree data = read_readable(call, wanted, *needed, read);
    if (!is_xpath(wanted))
        cut_selected(data.get(), *needed, wanted.depth);
    return data;
}

// The same for the server's own data.
yang::DataTree read_own(const Call &call, const Wanted &wanted, const OwnData &own) {
    const auto needed = needed_for(wanted.filter, own.schema);
    if (!needed.has_value())
        return nullptr;
    yang::DataTree data = own.make(wanted.content);
    if (wants_defaults(wanted))
        add_defaults(data.get(), {own.schema, std::nullopt, {}, false});
    if (call.caller.rules != nullptr)
        call.caller.rules->remove_unreadable(data);
    if (is_xpath(wanted))
        return data;
    keep_selected(data, *needed);
    cut_selected(data.get(), *needed, wanted.depth);
    return data;
}

// What is left of a reply's data when an XPath filter is applied.
void print_filtered(const Call &call, std::vector<yang::DataTree> trees, const Wanted &wanted,
                    const yang::TextSink &sink) {
    if (is_xpath(wanted))
        filter_by_xpath(trees, *wanted.filter, wanted.depth, XPathUse::request, call.caller.is_gone.get());
    for (const yang::DataTree &tree : trees)
        if (wanted.depth == unlimited_depth)
            print_data(tree.get(), wanted.defaults, sink);
        else
            print_cut_data(tree.get(), wanted.defaults, sink);
}

// Whether everything that is read for the request is part of the reply, as it is read.
bool is_taken_as_read(const Call &call, const Wanted &wanted, const host::Selection &needed) {
    return call.caller.rules == nullptr && !is_xpath(wanted) && wanted.defaults == WithDefaults::as_set &&
           wanted.depth == unlimited_depth && !wanted.origins.annotated && !wanted.origins.filter.has_value() &&
           !has_to_be_filtered(needed);
}

// Prints what is read without libyang's tree of it; false when that is needed.
bool print_as_read(const Call &call, const Wanted &wanted, const Read &read, const yang::TextSink &sink) {
    const auto needed = needed_for(wanted.filter, call.server.schemas().openconfig_root());
    if (!needed.has_value() || !is_taken_as_read(call, wanted, *needed))
        return false;
    yang::XmlWriter writer(sink, yang::Layout::compact);
    read({wanted.content, {}, *needed}).write(writer);
    writer.finish();
    return true;
}

// Prints the device's data, and the server's own.
void print_all(const Call &call, const Wanted &wanted, const Read &read, const yang::TextSink &sink) {
    std::vector<yang::DataTree> trees;
    if (!print_as_read(call, wanted, read, sink))
        trees.push_back(read_openconfig(call, wanted, read));
    if (wanted.origins.annotated || wanted.origins.filter.has_value())
        apply_origins(trees.back(), call.server.device().running_configuration().openconfig.get(),
                      wanted.origins);
    for (const OwnData &own : own_data(call.server))
        if (wanted.content != host::Content::config || own.has_configuration)
            trees.push_back(read_own(call, wanted, own));
    print_filtered(call, std::move(trees), wanted, sink);
}

// The running configuration, and state (RFC 6241 section 7.7).
void print_running_and_state(const Call &call, const Wanted &wanted, const yang::TextSink &sink) {
    print_all(
        call, wanted, [&](const host::ReadRequest &request) { return call.server.device().answer(request); },
        sink);
}

// The configuration that is in force, and state (RFC 8342 section 5.3).
void print_operational(const Call &call, const Wanted &wanted, const yang::TextSink &sink) {
    print_all(
        call, wanted,
        [&](const host::ReadRequest &request) { return call.server.device().answer_applied(request); }, sink);
}

void print_configuration(const Call &call, Datastore datastore, Wanted wanted, const yang::TextSink &sink) {
    if (wanted.content == host::Content::state) // a configuration has no state
        return;
    wanted.content = host::Content::config;
    print_all(
        call, wanted,
        [&](const host::ReadRequest &request) { return call.server.datastores().answer(datastore, request); },
        sink);
}

Wanted wanted_of(const Element &operation) {
    Wanted wanted;
    if (const std::optional<Element> filter = operation.child("filter"))
        wanted.filter = filter_of(*filter);
    wanted.defaults = with_defaults_of(operation);
    return wanted;
}

// <data> with what `print` hands to its sink. An error replaces all of it.
template <class Print> Spool data_element(const std::string &attributes, const Print &print) {
    Spool element;
    element << "<data" << attributes << ">";
    print([&element](std::string_view piece) { element << piece; });
    element << "</data>";
    return element;
}

// ---- get-data ------------------------------------------------------------------------------------------

RpcError invalid(const char *name, const std::string &why) {
    return RpcError("application", "invalid-value", why)
        .with_info("<bad-element>" + std::string(name) + "</bad-element>");
}

std::optional<Filter> nmda_filter_of(const Element &operation) {
    const std::optional<Element> subtree = operation.child("subtree-filter");
    const std::optional<Element> xpath = operation.child("xpath-filter");
    if (subtree.has_value() && xpath.has_value())
        throw RpcError("protocol", "bad-element", "<subtree-filter> and <xpath-filter> are mutually exclusive")
            .with_info("<bad-element>xpath-filter</bad-element>");
    if (subtree.has_value())
        refuse_filter_text(*subtree);
    if (subtree.has_value())
        return Filter{FilterType::subtree, *subtree, {}, {}};
    if (xpath.has_value())
        return Filter{FilterType::xpath, *xpath, xpath->text(), xpath->prefixes()};
    return std::nullopt;
}

host::Content content_of(const Element &operation) {
    const std::optional<std::string> filter = text_of(operation, "config-filter");
    if (!filter.has_value())
        return host::Content::all;
    if (*filter != "true" && *filter != "false")
        throw invalid("config-filter", "<config-filter> must be true or false");
    return *filter == "true" ? host::Content::config : host::Content::state;
}

uint32_t depth_of(const Server &server, const Element &operation) {
    const std::string text = text_of(operation, "max-depth").value_or("unbounded");
    if (!server.modules.allows("/ietf-netconf-nmda:get-data/max-depth", text))
        throw invalid("max-depth", "<max-depth> must be a number from 1 to 65535, or unbounded");
    return text == "unbounded" ? unlimited_depth : static_cast<uint32_t>(std::stoul(text));
}

} // namespace

Spool get(const Call &call) {
    refuse_others(call.operation, {"filter", "with-defaults"});
    const Wanted wanted = wanted_of(call.operation);
    return data_element("", [&](const yang::TextSink &sink) { print_running_and_state(call, wanted, sink); });
}

Spool get_config(const Call &call) {
    refuse_others(call.operation, {"source", "filter", "with-defaults"});
    const Datastore source = datastore_of(call.operation, "source");
    const Wanted wanted = wanted_of(call.operation);
    return data_element("",
                        [&](const yang::TextSink &sink) { print_configuration(call, source, wanted, sink); });
}

Spool get_data(const Call &call) {
    refuse_others(call.operation,
                  {"datastore", "subtree-filter", "xpath-filter", "config-filter", "origin-filter",
                   "negated-origin-filter", "max-depth", "with-origin", "with-defaults"});
    const Element datastore = required(call.operation, "datastore");
    if (const std::optional<Element> with_origin = call.operation.child("with-origin"))
        require_empty(*with_origin);
    const Wanted wanted{nmda_filter_of(call.operation), content_of(call.operation),
                        depth_of(call.server, call.operation), with_defaults_of(call.operation, nmda_ns),
                        origins_of(call.operation)};
    const std::string attributes = " xmlns=\"" + std::string(nmda_ns) + "\"";
    const bool is_operational = datastore_name(datastore) == "operational";
    if (!is_operational && (wanted.origins.annotated || wanted.origins.filter.has_value()))
        throw invalid("datastore", "origins are known of the operational datastore only");
    if (!is_operational)
        return data_element(attributes, [&](const yang::TextSink &sink) {
            print_configuration(call, configuration_named_by(datastore), wanted, sink);
        });
    // The capability with-operational-defaults is not offered.
    if (wanted.defaults != WithDefaults::as_set)
        throw invalid("with-defaults", "<with-defaults> applies to configuration only");
    return data_element(attributes, [&](const yang::TextSink &sink) { print_operational(call, wanted, sink); });
}

Spool get_schema(const Call &call) {
    refuse_others(call.operation, {"identifier", "version", "format"});
    const std::string name = required(call.operation, "identifier").text();
    const std::string format = text_of(call.operation, "format").value_or("yang");
    const size_t colon = format.find(':');
    if ((colon == std::string::npos ? format : format.substr(colon + 1)) != "yang")
        throw RpcError("application", "invalid-value", "schemas are available in the format yang only");
    const auto text = call.server.modules.text(name, text_of(call.operation, "version").value_or(""));
    if (!text.has_value())
        throw RpcError("application", "invalid-value", "there is no such schema");
    return data_element(" xmlns=\"" + std::string(monitoring_ns) + "\"",
                        [&](const yang::TextSink &sink) { sink(escaped(*text)); });
}

} // namespace yfw::netconf

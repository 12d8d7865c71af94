#include "frontends/netconf/own_data.h"

#include <functional>

#include "frontends/netconf/defaults.h"
#include "frontends/netconf/rpc_error.h"

namespace yfw::netconf {
namespace {

std::string print_datastore(const Server &server, const char *name, Datastore datastore) {
    std::string xml = "<datastore><name>" + std::string(name) + "</name>";
    if (const auto lock = server.datastores().lock_of(datastore))
        xml += "<locks><global-lock><locked-by-session>" + std::to_string(lock->session) +
               "</locked-by-session><locked-time>" + lock->time + "</locked-time></global-lock></locks>";
    return xml + "</datastore>";
}

std::string print_schemas(const ProtocolModules &modules) {
    std::string xml = "<schemas>";
    for (const ModuleName &module : modules.modules())
        xml += "<schema><identifier>" + module.name + "</identifier><version>" + module.revision +
               "</version><format>yang</format><namespace>" + escaped(module.ns) +
               "</namespace><location>NETCONF</location></schema>";
    return xml + "</schemas>";
}

std::string print_monitoring(const Server &server) {
    std::string xml = "<netconf-state xmlns=\"" + std::string(monitoring_ns) + "\"><capabilities>";
    for (const std::string &capability : capabilities(server.modules))
        xml += "<capability>" + escaped(capability) + "</capability>";
    return xml + "</capabilities><datastores>" + print_datastore(server, "running", Datastore::running) +
           print_datastore(server, "candidate", Datastore::candidate) + "</datastores>" +
           print_schemas(server.modules) + server.monitoring.print() + "</netconf-state>";
}

// A top container, made only when it is asked for.
struct Own {
    std::string_view ns;
    std::string_view name;
    std::function<std::string()> print;
};

std::vector<Own> own_data(const Server &server) {
    std::vector<Own> all{{monitoring_ns, "netconf-state", [&server] { return print_monitoring(server); }},
                         {streams_ns, "netconf", [&server] { return print_streams(server.events); }}};
    for (const ProtocolModules::Printed &library : server.modules.library())
        all.push_back({library.ns, library.name, [&library] { return library.xml; }});
    return all;
}

std::string cut_to(const Server &server, const std::string &xml, const std::optional<Filter> &filter,
                   uint32_t depth) {
    if (depth == unlimited_depth || xml.empty())
        return xml;
    const yang::DataTree data = server.modules.parse(xml);
    host::Selection all{data->schema, std::nullopt, {}, false};
    cut_selected(data.get(),
                 filter.has_value() ? subtree_selection(filter->element, data->schema).value_or(all) : all,
                 depth);
    return print_cut_data(data.get());
}

// As far as the caller may read it.
std::string print_readable(const Call &call, const Own &own) {
    if (call.caller.rules == nullptr)
        return own.print();
    yang::DataTree data = call.server.modules.parse(own.print());
    call.caller.rules->remove_unreadable(data);
    return print_data(data.get());
}

std::string read(const Call &call, const Own &own, const std::optional<Filter> &filter, uint32_t depth) {
    const bool is_subtree = filter.has_value() && filter->type == FilterType::subtree;
    if (is_subtree && !names_top(filter->element, own.ns, own.name))
        return "";
    const std::string xml = print_readable(call, own);
    if (xml.empty() || !filter.has_value())
        return cut_to(call.server, xml, filter, depth);
    if (is_subtree)
        return cut_to(call.server, subtree_filtered(filter->element, Document(xml).root()), filter, depth);
    return print_cut_data(xpath_filtered(call.server.modules.parse(xml), *filter, depth).get());
}

} // namespace

std::string read_own_data(const Call &call, const std::optional<Filter> &filter, uint32_t depth) {
    std::string xml;
    for (const Own &own : own_data(call.server))
        xml += read(call, own, filter, depth);
    return xml;
}

} // namespace yfw::netconf

#include "frontends/netconf/operations/own_data.h"

#include "yang/building.h"

namespace yfw::netconf {
namespace {

using yang::add_container;
using yang::add_entry;
using yang::add_leaf;

constexpr const char *monitoring_module = "ietf-netconf-monitoring";
constexpr const char *streams_module = "nc-notifications";

void add_datastore(lyd_node &datastores, const Server &server, const char *name, Datastore datastore) {
    lyd_node &entry = add_entry(datastores, "datastore", {name, "", ""});
    if (const auto lock = server.datastores().lock_of(datastore)) {
        lyd_node &global = add_container(add_container(entry, "locks"), "global-lock");
        add_leaf(global, "locked-by-session", std::to_string(lock->session));
        add_leaf(global, "locked-time", lock->time);
    }
}

yang::DataTree monitoring_data(const Server &server) {
    yang::DataTree data = yang::make_top(server.modules.context(), monitoring_module, "netconf-state");
    lyd_node &all_capabilities = add_container(*data, "capabilities");
    for (const std::string &capability : capabilities(server.modules))
        add_leaf(all_capabilities, "capability", capability);
    lyd_node &datastores = add_container(*data, "datastores");
    add_datastore(datastores, server, "running", Datastore::running);
    add_datastore(datastores, server, "candidate", Datastore::candidate);
    lyd_node &schemas = add_container(*data, "schemas");
    for (const ModuleName &module : server.modules.modules()) {
        lyd_node &schema =
            add_entry(schemas, "schema", {module.name, module.revision, "ietf-netconf-monitoring:yang"});
        add_leaf(schema, "namespace", module.ns);
        add_leaf(schema, "location", "NETCONF");
    }
    server.monitoring.add_to(*data);
    return data;
}

yang::DataTree streams_data(const Server &server) {
    yang::DataTree data = yang::make_top(server.modules.context(), streams_module, "netconf");
    lyd_node &stream = add_entry(add_container(*data, "streams"), "stream", {"NETCONF", "", ""});
    add_leaf(stream, "description", "Changes of the configuration, of sessions and of neighbors");
    add_leaf(stream, "replaySupport", "true");
    add_leaf(stream, "replayLogCreationTime", print_time(server.events.created()));
    if (const std::optional<EventTime> aged = server.events.aged())
        add_leaf(stream, "replayLogAgedTime", print_time(*aged));
    return data;
}

// RFC 8341: the rules are configuration, the counters of denials state.
yang::DataTree rules_data(const Server &server, host::Content content) {
    const access::Nacm &rules = *server.service.rules();
    yang::DataTree data = content != host::Content::state
                              ? rules.tree(server.modules.context())
                              : yang::make_top(server.modules.context(), "ietf-netconf-acm", "nacm");
    if (content == host::Content::config)
        return data;
    const access::Denials &denials = rules.denials();
    add_leaf(*data, "denied-operations", std::to_string(denials.operations.load()));
    add_leaf(*data, "denied-data-writes", std::to_string(denials.data_writes.load()));
    add_leaf(*data, "denied-notifications", std::to_string(denials.notifications.load()));
    return data;
}

const lysc_node *top_of(const ProtocolModules &modules, const char *module, const char *name) {
    return lys_find_child(nullptr, ly_ctx_get_module_implemented(modules.context(), module), name, 0, 0, 0);
}

yang::DataTree copy_of(const lyd_node *tree) {
    lyd_node *copy = nullptr;
    if (lyd_dup_single(tree, nullptr, LYD_DUP_RECURSIVE, &copy) != LY_SUCCESS)
        throw std::bad_alloc();
    return yang::DataTree(copy);
}

} // namespace

std::vector<OwnData> own_data(const Server &server) {
    std::vector<OwnData> all{{top_of(server.modules, monitoring_module, "netconf-state"),
                              [&server](host::Content) { return monitoring_data(server); }},
                             {top_of(server.modules, streams_module, "netconf"),
                              [&server](host::Content) { return streams_data(server); }}};
    for (const lyd_node *top = server.modules.library(); top != nullptr; top = top->next)
        all.push_back({top->schema, [top](host::Content) { return copy_of(top); }});
    if (server.service.rules() != nullptr)
        all.push_back({server.modules.access_rules_root(),
                       [&server](host::Content content) { return rules_data(server, content); }, true});
    return all;
}

} // namespace yfw::netconf

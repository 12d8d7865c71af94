#include "frontends/netconf/operations/operations.h"

#include "frontends/netconf/filters/defaults.h"
#include "frontends/netconf/messages/rpc_error.h"
#include "frontends/netconf/operations/edit_operations.h"
#include "frontends/netconf/operations/read_operations.h"

namespace yfw::netconf {
namespace {

// ---- sessions ------------------------------------------------------------------------------------------

Spool close_session(const Call &call) {
    refuse_others(call.operation, {});
    call.aftermath.close = true;
    return ok;
}

Spool kill_session(const Call &call) {
    refuse_others(call.operation, {"session-id"});
    require_writer(call);
    const uint32_t session = number_of(required(call.operation, "session-id"), 1);
    if (session == call.caller.session || !call.server.is_session(session))
        throw RpcError("protocol", "invalid-value", "there is no other session " + std::to_string(session))
            .with_info("<bad-element>session-id</bad-element>");
    call.aftermath.kill = session;
    return ok;
}

// ---- events --------------------------------------------------------------------------------------------

Spool create_subscription(const Call &call) {
    refuse_others(call.operation, {"stream", "filter", "startTime", "stopTime"});
    if (call.caller.is_subscribed)
        throw RpcError("protocol", "operation-failed", "the session already has a subscription");
    call.aftermath.subscription = std::make_shared<const Subscription>(call.operation, call.server.modules);
    return ok;
}

struct Known {
    std::string_view ns;
    std::string_view module; // of its namespace
    std::string_view name;
    Spool (*perform)(const Call &);
};

constexpr Known operations[] = {{base_ns, "ietf-netconf", "get", get},
                                {base_ns, "ietf-netconf", "get-config", get_config},
                                {base_ns, "ietf-netconf", "edit-config", edit_config},
                                {base_ns, "ietf-netconf", "copy-config", copy_config},
                                {base_ns, "ietf-netconf", "delete-config", delete_config},
                                {base_ns, "ietf-netconf", "lock", lock},
                                {base_ns, "ietf-netconf", "unlock", unlock},
                                {base_ns, "ietf-netconf", "validate", validate},
                                {base_ns, "ietf-netconf", "commit", commit},
                                {base_ns, "ietf-netconf", "cancel-commit", cancel_commit},
                                {base_ns, "ietf-netconf", "discard-changes", discard_changes},
                                {base_ns, "ietf-netconf", "close-session", close_session},
                                {base_ns, "ietf-netconf", "kill-session", kill_session},
                                {monitoring_ns, "ietf-netconf-monitoring", "get-schema", get_schema},
                                {nmda_ns, "ietf-netconf-nmda", "get-data", get_data},
                                {nmda_ns, "ietf-netconf-nmda", "edit-data", edit_data},
                                {notification_ns, "notifications", "create-subscription", create_subscription}};

// RFC 8341 section 3.4.4.
void refuse_denied(const Caller &caller, const Known &known) {
    if (caller.rules == nullptr || caller.rules->may_execute(known.module, known.name, false))
        return;
    caller.rules->denials().operations++;
    throw RpcError("protocol", "access-denied", caller.user + " may not use <" + std::string(known.name) + ">");
}

} // namespace

std::vector<std::string> capabilities(const ProtocolModules &modules) {
    const std::string prefix = "urn:ietf:params:netconf:";
    std::vector<std::string> all{prefix + "base:1.0", prefix + "base:1.1"};
    for (const char *name :
         {"writable-running:1.0", "candidate:1.0", "confirmed-commit:1.1", "rollback-on-error:1.0",
          "validate:1.1", "xpath:1.0", "notification:1.0", "interleave:1.0"})
        all.push_back(prefix + "capability:" + name);
    all.push_back(with_defaults_capability());
    for (const ModuleName &module : modules.modules()) {
        if (module.name == "ietf-yang-library")
            all.push_back(prefix + "capability:yang-library:1.1?revision=" + module.revision +
                          "&content-id=" + modules.content_id());
        if (module.offered)
            all.push_back(module.ns + "?module=" + module.name +
                          (module.revision.empty() ? "" : "&revision=" + module.revision) +
                          (module.features.empty() ? "" : "&features=" + module.features) +
                          (module.deviations.empty() ? "" : "&deviations=" + module.deviations));
    }
    return all;
}

Spool perform(const Server &server, const Caller &caller, const Element &operation, Aftermath &aftermath) {
    bool known_ns = false;
    for (const Known &known : operations) {
        known_ns = known_ns || known.ns == operation.ns();
        if (!operation.is(known.ns, known.name))
            continue;
        refuse_denied(caller, known);
        return known.perform({server, caller, operation, aftermath});
    }
    if (known_ns)
        throw RpcError("protocol", "operation-not-supported",
                       "this server does not support <" + std::string(operation.name()) + ">");
    throw RpcError("protocol", "unknown-namespace", "no operation has this namespace")
        .with_info(bad_name("bad-element", operation.name()) + bad_namespace(operation.ns()));
}

} // namespace yfw::netconf

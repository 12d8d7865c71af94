#include "frontends/netconf/operations.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <memory>

#include "frontends/netconf/filter.h"
#include "frontends/netconf/read_operations.h"
#include "frontends/netconf/rpc_error.h"

namespace yfw::netconf {
namespace {

constexpr const char *ok = "<ok/>";

struct Call {
    const Server &server;
    const Caller &caller;
    const Element &operation;
    Aftermath &aftermath;
};

// ---- arguments -----------------------------------------------------------------------------------------

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
                       "<" + std::string(element.name()) + "> has to be a number from " +
                           std::to_string(least));
    return number;
}

// Names what does not belong into the operation.
void refuse_others(const Element &parent, std::initializer_list<std::string_view> known) {
    for (const Element &child : parent.children())
        if (child.ns() != parent.ns() || std::find(known.begin(), known.end(), child.name()) == known.end())
            throw RpcError("protocol", child.ns() == parent.ns() ? "unknown-element" : "unknown-namespace",
                           "<" + std::string(parent.name()) + "> does not take it")
                .with_info("<bad-element>" + escaped(child.name()) + "</bad-element>" +
                           (child.ns() == parent.ns()
                                ? ""
                                : "<bad-namespace>" + escaped(child.ns()) + "</bad-namespace>"));
}

// The one datastore that <source> or <target> names.
Datastore datastore_of(const Element &parent, const char *name) {
    const Element holder = required(parent, name);
    if (holder.children().size() > 1)
        throw RpcError("protocol", "bad-element", "expected one datastore")
            .with_info("<bad-element>" + escaped(holder.children()[1].name()) + "</bad-element>");
    if (holder.child("running"))
        return Datastore::running;
    if (holder.child("candidate"))
        return Datastore::candidate;
    const std::vector<Element> named = holder.children();
    if (named.empty())
        throw RpcError("protocol", "missing-element", "expected a datastore")
            .with_info("<bad-element>" + std::string(name) + "</bad-element>");
    throw RpcError("protocol", "invalid-value", "this server has running and candidate only");
}

void require_writer(const Call &call) {
    if (!call.caller.may_write)
        throw RpcError("protocol", "access-denied", call.caller.user + " may only read");
}

// ---- editing -------------------------------------------------------------------------------------------

host::Operation default_operation_of(const Element &edit) {
    const std::string word = text_of(edit, "default-operation").value_or("merge");
    if (word == "merge")
        return host::Operation::merge;
    if (word == "replace")
        return host::Operation::replace;
    if (word == "none")
        return host::Operation::none;
    throw RpcError("protocol", "invalid-value", "<default-operation> is merge, replace or none")
        .with_info("<bad-element>default-operation</bad-element>");
}

std::string print_children(const Element &parent) {
    std::string xml;
    for (const Element &child : parent.children())
        xml += child.print();
    return xml;
}

// What libyang refuses without saying where.
void check_operations(const Element &element, const std::string &parent) {
    const std::string path = parent + "/oc-lldp:" + std::string(element.name());
    for (const Element::Attribute &attribute : element.attributes())
        if (attribute.ns == base_ns && attribute.name == "operation" &&
            (attribute.value == "none" || !host::operation_from(attribute.value).has_value()))
            throw RpcError("application", "bad-attribute",
                           "\"" + std::string(attribute.value) + "\" is no edit operation")
                .at(path)
                .with_info("<bad-attribute>operation</bad-attribute><bad-element>" + escaped(element.name()) +
                           "</bad-element>");
    for (const Element &child : element.children())
        check_operations(child, path);
}

void check_top(const Server &server, const Element &top) {
    const lysc_node *root = server.schemas.openconfig_root();
    if (top.ns() == root->module->ns && top.name() != root->name)
        throw RpcError("application", "unknown-element", "only <lldp> can be edited")
            .with_info("<bad-element>" + escaped(top.name()) + "</bad-element>");
    check_operations(top, "");
}

std::optional<host::EditNode> edit_of(const Server &server, const Element &config, host::Operation operation) {
    const std::vector<Element> tops = config.children();
    if (tops.empty())
        return std::nullopt;
    if (tops.size() > 1)
        throw RpcError("application", "bad-element", "expected one <lldp>")
            .with_info("<bad-element>" + escaped(tops[1].name()) + "</bad-element>");
    check_top(server, tops.front());
    return host::parse_edit(server.schemas, print_children(config), operation);
}

std::string edit_config(const Call &call) {
    refuse_others(call.operation,
                  {"target", "default-operation", "test-option", "error-option", "config", "url"});
    require_writer(call);
    if (call.operation.child("url"))
        throw RpcError("protocol", "operation-not-supported", "this server does not read from URLs");
    const std::string test = text_of(call.operation, "test-option").value_or("test-then-set");
    const std::string error = text_of(call.operation, "error-option").value_or("stop-on-error");
    if (test != "test-then-set" && test != "set" && test != "test-only")
        throw RpcError("protocol", "invalid-value", "<test-option> is test-then-set, set or test-only")
            .with_info("<bad-element>test-option</bad-element>");
    // Edits are all or nothing: the first two say the same here, and the third cannot be kept.
    if (error != "stop-on-error" && error != "rollback-on-error")
        throw RpcError("protocol", "invalid-value", "<error-option> is stop-on-error or rollback-on-error")
            .with_info("<bad-element>error-option</bad-element>");
    const Datastore target = datastore_of(call.operation, "target");
    const auto edit =
        edit_of(call.server, required(call.operation, "config"), default_operation_of(call.operation));
    if (edit.has_value())
        call.server.datastores.edit(call.caller, target, *edit, test == "test-only");
    return ok;
}

std::string copy_config(const Call &call) {
    refuse_others(call.operation, {"source", "target"});
    require_writer(call);
    const Datastore target = datastore_of(call.operation, "target");
    const Element source = required(call.operation, "source");
    const std::optional<Element> config = source.child("config");
    if (!config.has_value()) {
        call.server.datastores.copy(call.caller, datastore_of(call.operation, "source"), target);
        return ok;
    }
    const auto edit = edit_of(call.server, *config, host::Operation::replace);
    if (!edit.has_value())
        throw RpcError("protocol", "invalid-value", "the configuration to copy is empty");
    call.server.datastores.edit(call.caller, target, *edit, false);
    return ok;
}

// Of what there is, only the startup datastore could be deleted (RFC 6241 section 7.4).
std::string delete_config(const Call &call) {
    require_writer(call);
    datastore_of(call.operation, "target");
    throw RpcError("protocol", "operation-not-supported", "neither running nor candidate can be deleted");
}

std::string validate(const Call &call) {
    refuse_others(call.operation, {"source"});
    const Element source = required(call.operation, "source");
    if (const std::optional<Element> config = source.child("config")) {
        if (const auto edit = edit_of(call.server, *config, host::Operation::replace))
            call.server.datastores.validate(*edit);
    } else {
        call.server.datastores.validate(datastore_of(call.operation, "source"));
    }
    return ok;
}

std::string commit(const Call &call) {
    refuse_others(call.operation, {"confirmed", "confirm-timeout", "persist", "persist-id"});
    require_writer(call);
    std::optional<ConfirmedCommit> confirmed;
    if (call.operation.child("confirmed")) {
        confirmed.emplace();
        if (const auto timeout = call.operation.child("confirm-timeout"))
            confirmed->timeout = std::chrono::seconds(number_of(*timeout, 1));
        confirmed->persist = text_of(call.operation, "persist");
    }
    call.server.datastores.commit(call.caller, confirmed, text_of(call.operation, "persist-id"));
    return ok;
}

std::string cancel_commit(const Call &call) {
    refuse_others(call.operation, {"persist-id"});
    require_writer(call);
    call.server.datastores.cancel_commit(call.caller, text_of(call.operation, "persist-id"));
    return ok;
}

std::string discard_changes(const Call &call) {
    require_writer(call);
    call.server.datastores.discard(call.caller);
    return ok;
}

// ---- locks and sessions --------------------------------------------------------------------------------

std::string lock(const Call &call) {
    require_writer(call);
    call.server.datastores.lock(call.caller, datastore_of(call.operation, "target"));
    return ok;
}

std::string unlock(const Call &call) {
    require_writer(call);
    call.server.datastores.unlock(call.caller, datastore_of(call.operation, "target"));
    return ok;
}

std::string close_session(const Call &call) {
    call.aftermath.close = true;
    return ok;
}

std::string kill_session(const Call &call) {
    require_writer(call);
    const uint32_t session = number_of(required(call.operation, "session-id"), 1);
    if (session == call.caller.session || !call.server.is_session(session))
        throw RpcError("protocol", "invalid-value", "there is no other session " + std::to_string(session))
            .with_info("<bad-element>session-id</bad-element>");
    call.aftermath.kill = session;
    return ok;
}

// ---- reading -------------------------------------------------------------------------------------------

std::string get(const Call &call) {
    refuse_others(call.operation, {"filter"});
    return "<data>" + read_everything(call.server, call.operation.child("filter")) + "</data>";
}

std::string get_config(const Call &call) {
    refuse_others(call.operation, {"source", "filter"});
    const Datastore source = datastore_of(call.operation, "source");
    return "<data>" + read_configuration(call.server, source, call.operation.child("filter")) + "</data>";
}

std::string get_schema(const Call &call) {
    refuse_others(call.operation, {"identifier", "version", "format"});
    const std::string name = required(call.operation, "identifier").text();
    const std::string format = text_of(call.operation, "format").value_or("yang");
    const size_t colon = format.find(':');
    if ((colon == std::string::npos ? format : format.substr(colon + 1)) != "yang")
        throw RpcError("application", "invalid-value", "schemas are given as yang");
    const auto text = call.server.modules.text(name, text_of(call.operation, "version").value_or(""));
    if (!text.has_value())
        throw RpcError("application", "invalid-value", "there is no such schema");
    return "<data xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring\">" + escaped(*text) + "</data>";
}

struct Known {
    std::string_view ns;
    std::string_view name;
    std::string (*perform)(const Call &);
};

constexpr std::string_view monitoring_ns = "urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring";

constexpr Known operations[] = {{base_ns, "get", get},
                                {base_ns, "get-config", get_config},
                                {base_ns, "edit-config", edit_config},
                                {base_ns, "copy-config", copy_config},
                                {base_ns, "delete-config", delete_config},
                                {base_ns, "lock", lock},
                                {base_ns, "unlock", unlock},
                                {base_ns, "validate", validate},
                                {base_ns, "commit", commit},
                                {base_ns, "cancel-commit", cancel_commit},
                                {base_ns, "discard-changes", discard_changes},
                                {base_ns, "close-session", close_session},
                                {base_ns, "kill-session", kill_session},
                                {monitoring_ns, "get-schema", get_schema}};

} // namespace

std::vector<std::string> capabilities(const ProtocolModules &modules) {
    const std::string prefix = "urn:ietf:params:netconf:";
    std::vector<std::string> all{prefix + "base:1.0", prefix + "base:1.1"};
    for (const char *name : {"writable-running:1.0", "candidate:1.0", "confirmed-commit:1.1",
                             "rollback-on-error:1.0", "validate:1.1", "xpath:1.0"})
        all.push_back(prefix + "capability:" + name);
    for (const ModuleName &module : modules.modules()) {
        if (module.name == "ietf-yang-library")
            all.push_back(prefix + "capability:yang-library:1.1?revision=" + module.revision +
                          "&content-id=" + modules.content_id());
        if (module.offered)
            all.push_back(module.ns + "?module=" + module.name +
                          (module.revision.empty() ? "" : "&revision=" + module.revision));
    }
    return all;
}

std::string perform(const Server &server, const Caller &caller, const Element &operation,
                    Aftermath &aftermath) {
    bool known_ns = false;
    for (const Known &known : operations) {
        known_ns = known_ns || known.ns == operation.ns();
        if (operation.is(known.ns, known.name))
            return known.perform({server, caller, operation, aftermath});
    }
    if (known_ns)
        throw RpcError("protocol", "operation-not-supported",
                       "this server does not have <" + std::string(operation.name()) + ">");
    throw RpcError("protocol", "unknown-namespace", "no operation has this namespace")
        .with_info("<bad-element>" + escaped(operation.name()) + "</bad-element><bad-namespace>" +
                   escaped(operation.ns()) + "</bad-namespace>");
}

} // namespace yfw::netconf

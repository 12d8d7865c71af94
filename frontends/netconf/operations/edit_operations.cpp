#include "frontends/netconf/operations/edit_operations.h"

#include "frontends/netconf/filters/defaults.h"
#include "frontends/netconf/messages/rpc_error.h"
#include "frontends/netconf/operations/rules_edit.h"
#include "yang/edit_element.h"

namespace yfw::netconf {
namespace {

yang::Operation default_operation_of(const Element &edit) {
    const std::string word = text_of(edit, "default-operation").value_or("merge");
    if (word == "merge")
        return yang::Operation::merge;
    if (word == "replace")
        return yang::Operation::replace;
    if (word == "none")
        return yang::Operation::none;
    throw RpcError("protocol", "invalid-value", "<default-operation> must be merge, replace or none")
        .with_info("<bad-element>default-operation</bad-element>");
}

// An operation attribute here would apply to the whole datastore; reject it rather than silently ignore it.
void refuse_more_than_elements(const Element &config) {
    refuse_attributes(config);
    if (!config.text().empty())
        throw RpcError("protocol", "bad-element", "<config> must contain elements, not text")
            .with_info("<bad-element>config</bad-element>");
}

// The configuration's top nodes: one of the device, and one of the access rules.
device::Edits edits_of(const Server &server, const Element &config, yang::Operation operation) {
    refuse_more_than_elements(config);
    device::Edits edits;
    for (const Element &top : config.children()) {
        const bool is_rules = is_of_rules(server, top);
        std::optional<yang::EditNode> &edit = is_rules ? edits.rules : edits.openconfig;
        if (edit.has_value())
            throw RpcError("application", "bad-element",
                           "a configuration must have a single top node of a model")
                .with_info(bad_name("bad-element", top.name()));
        edit = is_rules ? rules_edit(server, top, operation)
                        : yang::read_edit(server.schemas(),
                                          yang::edit_element_from(server.schemas().context(), top), operation);
    }
    return edits;
}

void refuse_url(const Element &operation) {
    if (operation.child("url"))
        throw RpcError("protocol", "operation-not-supported", "this server does not read from URLs");
}

// What replacing a configuration by one without the device's top node amounts to. One without <nacm> leaves the
// access rules alone: most callers may not read them.
yang::EditNode removal_of_all(const Server &server) {
    yang::EditNode edit;
    edit.node = server.schemas().openconfig_root();
    edit.operation = yang::Operation::remove;
    return edit;
}

// Applies the operation's <config>; an empty one changes nothing, unless it replaces everything (RFC 6241
// section 7.2).
Spool edit_datastore(const Call &call, Datastore target, bool only_test) {
    const yang::Operation operation = default_operation_of(call.operation);
    device::Edits edits = edits_of(call.server, required(call.operation, "config"), operation);
    if (operation == yang::Operation::replace && !edits.openconfig.has_value())
        edits.openconfig = removal_of_all(call.server);
    call.server.service.edit(call.caller, target, edits, only_test);
    return ok;
}

} // namespace

Spool edit_config(const Call &call) {
    refuse_others(call.operation,
                  {"target", "default-operation", "test-option", "error-option", "config", "url"});
    require_writer(call);
    refuse_url(call.operation);
    const std::string test = text_of(call.operation, "test-option").value_or("test-then-set");
    const std::string error = text_of(call.operation, "error-option").value_or("stop-on-error");
    if (test != "test-then-set" && test != "set" && test != "test-only")
        throw RpcError("protocol", "invalid-value", "<test-option> must be test-then-set, set or test-only")
            .with_info("<bad-element>test-option</bad-element>");
    // Edits are all or nothing: two of them mean the same here, and the third cannot be honored.
    if (error == "continue-on-error")
        throw RpcError("protocol", "operation-not-supported",
                       "this server applies an edit completely or not at all")
            .with_info("<bad-element>error-option</bad-element>");
    if (error != "stop-on-error" && error != "rollback-on-error")
        throw RpcError("protocol", "invalid-value", "<error-option> must be stop-on-error or rollback-on-error")
            .with_info("<bad-element>error-option</bad-element>");
    return edit_datastore(call, datastore_of(call.operation, "target"), test == "test-only");
}

Spool edit_data(const Call &call) {
    refuse_others(call.operation, {"datastore", "default-operation", "config", "url"});
    require_writer(call);
    refuse_url(call.operation);
    return edit_datastore(call, configuration_named_by(required(call.operation, "datastore")), false);
}

namespace {

// The <config> in <source>; nothing when that names a datastore.
std::optional<Element> inline_configuration(const Call &call) {
    const Element source = required(call.operation, "source");
    const std::optional<Element> config = source.child("config");
    if (config.has_value())
        refuse_others(source, {"config"});
    return config;
}

} // namespace

Spool copy_config(const Call &call) {
    refuse_others(call.operation, {"source", "target", "with-defaults"});
    with_defaults_of(call.operation); // validated only: it makes no difference between configurations
    require_writer(call);
    const Datastore target = datastore_of(call.operation, "target");
    const std::optional<Element> config = inline_configuration(call);
    if (!config.has_value()) {
        call.server.datastores().copy(call.caller, datastore_of(call.operation, "source"), target);
        return ok;
    }
    device::Edits edits = edits_of(call.server, *config, yang::Operation::replace);
    if (!edits.openconfig.has_value())
        edits.openconfig = removal_of_all(call.server);
    call.server.service.edit(call.caller, target, edits, false);
    return ok;
}

// Only the startup datastore could be deleted (RFC 6241 section 7.4).
Spool delete_config(const Call &call) {
    refuse_others(call.operation, {"target"});
    require_writer(call);
    datastore_of(call.operation, "target");
    throw RpcError("protocol", "operation-not-supported", "neither running nor candidate can be deleted");
}

Spool validate(const Call &call) {
    refuse_others(call.operation, {"source"});
    if (const std::optional<Element> config = inline_configuration(call)) {
        call.server.service.validate(edits_of(call.server, *config, yang::Operation::replace));
    } else {
        call.server.datastores().validate(datastore_of(call.operation, "source"));
    }
    return ok;
}

namespace {

// RFC 6241 section 8.4.5: these parameters are of a confirmed commit. Ignoring one would make a commit final
// that the client means to try.
void refuse_without_confirmed(const Element &operation, std::initializer_list<const char *> names) {
    for (const char *name : names)
        if (operation.child(name).has_value())
            throw RpcError("protocol", "bad-element",
                           "<" + std::string(name) + "> applies to a commit with <confirmed/> only")
                .with_info(bad_name("bad-element", name));
}

std::optional<device::Confirmation> confirmation_of(const Element &operation) {
    const std::optional<Element> wanted = operation.child("confirmed");
    if (!wanted.has_value()) {
        refuse_without_confirmed(operation, {"confirm-timeout", "persist"});
        return std::nullopt;
    }
    require_empty(*wanted);
    device::Confirmation confirmed;
    if (const auto timeout = operation.child("confirm-timeout"))
        confirmed.timeout = std::chrono::seconds(number_of(*timeout, 1));
    confirmed.persist = text_of(operation, "persist");
    return confirmed;
}

} // namespace

Spool commit(const Call &call) {
    refuse_others(call.operation, {"confirmed", "confirm-timeout", "persist", "persist-id"});
    require_writer(call);
    const std::optional<device::Confirmation> confirmed = confirmation_of(call.operation);
    call.server.datastores().commit(call.caller, confirmed, text_of(call.operation, "persist-id"));
    return ok;
}

Spool cancel_commit(const Call &call) {
    refuse_others(call.operation, {"persist-id"});
    require_writer(call);
    call.server.datastores().cancel_commit(call.caller, text_of(call.operation, "persist-id"));
    return ok;
}

Spool discard_changes(const Call &call) {
    refuse_others(call.operation, {});
    require_writer(call);
    call.server.datastores().discard(call.caller);
    return ok;
}

Spool lock(const Call &call) {
    refuse_others(call.operation, {"target"});
    require_writer(call);
    call.server.datastores().lock(call.caller, datastore_of(call.operation, "target"));
    return ok;
}

Spool unlock(const Call &call) {
    refuse_others(call.operation, {"target"});
    require_writer(call);
    call.server.datastores().unlock(call.caller, datastore_of(call.operation, "target"));
    return ok;
}

} // namespace yfw::netconf

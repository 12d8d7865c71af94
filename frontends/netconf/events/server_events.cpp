#include "frontends/netconf/events/server_events.h"

#include <algorithm>

#include "frontends/netconf/messages/rpc_error.h"
#include "frontends/netconf/messages/wire_path.h"

namespace yfw::netconf {
namespace {

constexpr const char *module = "ietf-netconf-notifications";

std::string event_element(const char *name, const std::string &content) {
    return "<" + std::string(name) + " xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-notifications\">" +
           content + "</" + name + ">";
}

void publish(EventStream &events, const char *name, const std::string &content) {
    events.publish(module, name, event_element(name, content));
}

// The grouping common-session-parms.
std::string print_session(const Actor &actor) {
    return text_element("username", actor.user) + text_element("session-id", std::to_string(actor.session)) +
           text_element("source-host", actor.host);
}

std::string print_record(const events::EditRecord &edit) {
    return "<edit>" + path_element("target", edit.target, edit.openconfig) +
           text_element("operation", edit.operation) + "</edit>";
}

std::string print_config_change(const events::ConfigurationChange &change) {
    const bool is_own = change.actor.session == 0 && change.actor.user.empty();
    std::string xml = "<changed-by>" + (is_own ? "<server/>" : print_session(change.actor)) +
                      "</changed-by><datastore>running</datastore>";
    for (const events::EditRecord &edit : change.edits)
        xml += print_record(edit);
    return xml;
}

bool defines(const ProtocolModules &modules, const std::string &name, const std::string &notification) {
    const lys_module *found = ly_ctx_get_module_implemented(modules.context(), name.c_str());
    if (found == nullptr)
        return false;
    for (const lysc_node_notif *one = found->compiled->notifs; one != nullptr; one = one->next)
        if (notification == one->name)
            return true;
    return false;
}

} // namespace

const char *word_of(events::ConfirmedCommit::What what) {
    using What = events::ConfirmedCommit::What;
    switch (what) {
    case What::start:
        return "start";
    case What::cancel:
        return "cancel";
    case What::timeout:
        return "timeout";
    case What::extend:
        return "extend";
    case What::complete:
        break;
    }
    return "complete";
}

void DeviceEvents::changed(const events::ConfigurationChange &change) {
    publish(stream_, "netconf-config-change", print_config_change(change));
}

void DeviceEvents::changed(const events::ConfirmedCommit &commit) {
    std::string xml = (commit.actor.session != 0 ? print_session(commit.actor) : "") +
                      text_element("confirm-event", word_of(commit.what));
    if (commit.timeout.has_value())
        xml += text_element("timeout", std::to_string(commit.timeout->count()));
    publish(stream_, "netconf-confirmed-commit", xml);
}

std::string usual_event(const lysc_node *openconfig) {
    const events::EditRecord record{"/" + std::string(openconfig->name), "merge", openconfig};
    return event_element("netconf-config-change", print_config_change({{1, "user"}, {10, record}}));
}

void publish_session_start(EventStream &events, const Actor &session) {
    publish(events, "netconf-session-start", print_session(session));
}

void publish_session_end(EventStream &events, const Actor &session, const std::string &reason,
                         std::optional<uint32_t> killed_by) {
    std::string xml = print_session(session);
    if (killed_by.has_value())
        xml += text_element("killed-by", std::to_string(*killed_by));
    publish(events, "netconf-session-end", xml + text_element("termination-reason", reason));
}

void publish_change(EventStream &events, const ProtocolModules &modules, const std::string &change,
                    const std::vector<std::string> &keys, const std::string &data) {
    const host::ChangeNotification *told = modules.notification();
    if (told == nullptr)
        return;
    std::string xml = "<" + told->name + " xmlns=\"" + escaped(modules.namespace_of(told->module)) + "\">" +
                      text_element("change", change);
    for (size_t i = 0; i < std::min(keys.size(), told->keys.size()); i++)
        xml += text_element(told->keys[i].c_str(), keys[i]);
    events.publish(told->module, told->name, xml + "<data>" + data + "</data></" + told->name + ">");
}

void publish_reapplied(EventStream &events, const ProtocolModules &modules,
                       const std::vector<std::string> &paths) {
    constexpr const char *name = "configuration-reapplied";
    const host::ChangeNotification *told = modules.notification();
    if (told == nullptr || !defines(modules, told->module, name))
        return;
    std::string xml =
        "<" + std::string(name) + " xmlns=\"" + escaped(modules.namespace_of(told->module)) + "\">";
    for (const std::string &path : paths)
        xml += text_element("path", path);
    events.publish(told->module, name, xml + "</" + name + ">");
}

} // namespace yfw::netconf

#include "frontends/netconf/server_events.h"

#include "frontends/netconf/rpc_error.h"

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
    return text_element("username", actor.user) + text_element("session-id", std::to_string(actor.session));
}

std::string print_record(const events::EditRecord &edit) {
    return "<edit>" + openconfig_path_element("target", edit.target) +
           text_element("operation", edit.operation) + "</edit>";
}

// A word of confirm-event.
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

std::string print_config_change(const events::ConfigurationChange &change) {
    std::string xml = "<changed-by>" + (change.actor.session == 0 ? "<server/>" : print_session(change.actor)) +
                      "</changed-by><datastore>running</datastore>";
    for (const events::EditRecord &edit : change.edits)
        xml += print_record(edit);
    return xml;
}

} // namespace

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

std::string usual_event() {
    const events::ConfigurationChange change{{1, "user"}, {10, {"/lldp", "merge"}}};
    return event_element("netconf-config-change", print_config_change(change));
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

void publish_neighbor_change(EventStream &events, const std::string &change, const std::string &interface,
                             const std::string &id, const std::string &data) {
    events.publish("yfw-lldp-notifications", "neighbor-change",
                   "<neighbor-change xmlns=\"urn:yfw:yang:yfw-lldp-notifications\">" +
                       text_element("change", change) + text_element("interface", interface) +
                       text_element("id", id) + "<data>" + data + "</data></neighbor-change>");
}

} // namespace yfw::netconf

#include "frontends/netconf/server_events.h"

#include <algorithm>

#include "frontends/netconf/rpc_error.h"

namespace yfw::netconf {
namespace {

constexpr const char *module = "ietf-netconf-notifications";

std::string event_element(const char *name, const std::string &content) {
    return "<" + std::string(name) + " xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-notifications\">" +
           content + "</" + name + ">";
}

void publish(events::EventStream &events, const char *name, const std::string &content) {
    events.publish(module, name, event_element(name, content));
}

// The grouping common-session-parms.
std::string print_session(const Actor &actor) {
    return text_element("username", actor.user) + text_element("session-id", std::to_string(actor.session));
}

std::string print_record(const EditRecord &edit) {
    return "<edit>" + openconfig_path_element("target", edit.target, edit.openconfig) +
           text_element("operation", edit.operation) + "</edit>";
}

bool is_whole(const yang::EditNode &edit) {
    return yang::takes_away(edit.operation) || edit.operation == yang::Operation::replace;
}

// An entry or leaf that says something by being there, not by what is below it.
bool stands_for_itself(const yang::EditNode &edit) {
    if (edit.operation == yang::Operation::none)
        return false;
    const bool only_keys = std::all_of(edit.children.begin(), edit.children.end(),
                                       [](const yang::EditNode &child) { return child.is_key(); });
    return edit.value.has_value() || (edit.node->nodetype == LYS_LIST && only_keys);
}

void collect(const yang::EditNode &edit, const std::string &parent, const lysc_node *openconfig,
             std::vector<EditRecord> &records) {
    if (edit.is_key())
        return;
    const std::string path = yang::instance_path(parent, edit);
    if (is_whole(edit) || stands_for_itself(edit)) {
        records.push_back({path, std::string(yang::to_string(edit.operation)), openconfig});
        return;
    }
    for (const yang::EditNode &child : edit.children)
        collect(child, path, openconfig, records);
}

} // namespace

std::vector<EditRecord> edit_records(const yang::EditNode &edit) {
    std::vector<EditRecord> records;
    collect(edit, "", edit.node, records);
    return records;
}

namespace {

std::string print_config_change(const Actor &actor, const std::vector<EditRecord> &edits) {
    std::string xml = "<changed-by>" + (actor.session == 0 ? "<server/>" : print_session(actor)) +
                      "</changed-by><datastore>running</datastore>";
    for (const EditRecord &edit : edits)
        xml += print_record(edit);
    return xml;
}

} // namespace

void publish_config_change(events::EventStream &events, const Actor &actor,
                           const std::vector<EditRecord> &edits) {
    publish(events, "netconf-config-change", print_config_change(actor, edits));
}

std::string usual_event(const lysc_node *openconfig) {
    const std::vector<EditRecord> edits(10, {"/" + std::string(openconfig->name), "merge", openconfig});
    return event_element("netconf-config-change", print_config_change({1, "user"}, edits));
}

void publish_session_start(events::EventStream &events, const Actor &session) {
    publish(events, "netconf-session-start", print_session(session));
}

void publish_session_end(events::EventStream &events, const Actor &session, const std::string &reason,
                         std::optional<uint32_t> killed_by) {
    std::string xml = print_session(session);
    if (killed_by.has_value())
        xml += text_element("killed-by", std::to_string(*killed_by));
    publish(events, "netconf-session-end", xml + text_element("termination-reason", reason));
}

void publish_confirmed_commit(events::EventStream &events, const Actor &actor, const std::string &what,
                              std::optional<std::chrono::seconds> timeout) {
    std::string xml = (actor.session != 0 ? print_session(actor) : "") + text_element("confirm-event", what);
    if (timeout.has_value())
        xml += text_element("timeout", std::to_string(timeout->count()));
    publish(events, "netconf-confirmed-commit", xml);
}

void publish_change(events::EventStream &events, const ProtocolModules &modules, const std::string &change,
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

} // namespace yfw::netconf

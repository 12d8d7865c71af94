#include "plain_configuration.h"

#include <algorithm>

namespace yfw::test {
namespace {

enum class Kind { container, list, leaf, leaf_list };

// A refused edit, with its error tag.
struct Refused {
    std::string tag;
};

Kind kind_of(const PlainNode &node) {
    static const std::set<std::string> containers{"lldp", "config", "interfaces"};
    if (containers.contains(node.name))
        return Kind::container;
    if (node.name == "interface")
        return Kind::list;
    return node.name == "suppress-tlv-advertisement" ? Kind::leaf_list : Kind::leaf;
}

std::string escaped_text(const std::string &text) {
    std::string result;
    for (const char c : text)
        if (c == '<' || c == '>' || c == '&' || c == '\r')
            result += "&#" + std::to_string(static_cast<int>(c)) + ";";
        else
            result += c;
    return result;
}

std::string opened(const PlainNode &node) {
    return "<" + node.name + (node.operation.empty() ? "" : " nc:operation=\"" + node.operation + "\"") + ">";
}

bool is_same_instance(const PlainNode &a, const PlainNode &b) {
    if (a.name != b.name)
        return false;
    const Kind kind = kind_of(a);
    return (kind != Kind::list && kind != Kind::leaf_list) || a.value == b.value;
}

PlainNode *find(PlainNode &parent, const PlainNode &wanted) {
    const auto found = std::find_if(parent.children.begin(), parent.children.end(),
                                    [&](const PlainNode &each) { return is_same_instance(each, wanted); });
    return found == parent.children.end() ? nullptr : &*found;
}

const PlainNode *child(const PlainNode &parent, const std::string &name) {
    const auto found = std::find_if(parent.children.begin(), parent.children.end(),
                                    [&](const PlainNode &each) { return each.name == name; });
    return found == parent.children.end() ? nullptr : &*found;
}

void erase(PlainNode &parent, const PlainNode &wanted) {
    std::erase_if(parent.children, [&](const PlainNode &each) { return is_same_instance(each, wanted); });
}

// The node as data; a container that nothing is in does not exist (RFC 7950, section 7.5.1).
void put(PlainNode &parent, const PlainNode &node) {
    PlainNode data{.name = node.name, .value = node.value};
    for (const PlainNode &each : node.children)
        put(data, each);
    if (kind_of(node) != Kind::container || !data.children.empty())
        parent.children.push_back(data);
}

void apply_node(PlainNode &parent, const PlainNode &edit, const std::string &inherited);

void descend(PlainNode &parent, const PlainNode &edit, const std::string &operation) {
    const Kind kind = kind_of(edit);
    PlainNode *existing = find(parent, edit);
    const bool is_new = existing == nullptr;
    if (is_new && operation == "none" && kind != Kind::container)
        throw Refused{"data-missing"}; // RFC 6241, section 7.2
    if (kind == Kind::leaf || kind == Kind::leaf_list) {
        if (operation == "merge") {
            erase(parent, edit);
            put(parent, edit);
        }
        return;
    }
    if (is_new) {
        parent.children.push_back({.name = edit.name, .value = edit.value});
        existing = &parent.children.back();
    }
    for (const PlainNode &each : edit.children)
        apply_node(*existing, each, operation);
    if (existing->children.empty() && kind == Kind::container)
        erase(parent, edit);
}

void apply_node(PlainNode &parent, const PlainNode &edit, const std::string &inherited) {
    const std::string operation = edit.operation.empty() ? inherited : edit.operation;
    const bool exists = find(parent, edit) != nullptr;
    if (operation == "create" && exists)
        throw Refused{"data-exists"};
    if (operation == "delete" && !exists)
        throw Refused{"data-missing"};
    if (operation == "merge" || operation == "none") {
        descend(parent, edit, operation);
        return;
    }
    erase(parent, edit);
    if (operation == "create" || operation == "replace")
        put(parent, edit);
}

// A client that names an entry has said its config/name.
void add_missing_names(PlainNode &root) {
    const PlainNode interfaces{.name = "interfaces"}, config{.name = "config"}, name{.name = "name"};
    PlainNode *list = find(root, interfaces);
    if (list == nullptr)
        return;
    for (PlainNode &entry : list->children) {
        if (find(entry, config) == nullptr)
            entry.children.push_back(config);
        PlainNode *its_config = find(entry, config);
        const PlainNode *twin = find(*its_config, name);
        if (twin == nullptr)
            its_config->children.push_back({.name = "name", .value = entry.value});
        else if (twin->value != entry.value)
            throw Refused{"data-missing"};
    }
}

void add_lines(const PlainNode &node, const std::string &above, std::set<std::string> &lines) {
    const Kind kind = kind_of(node);
    const std::string path =
        above + "/" + node.name + (kind == Kind::list ? "[name='" + node.value + "']" : "");
    if (kind != Kind::container)
        lines.insert((kind == Kind::list ? path + "/name" : path) + " = " + node.value);
    for (const PlainNode &each : node.children)
        add_lines(each, path, lines);
}

} // namespace

std::string xml_of(const PlainNode &node) {
    const Kind kind = kind_of(node);
    const std::string prefix = kind == Kind::leaf_list && !node.value.empty() ? "types:" : "";
    std::string content;
    if (kind == Kind::list)
        content = "<name>" + escaped_text(node.value) + "</name>";
    else if (kind != Kind::container)
        content = prefix + escaped_text(node.value);
    for (const PlainNode &each : node.children)
        content += xml_of(each);
    return opened(node) + content + "</" + node.name + ">";
}

std::string document_of(const PlainNode &lldp) {
    std::string document = xml_of(lldp);
    document.insert(std::string("<lldp").size(), " xmlns=\"http://openconfig.net/yang/lldp\" "
                                                 "xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\" "
                                                 "xmlns:types=\"http://openconfig.net/yang/lldp/types\"");
    return document;
}

bool asks_what_exists(const PlainNode &edit) {
    return edit.operation == "create" || edit.operation == "delete" ||
           std::any_of(edit.children.begin(), edit.children.end(), asks_what_exists);
}

std::string PlainConfiguration::apply(const PlainNode &lldp, const std::string &default_operation) {
    PlainNode top{.children = {root_}};
    if (root_.children.empty())
        top.children.clear();
    try {
        // A replaced configuration is the new one, whatever it names.
        if (default_operation == "replace" && lldp.operation.empty())
            erase(top, lldp);
        apply_node(top, lldp, default_operation);
        PlainNode root = top.children.empty() ? PlainNode{.name = "lldp"} : top.children.front();
        add_missing_names(root);
        root_ = std::move(root);
    } catch (const Refused &refused) {
        return refused.tag;
    }
    return "";
}

std::set<std::string> PlainConfiguration::lines() const {
    std::set<std::string> lines;
    add_lines(root_, "", lines);
    return lines;
}

std::vector<std::string> PlainConfiguration::values(const std::string &leaf) const {
    std::vector<std::string> values;
    if (const PlainNode *config = child(root_, "config"))
        for (const PlainNode &each : config->children)
            if (each.name == leaf)
                values.push_back(each.value);
    return values;
}

std::vector<std::string> PlainConfiguration::interfaces() const {
    std::vector<std::string> names;
    if (const PlainNode *list = child(root_, "interfaces"))
        for (const PlainNode &each : list->children)
            names.push_back(each.value);
    return names;
}

std::optional<std::string> PlainConfiguration::enabled(const std::string &interface) const {
    const PlainNode *list = child(root_, "interfaces");
    for (const PlainNode &entry : list != nullptr ? list->children : std::vector<PlainNode>{})
        if (const PlainNode *config = child(entry, "config"); entry.value == interface && config != nullptr)
            if (const PlainNode *enabled = child(*config, "enabled"))
                return enabled->value;
    return std::nullopt;
}

void PlainConfiguration::add(const std::string &leaf, const std::string &value) {
    apply({.name = "lldp", .children = {{.name = "config", .children = {{.name = leaf, .value = value}}}}},
          "merge");
}

void PlainConfiguration::add_interface(const std::string &name, const std::optional<std::string> &enabled) {
    PlainNode config{.name = "config", .children = {{.name = "name", .value = name}}};
    if (enabled.has_value())
        config.children.push_back({.name = "enabled", .value = *enabled});
    const PlainNode entry{.name = "interface", .value = name, .children = {config}};
    apply({.name = "lldp", .children = {{.name = "interfaces", .children = {entry}}}}, "merge");
}

} // namespace yfw::test

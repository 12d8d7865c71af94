#include "frontends/pictures/topology_answer.h"

#include <cstring>

namespace yfw::pictures {
namespace {

bool is_named(const lyd_node *node, const char *name) {
    return node->schema != nullptr && std::strcmp(node->schema->name, name) == 0;
}

const lyd_node *child(const lyd_node *parent, const char *name) {
    for (const lyd_node *node = parent != nullptr ? lyd_child(parent) : nullptr; node != nullptr;
         node = node->next)
        if (is_named(node, name))
            return node;
    return nullptr;
}

std::string text(const lyd_node *parent, const char *name) {
    const lyd_node *leaf = child(parent, name);
    return leaf != nullptr ? lyd_get_value(leaf) : "";
}

template <class Visit> void for_each_entry(const lyd_node *parent, const char *list, Visit &&visit) {
    for (const lyd_node *node = parent != nullptr ? lyd_child(parent) : nullptr; node != nullptr;
         node = node->next)
        if (is_named(node, list))
            visit(node);
}

std::string without_module(const std::string &identity) {
    return identity.substr(identity.find(':') + 1);
}

std::vector<std::string> read_capabilities(const lyd_node *entry) {
    std::vector<std::string> used;
    for_each_entry(child(entry, "capabilities"), "capability", [&](const lyd_node *capability) {
        if (text(child(capability, "state"), "enabled") == "true")
            used.push_back(without_module(text(capability, "name")));
    });
    return used;
}

Neighbor read_neighbor(const lyd_node *entry) {
    const lyd_node *state = child(entry, "state");
    return {text(entry, "id"),
            text(state, "system-name"),
            text(state, "chassis-id"),
            text(state, "port-id"),
            text(state, "port-description"),
            text(state, "system-description"),
            text(state, "management-address"),
            text(state, "age"),
            read_capabilities(entry)};
}

Interface read_interface(const lyd_node *entry) {
    Interface interface {
        text(entry, "name"), {}
    };
    for_each_entry(child(entry, "neighbors"), "neighbor",
                   [&](const lyd_node *neighbor) { interface.neighbors.push_back(read_neighbor(neighbor)); });
    return interface;
}

} // namespace

Report read_answer(const std::string &place, const lyd_node *answer) {
    while (answer != nullptr && !is_named(answer, "lldp"))
        answer = answer->next;
    const lyd_node *state = child(answer, "state");
    Report report{place, text(state, "system-name"), text(state, "chassis-id"), {}};
    for_each_entry(child(answer, "interfaces"), "interface",
                   [&](const lyd_node *interface) { report.interfaces.push_back(read_interface(interface)); });
    return report;
}

} // namespace yfw::pictures

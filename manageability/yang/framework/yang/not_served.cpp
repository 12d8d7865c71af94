#include "yang/not_served.h"

#include "yang/path.h"

namespace yfw::yang {
namespace {

void collect(const lysc_node *node, const std::string &above, NotServed &to) {
    const std::string path = above + "/" + node->name;
    to.insert(path);
    for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next)
        collect(child, path, to);
}

const NotServed *not_served_of(const lysc_node *node) {
    while (node != nullptr && node->parent != nullptr)
        node = node->parent;
    return node != nullptr ? static_cast<const NotServed *>(node->priv) : nullptr;
}

} // namespace

// libyang leaves this member to its user.
void set_not_served(const lysc_node *top, const NotServed &nodes) {
    const_cast<lysc_node *>(top)->priv = const_cast<NotServed *>(&nodes);
}

bool is_not_served(const lysc_node *parent, std::string_view name) {
    const NotServed *nodes = not_served_of(parent);
    return nodes != nullptr && nodes->contains(schema_path(parent) + "/" + std::string(name));
}

std::string unknown_child(const lysc_node *parent, std::string_view name) {
    const std::string place = "\"" + std::string(name) + "\" under \"" + schema_path(parent) + "\"";
    return is_not_served(parent, name) ? place + " is not served by this device" : "unknown node " + place;
}

NotServed all_nodes(const lysc_node *top) {
    NotServed nodes;
    collect(top, "", nodes);
    return nodes;
}

NotServed taken_away(const NotServed &before, const lysc_node *top) {
    const NotServed after = all_nodes(top);
    NotServed taken;
    for (const std::string &path : before) // what is below a node comes after it
        if (!after.contains(path) && (path.rfind('/') == 0 || after.contains(path.substr(0, path.rfind('/')))))
            taken.insert(path);
    return taken;
}

} // namespace yfw::yang

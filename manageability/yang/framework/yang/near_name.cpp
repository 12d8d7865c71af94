#include "yang/near_name.h"

#include "base/near_word.h"

namespace yfw::yang {
namespace {

void consider_all(NearWord &near, const lysc_node *parent) {
    for (const lysc_node *child = lysc_node_child(parent); child != nullptr; child = child->next) {
        near.consider(child->name);
        consider_all(near, child);
    }
}

// The path of the first node by that name below `parent`; empty when there is none.
std::string path_below(const lysc_node *parent, std::string_view name) {
    for (const lysc_node *child = lysc_node_child(parent); child != nullptr; child = child->next) {
        if (name == child->name)
            return child->name;
        if (const std::string rest = path_below(child, name); !rest.empty())
            return std::string(child->name) + "/" + rest;
    }
    return "";
}

} // namespace

std::string near_child(const lysc_node *parent, std::string_view name) {
    NearWord near(name);
    for (const lysc_node *child = lysc_node_child(parent); child != nullptr; child = child->next)
        near.consider(child->name);
    return near.found().empty() ? path_below(parent, name) : near.found();
}

std::string near_descendant(const lysc_node *top, std::string_view name) {
    NearWord near(name);
    consider_all(near, top);
    return near.found();
}

} // namespace yfw::yang

#include "neighbor_answers.h"

#include <string_view>

namespace yfw::host::test {
namespace {

const lyd_node *child(const lyd_node *parent, std::string_view name) {
    const lyd_node *node = parent != nullptr ? lyd_child(parent) : nullptr;
    while (node != nullptr && name != node->schema->name)
        node = node->next;
    return node;
}

// The entries of the list `name` below `parent`.
std::vector<const lyd_node *> entries(const lyd_node *parent, std::string_view name) {
    std::vector<const lyd_node *> found;
    for (const lyd_node *node = child(parent, name); node != nullptr; node = node->next)
        if (name == node->schema->name)
            found.push_back(node);
    return found;
}

std::vector<const lyd_node *> neighbors_of(const lyd_node *interface) {
    return entries(child(interface, "neighbors"), "neighbor");
}

Lines subtree(const lyd_node *entry) {
    // leaves() goes on to the siblings; a copy has none.
    lyd_node *copy = nullptr;
    lyd_dup_single(entry, nullptr, LYD_DUP_RECURSIVE | LYD_DUP_WITH_PARENTS, &copy);
    while (copy != nullptr && lyd_parent(copy) != nullptr)
        copy = lyd_parent(copy);
    const yang::DataTree owner(copy);
    return leaves(copy);
}

} // namespace

std::string key_of(const lyd_node *entry) {
    return lyd_get_value(lyd_child(entry));
}

std::vector<const lyd_node *> interfaces_of(const lyd_node *answer) {
    return entries(child(answer, "interfaces"), "interface");
}

std::multiset<NeighborKey> neighbors_in(const lyd_node *answer) {
    std::multiset<NeighborKey> found;
    for (const lyd_node *interface : interfaces_of(answer))
        for (const lyd_node *neighbor : neighbors_of(interface))
            found.emplace(key_of(interface), key_of(neighbor));
    return found;
}

Lines held_for(const lyd_node *answer, const std::string &interface, const Text &id) {
    for (const lyd_node *entry : interfaces_of(answer)) {
        if (key_of(entry) != interface)
            continue;
        if (!id.has_value())
            return subtree(entry);
        for (const lyd_node *neighbor : neighbors_of(entry))
            if (key_of(neighbor) == *id)
                return subtree(neighbor);
    }
    return {};
}

std::string entry_path(const std::string &interface) {
    return "/lldp/interfaces/interface[name=" + quoted(interface) + "]";
}

std::string neighbor_path(const NeighborKey &key) {
    return entry_path(key.first) + "/neighbors/neighbor[id=" + quoted(key.second) + "]";
}

} // namespace yfw::host::test

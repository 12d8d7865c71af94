#include "configuration_lines.h"

#include <optional>

#include <libyang/libyang.h>

#include "yang/tree_text.h"

namespace yfw::test {
namespace {

const std::string module = "openconfig-lldp:";

std::string path_to(const lyd_node *node) {
    const yang::LibyangText text(lyd_path(node, LYD_PATH_STD_NO_LAST_PRED, nullptr, 0));
    std::string path = text.c_str();
    path.erase(path.find(module), module.size());
    return path;
}

std::string value_of(const lyd_node *node) {
    const std::string value = lyd_get_value(node);
    const bool is_identity = std::string(node->schema->name) == "suppress-tlv-advertisement";
    return is_identity ? value.substr(value.find(':') + 1) : value;
}

// The value of a node below this one; nothing when it is missing.
std::optional<std::string> value_below(const lyd_node *node, const char *path) {
    lyd_node *found = nullptr;
    if (lyd_find_path(node, path, 0, &found) != LY_SUCCESS)
        return std::nullopt;
    return lyd_get_value(found);
}

} // namespace

std::set<std::string> lines_of_tree(const lyd_node *tree) {
    std::set<std::string> lines;
    const lyd_node *node = nullptr;
    if (tree == nullptr)
        return lines;
    LYD_TREE_DFS_BEGIN(tree, node) {
        if ((node->schema->nodetype & LYD_NODE_TERM) != 0)
            lines.insert(path_to(node) + " = " + value_of(node));
        LYD_TREE_DFS_END(tree, node);
    }
    return lines;
}

PlainConfiguration plain(const lyd_node *tree) {
    PlainConfiguration result;
    const lyd_node *node = nullptr;
    if (tree == nullptr)
        return result;
    LYD_TREE_DFS_BEGIN(tree, node) {
        const lyd_node *above = lyd_parent(node);
        const std::string name = node->schema->name;
        if (name == "interface") {
            result.add_interface(value_below(node, "name").value(), value_below(node, "config/enabled"));
        } else if ((node->schema->nodetype & LYD_NODE_TERM) != 0 && path_to(above) == "/lldp/config") {
            result.add(name, value_of(node));
        }
        LYD_TREE_DFS_END(tree, node);
    }
    return result;
}

std::string difference(const std::set<std::string> &then, const std::set<std::string> &now) {
    std::string text;
    for (const std::string &line : then)
        if (!now.contains(line))
            text += "- " + line + "\n";
    for (const std::string &line : now)
        if (!then.contains(line))
            text += "+ " + line + "\n";
    return text;
}

} // namespace yfw::test

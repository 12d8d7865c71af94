#include "host/callback_names.h"

namespace yfw::host {
namespace {

std::string without_hyphens(std::string_view name) {
    std::string text;
    for (const char c : name)
        if (c != '-')
            text += c;
    return text;
}

const char *kind_of(const lysc_node *node) {
    switch (node->nodetype) {
    case LYS_CONTAINER:
        return "cont";
    case LYS_LIST:
        return "list";
    default:
        return "leaf";
    }
}

std::string words_of(const lysc_node *node) {
    const lysc_node *top = node;
    while (top->parent != nullptr)
        top = top->parent;
    std::string words = without_hyphens(top->name);
    if (node == top)
        return words;
    if (node->parent->parent != nullptr)
        words += "_" + without_hyphens(node->parent->name);
    return words + "_" + without_hyphens(node->name);
}

} // namespace

CallbackNames::CallbackNames(std::string_view prefix, const lysc_node *top) : prefix_(prefix) {
    add(top);
}

void CallbackNames::add(const lysc_node *node) {
    const std::string words = words_of(node);
    char &level = next_level_.try_emplace(std::string(kind_of(node)) + words, 'a').first->second;
    walkers_.emplace(prefix_ + "lvl" + level++ + "_" + words, node);
    by_words_.emplace(words, node);
    for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next)
        add(child);
}

const lysc_node *CallbackNames::node_of_walker(std::string_view function, const lysc_node *parent) const {
    constexpr std::string_view level = "lvla_";
    if (!function.starts_with(prefix_) || function.size() < prefix_.size() + level.size() ||
        function.substr(prefix_.size(), 3) != "lvl")
        return nullptr;
    const auto [first, last] = by_words_.equal_range(function.substr(prefix_.size() + level.size()));
    for (auto candidate = first; candidate != last; ++candidate)
        if (candidate->second->parent == parent)
            return candidate->second;
    const auto found = walkers_.find(function);
    return found != walkers_.end() ? found->second : nullptr;
}

} // namespace yfw::host

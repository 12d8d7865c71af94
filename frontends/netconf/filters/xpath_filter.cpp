// XPath filters (RFC 6241 section 8.9).
#include <algorithm>

#include "frontends/netconf/filters/filter.h"
#include "frontends/netconf/filters/xpath_evaluation.h"
#include "frontends/netconf/messages/rpc_error.h"
#include "yang/forest.h"

namespace yfw::netconf {
namespace {

constexpr size_t longest_expression = 16384;

// The worst expression takes a second on this much data; anything larger is evaluated in a child process.
constexpr size_t most_nodes_here = 4000;
constexpr size_t pairs_of_nodes_a_second = 4000000000;
constexpr XPathBudget largest_request{50000000, 64u << 20};
// The event loop applies the filter to every event.
constexpr size_t pairs_of_nodes_an_event = 100000000;
constexpr XPathBudget largest_event{100000, 256u << 10};

XPathBudget bounded(XPathBudget largest, size_t pairs, size_t nodes) {
    largest.operations = std::min(largest.operations, pairs / std::max<size_t>(nodes, 1));
    return largest;
}

[[noreturn]] void deny(const std::string &why) {
    throw RpcError("protocol", "resource-denied", why);
}

XPathResult evaluate(const XPathDocument &document, const Filter &filter, XPathUse use,
                     const std::atomic<bool> *is_unwanted) {
    const size_t nodes = document.nodes().size();
    if (use == XPathUse::event && nodes > most_nodes_here)
        deny("the event is too large to be filtered");
    if (use == XPathUse::event)
        return evaluate_xpath(document, filter.expression, filter.prefixes,
                              bounded(largest_event, pairs_of_nodes_an_event, nodes));
    if (nodes > most_nodes_here)
        return evaluate_xpath_apart(document, filter.expression, filter.prefixes, largest_request, is_unwanted);
    return evaluate_xpath(document, filter.expression, filter.prefixes,
                          bounded(largest_request, pairs_of_nodes_a_second, nodes));
}

// Flags the selected nodes of the document, in document order.
std::vector<bool> selected_by(const XPathDocument &document, const Filter &filter, XPathUse use,
                              const std::atomic<bool> *is_unwanted) {
    if (filter.expression.size() > longest_expression)
        throw RpcError("protocol", "too-big",
                       "an expression is longer than " + std::to_string(longest_expression) + " bytes");
    const XPathResult result = evaluate(document, filter, use, is_unwanted);
    switch (result.status) {
    case XPathStatus::done:
        break;
    case XPathStatus::invalid:
        throw RpcError("protocol", "invalid-value", "the expression cannot be evaluated: " + result.why);
    case XPathStatus::no_nodes:
        throw RpcError("protocol", "invalid-value", "the expression does not select nodes");
    case XPathStatus::beyond_budget:
        deny("the expression takes too many steps on this data");
    case XPathStatus::busy:
        deny("too many expressions are being evaluated on large data; try again");
    }
    std::vector<bool> selected(document.nodes().size());
    for (const uint32_t place : result.selected)
        selected.at(place) = true;
    return selected;
}

// Removes whatever is neither selected, nor within the depth below a selected node, nor an ancestor of one.
class Pruning {
public:
    Pruning(const std::vector<bool> &selected, uint32_t depth) : selected_(selected), depth_(depth) {}

    // Whether anything of the forest from this node on remains; `first` becomes its first tree.
    void prune_forest(lyd_node *&first) {
        lyd_node *next = nullptr;
        lyd_node *kept = nullptr;
        for (lyd_node *top = first; top != nullptr; top = next) {
            next = top->next;
            if (!prune(top, 0))
                lyd_free_tree(top);
            else if (kept == nullptr)
                kept = top;
        }
        first = kept;
    }

private:
    // Visits nodes in document order. `levels`: how many are wanted here.
    bool prune(lyd_node *node, uint32_t levels) {
        const bool is_selected = selected_[place_++];
        levels = std::max(levels, is_selected ? depth_ : 0);
        const uint32_t below = levels == unlimited_depth ? levels : levels - std::min(levels, 1U);
        bool leads_to_selected = false;
        lyd_node *next = nullptr;
        for (lyd_node *child = lyd_child(node); child != nullptr; child = next) {
            next = child->next;
            if (prune(child, below))
                leads_to_selected = true;
            else if (!lysc_is_key(child->schema))
                lyd_free_tree(child);
        }
        return levels > 0 || leads_to_selected;
    }

    const std::vector<bool> &selected_;
    const uint32_t depth_;
    size_t place_ = 0;
};

} // namespace

void filter_by_xpath(std::vector<yang::DataTree> &trees, const Filter &filter, uint32_t depth, XPathUse use,
                     const std::atomic<bool> *is_unwanted) {
    std::vector<const lyd_node *> forests;
    for (const yang::DataTree &tree : trees)
        forests.push_back(tree.get());
    const std::vector<bool> selected = selected_by(XPathDocument(forests), filter, use, is_unwanted);
    Pruning pruning(selected, depth);
    for (yang::DataTree &tree : trees)
        yang::change_first(tree, [&](lyd_node *&first) { pruning.prune_forest(first); });
}

yang::DataTree xpath_filtered(yang::DataTree data, const Filter &filter, uint32_t depth, XPathUse use) {
    std::vector<yang::DataTree> trees;
    trees.push_back(std::move(data));
    filter_by_xpath(trees, filter, depth, use);
    return std::move(trees.front());
}

} // namespace yfw::netconf

#include "host/request.h"

#include <ostream>
#include <set>

#include <gtest/gtest.h>

#include "data_texts.h"
#include "test_device.h"

namespace yfw::host::test {
namespace {

constexpr const char *entry_a = "/lldp/interfaces/interface[name='a']";
constexpr const char *entry_b = "/lldp/interfaces/interface[name='b']";

struct Split {
    Lines paths;
    Lines trees;
};

std::ostream &operator<<(std::ostream &out, const Split &split) {
    for (const std::string &line : split.paths)
        out << line << ' ';
    return out;
}

Lines texts(const std::vector<Selection> &trees) {
    Lines lines;
    for (const Selection &tree : trees)
        lines.push_back(text(tree));
    return lines;
}

std::string at(const char *entry, const char *rest) {
    return std::string(entry) + rest;
}

class SplitByEntry : public testing::TestWithParam<Split> {};

TEST_P(SplitByEntry, NamesOneEntryOfAListInEachTree) {
    EXPECT_EQ(texts(split_by_list_entry(selection(GetParam().paths))), GetParam().trees);
}

INSTANTIATE_TEST_SUITE_P(
    Requests, SplitByEntry,
    testing::Values(
        Split{{"/lldp"}, {"lldp"}}, Split{{"/lldp/config", "/lldp/state"}, {"lldp{config state}"}},
        Split{{entry_a}, {"lldp{interfaces{interface{name=a}}}"}},
        Split{{entry_a, entry_b},
              {"lldp{interfaces{interface{name=a}}}", "lldp{interfaces{interface{name=b}}}"}},
        Split{{at(entry_a, "/state"), "/lldp/interfaces/interface/config"},
              {"lldp{interfaces{interface{name=a state}}}", "lldp{interfaces{interface{config}}}"}},
        Split{{"/lldp/config", entry_a, entry_b},
              {"lldp{config interfaces{interface{name=a}}}", "lldp{interfaces{interface{name=b}}}"}},
        Split{{at(entry_a, "/neighbors/neighbor[id='x']"), at(entry_a, "/neighbors/neighbor[id='y']")},
              {"lldp{interfaces{interface{name=a neighbors{neighbor{id=x}}}}}",
               "lldp{interfaces{interface{name=a neighbors{neighbor{id=y}}}}}"}},
        Split{{at(entry_a, "/neighbors/neighbor[id='x']"), at(entry_a, "/neighbors/neighbor[id='y']"),
               at(entry_b, "/neighbors/neighbor[id='x']")},
              {"lldp{interfaces{interface{name=a neighbors{neighbor{id=x}}}}}",
               "lldp{interfaces{interface{name=a neighbors{neighbor{id=y}}}}}",
               "lldp{interfaces{interface{name=b neighbors{neighbor{id=x}}}}}"}}));

// Collects the path to every selected node, with its keys and predicates.
void collect_ways(const Selection &at, std::string way, std::multiset<std::string> &ways) {
    way += std::string("/") + at.node->name;
    for (const Selection &child : at.children)
        if (child.value.has_value())
            way += "[" + std::string(child.node->name) + "=" + *child.value + "]";
    if (!at.selects_below())
        ways.insert(way);
    for (const Selection &child : at.children)
        if (!child.only_narrows())
            collect_ways(child, way, ways);
}

std::multiset<std::string> ways_of(const std::vector<Selection> &trees) {
    std::multiset<std::string> ways;
    for (const Selection &tree : trees)
        collect_ways(tree, "", ways);
    return ways;
}

bool repeats_a_list(const Selection &at) {
    std::set<const lysc_node *> lists;
    for (const Selection &child : at.children)
        if (repeats_a_list(child) || (child.node->nodetype == LYS_LIST && !lists.insert(child.node).second))
            return true;
    return false;
}

// Requests over four interfaces with neighbors, capabilities and containers in every combination.
std::vector<Lines> combinations() {
    const Lines parts = {"/lldp/config",
                         "/lldp/state/counters/frame-in",
                         at(entry_a, "/state"),
                         at(entry_a, "/neighbors/neighbor[id='x']/state/ttl"),
                         at(entry_a, "/neighbors/neighbor[id='y']"),
                         at(entry_b, "/neighbors/neighbor[id='x']/capabilities/capability[name='ROUTER']"),
                         at(entry_b, "/neighbors/neighbor[id='x']/capabilities/capability[name='OTHER']"),
                         "/lldp/interfaces/interface/config/enabled"};
    std::vector<Lines> all;
    for (unsigned mask = 1; mask < 1u << parts.size(); mask++) {
        Lines &paths = all.emplace_back();
        for (size_t i = 0; i < parts.size(); i++)
            if ((mask >> i & 1) != 0)
                paths.push_back(parts[i]);
    }
    return all;
}

TEST(SplitRequests, SelectTogetherWhatWasSelectedBefore) {
    for (const Lines &paths : combinations()) {
        const Selection whole = selection(paths);
        const std::multiset<std::string> wanted = ways_of({whole});
        EXPECT_EQ(ways_of(split_by_list_entry(whole)), wanted) << text(whole);
        EXPECT_EQ(ways_of(split_by_selected_node(whole)), wanted) << text(whole);
    }
}

TEST(SplitRequests, HoldNoListTwiceBelowOneParent) {
    for (const Lines &paths : combinations())
        for (const Selection &tree : split_by_list_entry(selection(paths)))
            EXPECT_FALSE(repeats_a_list(tree)) << text(tree);
}

class SplitByNode : public testing::TestWithParam<Split> {};

TEST_P(SplitByNode, GivesEverySelectedNodeATree) {
    EXPECT_EQ(texts(split_by_selected_node(selection(GetParam().paths))), GetParam().trees);
}

INSTANTIATE_TEST_SUITE_P(Requests, SplitByNode,
                         testing::Values(Split{{"/lldp"}, {"lldp"}},
                                         Split{{"/lldp/config/enabled", "/lldp/state"},
                                               {"lldp{config{enabled}}", "lldp{state}"}},
                                         Split{{entry_a}, {"lldp{interfaces{interface{name=a}}}"}},
                                         Split{{at(entry_a, "/state"), at(entry_a, "/config/enabled")},
                                               {"lldp{interfaces{interface{name=a state}}}",
                                                "lldp{interfaces{interface{name=a config{enabled}}}}"}}));

bool repeats_a_key(const Selection &at) {
    std::set<const lysc_node *> keys;
    for (const Selection &child : at.children)
        if (repeats_a_key(child) || (child.is_key() && !keys.insert(child.node).second))
            return true;
    return false;
}

// The mapping rejects an entry that names its key twice.
TEST(SplitRequests, NameAKeyOnceAlsoWhenItIsSelectedItself) {
    const Selection whole = selection({at(entry_a, "/name"), at(entry_a, "/state"), at(entry_b, "/name")});
    for (const Selection &tree : split_by_list_entry(whole)) {
        EXPECT_FALSE(repeats_a_key(tree)) << text(tree);
        for (const Selection &part : split_by_selected_node(tree))
            EXPECT_FALSE(repeats_a_key(part)) << text(part);
    }
}

} // namespace
} // namespace yfw::host::test

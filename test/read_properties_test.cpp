// A property of every read of a device: asking for a part gives that part of the whole.
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/answers.h"
#include "support/child_process.h"
#include "yang/forest.h"
#include "yang/tree_text.h"

namespace yfw::test {
namespace {

using Strings = std::vector<std::string>;

// Whether a list entry or container has children other than keys.
bool holds_data(const lyd_node *node) {
    for (const lyd_node *child = lyd_child(node); child != nullptr; child = child->next)
        if (!lysc_is_key(child->schema))
            return true;
    return false;
}

bool is_of(const lysc_node *schema, const std::string &content) {
    const bool configuration = (schema->flags & LYS_CONFIG_W) != 0;
    return content.empty() || (content == "--config") == configuration;
}

// Removes everything below the node except what is at or below the schema node and of the requested content.
// Returns whether the node itself is to be kept.
bool restrict_to(lyd_node *node, const lysc_node *wanted, const std::string &content, bool within) {
    within = within || node->schema == wanted;
    if ((node->schema->nodetype & LYD_NODE_INNER) == 0)
        return within && is_of(node->schema, content);
    lyd_node *next = nullptr;
    bool key_wanted = false;
    for (lyd_node *child = lyd_child(node); child != nullptr; child = next) {
        next = child->next;
        if (lysc_is_key(child->schema))
            key_wanted = key_wanted || (child->schema == wanted && is_of(wanted, content));
        else if (!restrict_to(child, wanted, content, within))
            lyd_free_tree(child);
    }
    return key_wanted || holds_data(node);
}

void add_below(const lysc_node *node, std::vector<const lysc_node *> &nodes) {
    nodes.push_back(node);
    for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next)
        add_below(child, nodes);
}

std::vector<const lysc_node *> all_nodes(const ly_ctx *modules) {
    std::vector<const lysc_node *> nodes;
    add_below(lys_find_path(modules, nullptr, "/openconfig-lldp:lldp", 0), nodes);
    return nodes;
}

// Removes the prefix of the answer's module from all names.
std::string without_prefixes(std::string path) {
    const std::string prefix = "openconfig-lldp:";
    for (std::size_t at = path.find(prefix); at != std::string::npos; at = path.find(prefix, at))
        path.erase(at, prefix.size());
    return path;
}

// libyang's expressions need the module's name on the first node only.
std::string prefixed(const std::string &path) {
    return "/openconfig-lldp:" + path.substr(1);
}

std::string schema_path(const lysc_node *node) {
    return without_prefixes(yang::LibyangText(lysc_path(node, LYSC_PATH_DATA, nullptr, 0)).c_str());
}

std::string data_path(const lyd_node *node) {
    return without_prefixes(yang::path_of(node));
}

struct Device {
    const char *name;
    const char *directory;
};

class AReadOf : public testing::TestWithParam<Device> {
protected:
    Tree read(const Strings &paths, const std::string &content = "") const {
        Invocation invocation{.arguments = {"get", "--device", GetParam().directory}};
        if (!content.empty())
            invocation.arguments.push_back(content);
        invocation.arguments.insert(invocation.arguments.end(), paths.begin(), paths.end());
        const Outcome outcome = run_yfw(invocation);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(outcome.errors, "");
        return outcome.status == 0 ? parse_printed(modules_.get(), Format::json, outcome.output) : nullptr;
    }

    // All entries of the lists with that name, as paths with all their keys.
    Strings entries(const lyd_node *tree, const std::string &list) const {
        Strings paths;
        for (const lyd_node *node : yang::nodes_at(tree, "//openconfig-lldp:" + list))
            paths.push_back(data_path(node));
        return paths;
    }

    const Context modules_ = openconfig_modules();
};

class AReadOfEachNode : public AReadOf {
protected:
    void expect_its_part_of_the_whole(const std::string &content) const {
        const Tree whole = read({"/lldp"});
        for (const lysc_node *node : all_nodes(modules_.get())) {
            lyd_node *copy = nullptr;
            ASSERT_EQ(lyd_dup_single(whole.get(), nullptr, LYD_DUP_RECURSIVE, &copy), LY_SUCCESS);
            Tree expected(copy);
            if (!restrict_to(copy, node, content, false))
                expected.reset();
            const std::string path = schema_path(node);
            EXPECT_EQ(as_text(read({path}, content).get()), as_text(expected.get())) << path;
        }
    }
};

TEST_P(AReadOfEachNode, IsItsPartOfTheWhole) {
    expect_its_part_of_the_whole("");
}

TEST_P(AReadOfEachNode, IsItsConfigurationWhenAskedForConfiguration) {
    expect_its_part_of_the_whole("--config");
}

TEST_P(AReadOfEachNode, IsItsStateWhenAskedForState) {
    expect_its_part_of_the_whole("--state");
}

class AReadOfEachEntryByKey : public AReadOf {};

TEST_P(AReadOfEachEntryByKey, IsThatEntryOfTheWhole) {
    const Tree whole = read({"/lldp"});
    for (const char *list : {"interface", "neighbor", "capability", "tlv"})
        for (const std::string &path : entries(whole.get(), list)) {
            const Tree answer = read({path});
            EXPECT_EQ(entries(answer.get(), list), Strings{path});
            EXPECT_EQ(as_text(answer.get(), prefixed(path)), as_text(whole.get(), prefixed(path))) << path;
        }
}

class AReadThatNamesEveryEntry : public AReadOf {};

TEST_P(AReadThatNamesEveryEntry, IsAReadOfTheList) {
    const Tree whole = read({"/lldp"});
    const Strings interfaces = entries(whole.get(), "interface");
    EXPECT_EQ(as_text(read(interfaces).get()), as_text(read({"/lldp/interfaces"}).get()));
    const Strings neighbors = entries(whole.get(), "neighbor");
    EXPECT_EQ(as_text(read(neighbors).get()), as_text(read({"/lldp/interfaces/interface/neighbors"}).get()));
}

const auto devices =
    testing::Values(Device{"campus", YFW_DEVICES_DIR "/campus"}, Device{"r1", YFW_EXAMPLES_DIR "/r1"});

std::string device_name(const testing::TestParamInfo<Device> &device) {
    return device.param.name;
}

INSTANTIATE_TEST_SUITE_P(Device, AReadOfEachNode, devices, device_name);
INSTANTIATE_TEST_SUITE_P(Device, AReadOfEachEntryByKey, devices, device_name);
INSTANTIATE_TEST_SUITE_P(Device, AReadThatNamesEveryEntry, devices, device_name);

} // namespace
} // namespace yfw::test

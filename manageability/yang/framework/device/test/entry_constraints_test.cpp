// Which constraints of a model concern more than one entry of a list.
#include "device/entry_constraints.h"

#include <string>

#include <gtest/gtest.h>

#include "yang/data_tree.h"

namespace yfw::device::test {
namespace {

struct Case {
    const char *name;
    std::string in_list; // statements of the list
    std::string in_leaf; // of a leaf in it
    std::string outside; // of a leaf outside of it
    bool constrains;
};

void PrintTo(const Case &one, std::ostream *to) {
    *to << one.name;
}

class AConstraint : public testing::TestWithParam<Case> {};

TEST_P(AConstraint, IsToldFromThoseWithinAnEntry) {
    const Case &given = GetParam();
    const std::string module = "module m { yang-version 1.1; namespace 'urn:m'; prefix m; container top {"
                               " leaf limit { type uint8; " +
                               given.outside +
                               " }"
                               " container entries { list entry { key name; " +
                               given.in_list +
                               " leaf name { type string; } leaf size { type uint8; } leaf value { " +
                               (given.in_leaf.find("type ") == std::string::npos ? "type string; " : "") +
                               given.in_leaf + " } } } } }";
    ly_ctx *made = nullptr;
    ASSERT_EQ(ly_ctx_new(nullptr, 0, &made), LY_SUCCESS);
    const yang::YangContext context(made);
    const lys_module *loaded = nullptr;
    ASSERT_EQ(lys_parse_mem(made, module.c_str(), LYS_IN_YANG, const_cast<lys_module **>(&loaded)), LY_SUCCESS)
        << ly_errmsg(made);
    const lysc_node *top = loaded->compiled->data;
    const lysc_node *list = lys_find_path(made, nullptr, "/m:top/m:entries/m:entry", 0);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(constrains_entries(top, {list}), given.constrains);
}

INSTANTIATE_TEST_SUITE_P(
    Of, AConstraint,
    testing::Values(
        Case{"None", "", "", "", false}, Case{"UniqueValues", "unique size;", "", "", true},
        Case{"AtLeastOneEntry", "min-elements 1;", "", "", true},
        Case{"AtMostTenEntries", "max-elements 10;", "", "", true},
        Case{"AnOrderByTheUser", "ordered-by user;", "", "", true},
        Case{"ALeafOfTheSameEntry", "", "must \"../size > 3\";", "", false},
        Case{"AWhenOnTheSameEntry", "", "when \"../size > 3\";", "", false},
        Case{"AReferenceWithinTheEntry", "", "type leafref { path '../size'; }", "", false},
        Case{"OtherEntries", "", "must \"count(../../entry) < 5\";", "", true},
        Case{"TheListOfTheEntry", "must \"count(../entry[size = current()/size]) = 1\";", "", "", true},
        Case{"AReferenceToAnyEntry", "", "type leafref { path '/m:top/m:entries/m:entry/m:name'; }", "", true},
        Case{"AReferenceThatNeedNotHold", "",
             "type leafref { path '/m:top/m:entries/m:entry/m:name'; require-instance false; }", "", false},
        Case{"ALeafOutside", "", "must \". != /m:top/m:limit\";", "", true},
        Case{"EntriesSeenFromOutside", "", "", "must \"count(../entries/entry) < 5\";", true},
        Case{"OnlyWhatIsOutside", "", "", "must \". < 200\";", false}),
    [](const auto &test) { return test.param.name; });

} // namespace
} // namespace yfw::device::test

#include "host/native_selection.h"

#include <initializer_list>

#include <gtest/gtest.h>

#include "base/error.h"
#include "data_texts.h"
#include "test_device.h"

namespace yfw::host::test {
namespace {

constexpr const char *detail = "/lldp/nodes/node/neighbors/details/detail";

NativePath read_of(std::string_view ns, std::string path_text, std::optional<std::string> value = {}) {
    NativePath made{};
    made.path = std::move(path_text);
    made.ns = ns;
    made.value = std::move(value);
    return made;
}

NativePath oper(std::string path_text, std::optional<std::string> value = {}) {
    return read_of(oper_ns, std::move(path_text), std::move(value));
}

class SelectedNativeData : public testing::Test {
protected:
    void add(std::initializer_list<NativePath> paths) {
        for (const NativePath &added : paths)
            selected.add(added);
    }

    // What is selected below a top node; empty when nothing is.
    std::string of(std::string_view ns, std::string_view top) const {
        const SelectedNode *tree = selected.tree(schemas().native_root(ns, top));
        return tree != nullptr ? text(*tree) : "";
    }

    NativeSelection selected{schemas()};
};

TEST_F(SelectedNativeData, IsOneTreeOfAllPaths) {
    add({oper("/lldp/nodes/node/statistics/received-packets"), oper("/lldp/global-lldp/lldp-info"),
         oper("/lldp/nodes/node/statistics/last-clear")});
    EXPECT_EQ(of(oper_ns, "lldp"), "lldp{nodes{node{statistics{received-packets* last-clear*}}} "
                                   "global-lldp{lldp-info*}}");
}

TEST_F(SelectedNativeData, HasATreeForEachModel) {
    add({oper("/lldp/global-lldp"), read_of(cfg_ns, "/lldp/enable"),
         read_of(ifmgr_ns, "/interface-configurations")});
    EXPECT_EQ(of(oper_ns, "lldp"), "lldp{global-lldp*}");
    EXPECT_EQ(of(cfg_ns, "lldp"), "lldp{enable*}");
    EXPECT_EQ(of(ifmgr_ns, "interface-configurations"), "interface-configurations*");
}

TEST_F(SelectedNativeData, IsNothingWhereNoPathLed) {
    add({read_of(cfg_ns, "/lldp/enable")});
    EXPECT_EQ(of(oper_ns, "lldp"), "");
}

TEST_F(SelectedNativeData, IsNarrowedByTheValueOfAKey) {
    add({oper(detail), oper(std::string(detail) + "/device-id", "r2")});
    EXPECT_EQ(of(oper_ns, "lldp"), "lldp{nodes{node{neighbors{details{detail*{device-id=r2*}}}}}}");
}

TEST_F(SelectedNativeData, IsNotNarrowedByTheValueOfAnotherLeaf) {
    add({oper("/lldp/nodes/node/statistics/received-packets", "20"),
         oper(std::string(detail) + "/lldp-neighbor/device-id", "r2")});
    EXPECT_EQ(of(oper_ns, "lldp"), "lldp{nodes{node{statistics{received-packets*} "
                                   "neighbors{details{detail{lldp-neighbor{device-id*}}}}}}}");
}

TEST_F(SelectedNativeData, KeepsAKeysValueWhenThePathComesAgainWithoutOne) {
    add({oper(std::string(detail) + "/device-id", "r2"), oper(std::string(detail) + "/device-id")});
    EXPECT_EQ(of(oper_ns, "lldp"), "lldp{nodes{node{neighbors{details{detail{device-id=r2*}}}}}}");
}

TEST_F(SelectedNativeData, TakesAKeysValueAlsoFromALaterPath) {
    add({oper(std::string(detail) + "/device-id"), oper(std::string(detail) + "/device-id", "r2")});
    EXPECT_EQ(of(oper_ns, "lldp"), "lldp{nodes{node{neighbors{details{detail{device-id=r2*}}}}}}");
}

TEST_F(SelectedNativeData, TakesAnEmptyKeyForAValue) {
    add({oper(std::string(detail) + "/device-id", "")});
    EXPECT_EQ(of(oper_ns, "lldp"), "lldp{nodes{node{neighbors{details{detail{device-id=*}}}}}}");
}

TEST_F(SelectedNativeData, ReachesIntoTheNodesThatAnotherModelAdds) {
    add({read_of(cfg_ns, "/interface-configurations/interface-configuration/lldp/enable"),
         read_of(ifmgr_ns, "/interface-configurations/interface-configuration/interface-name", "eth1")});
    EXPECT_EQ(of(ifmgr_ns, "interface-configurations"),
              "interface-configurations{interface-configuration{lldp{enable*} interface-name=eth1*}}");
}

TEST_F(SelectedNativeData, TakesATrailingSlashForNothing) {
    add({read_of(ifmgr_ns, "/interface-configurations/interface-configuration/")});
    EXPECT_EQ(of(ifmgr_ns, "interface-configurations"), "interface-configurations{interface-configuration*}");
}

class ANarrowedList : public SelectedNativeData {
protected:
    void narrow() {
        selected.narrow(schemas().find("Tarvo-QD-ethernet-lldp-oper", std::string(detail) + "/device-id"),
                        "r2");
    }
};

TEST_F(ANarrowedList, HasOnlyTheEntriesWithTheValue) {
    add({oper(detail)});
    narrow();
    EXPECT_EQ(of(oper_ns, "lldp"), "lldp{nodes{node{neighbors{details{detail*{device-id=r2}}}}}}");
    EXPECT_TRUE(selected.narrows());
}

TEST_F(ANarrowedList, HasOnlyTheseWhereAllAroundItIsSelected) {
    add({oper("/lldp/nodes")});
    narrow();
    EXPECT_EQ(of(oper_ns, "lldp"), "lldp{nodes*{node{neighbors{details{detail{device-id=r2}}}}}}");
}

TEST_F(ANarrowedList, IsNotSelectedByThat) {
    add({oper("/lldp/global-lldp"), oper("/lldp/nodes/node/statistics")});
    narrow();
    EXPECT_EQ(of(oper_ns, "lldp"), "lldp{global-lldp* nodes{node{statistics*}}}");
    EXPECT_FALSE(selected.narrows());
}

TEST_F(ANarrowedList, MayBeInATreeThatIsNotSelected) {
    add({read_of(cfg_ns, "/lldp/enable")});
    narrow();
    EXPECT_EQ(of(oper_ns, "lldp"), "");
}

struct UnknownPath : testing::TestWithParam<const char *> {};

TEST_P(UnknownPath, IsRefusedByName) {
    NativeSelection selected(schemas());
    try {
        selected.add(oper(GetParam()));
        FAIL() << "the path was accepted";
    } catch (const Error &error) {
        EXPECT_EQ(error.path(), GetParam());
        EXPECT_EQ(error.tag(), ErrorTag::operation_failed);
    }
}

INSTANTIATE_TEST_SUITE_P(Paths, UnknownPath,
                         testing::Values("", "/", "/lldp/nodez", "/lldp/nodes/node/statistics/more",
                                         "/lldp/nodes/node/statistics/last-clear/seconds",
                                         "/no-such-top/leaf"));

} // namespace
} // namespace yfw::host::test

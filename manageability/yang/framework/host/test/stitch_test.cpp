#include <ostream>
#include <utility>

#include "answer_fixture.h"

namespace yfw::host::test {
namespace {

class Stitch : public WrittenAnswer {
protected:
    // The keys of the one neighbor in the answer: interface and id.
    std::pair<std::string, std::string> keys() {
        const yang::DataTree made = data();
        const lyd_node *at = made.get();
        std::vector<std::string> found;
        while (at != nullptr && lyd_child(at) != nullptr) {
            const lyd_node *child = lyd_child(at);
            if (lysc_is_key(child->schema)) {
                found.emplace_back(lyd_get_value(child));
                child = child->next;
            }
            at = child;
        }
        found.resize(2, "(none)");
        return {found[0], found[1]};
    }
};

struct Names {
    std::string interface;
    std::string id;
};

std::ostream &operator<<(std::ostream &out, const Names &names) {
    return out << names.interface << " | " << names.id;
}

class StitchedNames : public Stitch, public testing::WithParamInterface<Names> {};

TEST_P(StitchedNames, AreTheKeysOfTheNeighbor) {
    EXPECT_EQ(stitch(GetParam().interface, GetParam().id), YMAP_OK);
    EXPECT_EQ(keys(), std::pair(GetParam().interface, GetParam().id));
    EXPECT_TRUE(warnings.empty());
}

TEST_P(StitchedNames, FindTheSameNeighborAgain) {
    stitch(GetParam().interface, GetParam().id);
    add(std::string(neighbor_list) + "/state/ttl", "8");
    stitch(GetParam().interface, GetParam().id + "?");
    stitch(GetParam().interface, GetParam().id);
    add(std::string(neighbor_list) + "/state/port-id", "p");
    const Lines all = answer();
    ASSERT_EQ(all.size(), 3u);
    EXPECT_NE(all[0].find("/state/ttl=8"), std::string::npos) << all[0];
    EXPECT_NE(all[1].find("/state/port-id=p"), std::string::npos) << all[1];
}

TEST_P(StitchedNames, MeetTheInterfaceThatASearchMade) {
    tidl_yfw_datatree *made = interface(GetParam().interface);
    stitch(GetParam().interface, GetParam().id);
    EXPECT_EQ(interface(GetParam().interface), made);
    EXPECT_EQ(answer().size(), 1u);
}

const Names nasty_names[] = {
    {"eth1", "r2"},
    {"eth1", "r2#eth1"},
    {"GigabitEthernet0/0/0/1", "r2#GigabitEthernet0/0/0/2"},
    {"eth1", "a#b#c"},
    {"eth1", "#"},
    {"eth1", "r2[0]#port[1]"},
    {"eth1", "r2]#port"},
    {"eth1", "r2#port]"},
    {"eth1", "r2]/"},
    {"eth1", "]/neighbors/neighbor[id=r2]/"},
    {"eth1", "/lldp/interfaces"},
    {"eth1", "key=value#a=b"},
    {"eth1", "two words#and more "},
    {"eth1", "it's#\"quoted\""},
    {"eth1", "Zürich#порт-1"},
    {"eth1", "\xF0\x9F\x94\x8C#☎"},
    {"eth[1]", "r2#p"},
    {"eth1]", "r2#p"},
    {"a=b", "r2#p"},
    {"slot 1/port 2", "r2#p"},
    {"Zürich", "r2#p"},
    {"[name=eth1]", "[id=r2]"},
};

INSTANTIATE_TEST_SUITE_P(Nasty, StitchedNames, testing::ValuesIn(nasty_names));

INSTANTIATE_TEST_SUITE_P(Long, StitchedNames,
                         testing::Values(Names{std::string(255, 'i'), std::string(255, 'n')}));

TEST_F(Stitch, MakesTheNeighborTheCurrentEntryOfItsInterface) {
    stitch("eth1", "a");
    stitch("eth1", "b");
    stitch("eth1", "a");
    add(std::string(neighbor_list) + "/state/ttl", "1");
    EXPECT_EQ(answer(), (Lines{"/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='a']/state/ttl=1",
                               "/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='b']"}));
}

TEST_F(Stitch, MakesTheInterfaceTheCurrentEntryToo) {
    interface("eth2");
    stitch("eth1", "a");
    add("/lldp/interfaces/interface/state/enabled", "true");
    EXPECT_EQ(answer(), (Lines{"/lldp/interfaces/interface[name='eth2']",
                               "/lldp/interfaces/interface[name='eth1']/state/enabled=true",
                               "/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='a']"}));
}

TEST_F(Stitch, IsRefusedForPathsThatDoNotFit) {
    for (const char *keyed : {"", "/lldp/interfaces", "/lldp/state[name=eth1]/neighbors/neighbor[id=a]/",
                              "/lldp/interfaces/interface[name]/neighbors/neighbor[id=a]/",
                              "/lldp/interfaces/interface[name=eth1/neighbors/neighbor"}) {
        yfw_map_stitch record{};
        record.parent = tree.root();
        std::snprintf(record.keyed_path, sizeof record.keyed_path, "%s", keyed);
        std::snprintf(record.list_path, sizeof record.list_path, "%s", neighbor_list);
        EXPECT_NE(yfw_map_stitch_list_to_list(ctx(), &record), YMAP_OK) << keyed;
    }
}

TEST_F(Stitch, IsRefusedWithoutAnOutputNode) {
    yfw_map_stitch record{};
    std::snprintf(record.keyed_path, sizeof record.keyed_path,
                  "/lldp/interfaces/interface[name=eth1]/neighbors/neighbor[id=a]/");
    std::snprintf(record.list_path, sizeof record.list_path, "%s", neighbor_list);
    EXPECT_NE(yfw_map_stitch_list_to_list(ctx(), &record), YMAP_OK);
    EXPECT_EQ(data(), nullptr);
}

} // namespace
} // namespace yfw::host::test

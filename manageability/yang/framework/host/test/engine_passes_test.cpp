// Requests that need more than one walk of the mapping: several keys of a list, and walks that end early.
#include <set>

#include <gtest/gtest.h>

#include "data_texts.h"
#include "neighbor_tables.h"
#include "test_device.h"

namespace yfw::host::test {
namespace {

constexpr const char *any_neighbor = "/lldp/interfaces/interface/neighbors/neighbor";
constexpr const char *eth1 = "/lldp/interfaces/interface[name='eth1']";
constexpr const char *eth2 = "/lldp/interfaces/interface[name='eth2']";
constexpr const char *eth3 = "/lldp/interfaces/interface[name='eth3']";

std::string at(const char *entry, const char *rest) {
    return std::string(entry) + rest;
}

Announcement heard_on(const char *port, const char *capabilities) {
    Announcement made{port};
    made.leaves = {{"chassis-id", std::string("chassis of ") + port}, {"hold-time", "120"}};
    made.detail = {{"system-name", std::string("name behind ") + port}};
    made.mib = {{"combined-capabilities", capabilities}, {"port-id-sub-type", "5"}};
    made.tlvs = {{"00:80:c2", "9", port}, {"33:44:55", "1", "x"}};
    return made;
}

// Three interfaces: two neighbors on eth1, one of which is heard on eth2 with the same id; none on eth3.
std::string three_interfaces() {
    Table table{{{"0/0"}, {"0/1"}}};
    Card &first = table.cards[0];
    first.details = {{"eth1", "r2", {heard_on("p1", "1310740")}},
                     {"eth1", "r3", {heard_on("p2", "1310724")}},
                     {"eth2", "r2", {heard_on("p1", "262144")}}};
    first.interfaces = {{"eth1", {{"tx-enabled", "1"}, {"rx-enabled", "1"}}, {{"received-packets", "20"}}},
                        {"eth2", {{"tx-enabled", "0"}, {"rx-enabled", "0"}}, {{"bad-packets", "3"}}}};
    first.statistics = {{"received-packets", "10"}, {"transmitted-packets", "1"}};
    Card &second = table.cards[1];
    second.interfaces = {{"eth3", {{"tx-enabled", "1"}, {"rx-enabled", "0"}}}};
    second.statistics = {{"received-packets", "32"}, {"transmitted-packets", "2"}};
    table.system = {{"chassis-id", "c1"}, {"chassis-id-sub-type", "4"}, {"system-name", "r1"}};
    return table.xml() +
           R"(<lldp xmlns="urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg"><enable>true</enable></lldp>)";
}

class SeveralWalks : public testing::Test {
protected:
    void SetUp() override { device.source.xml = three_interfaces(); }

    std::set<std::string> lines(const Lines &paths) {
        const Lines read = device.read(paths);
        EXPECT_TRUE(device.warnings.empty());
        return {read.begin(), read.end()};
    }

    DeviceUnderTest device;
};

// Nothing is mapped for the type leaf of a TLV: a walk that reaches it ends there.
const std::string tlv_type = at(any_neighbor, "/custom-tlvs/tlv/state/type");

TEST_F(SeveralWalks, AnswerForALeafThatNothingIsMappedFor) {
    EXPECT_EQ(lines({tlv_type}).size(), 6u); // two TLVs of each of three announcements
    EXPECT_EQ(
        lines({at(eth2, "/neighbors/neighbor[id='r2#p1']/custom-tlvs/tlv/state/type")}),
        (std::set<std::string>{at(eth2, "/neighbors/neighbor[id='r2#p1']/custom-tlvs/"
                                        "tlv[type='127'][oui='00:80:c2'][oui-subtype='9']/state/type=127"),
                               at(eth2, "/neighbors/neighbor[id='r2#p1']/custom-tlvs/"
                                        "tlv[type='127'][oui='33:44:55'][oui-subtype='1']/state/type=127")}));
}

TEST_F(SeveralWalks, LoseNothingThatWasSelectedBehindIt) {
    EXPECT_EQ(
        lines({tlv_type, at(any_neighbor, "/custom-tlvs/tlv/state/value"),
               at(any_neighbor, "/capabilities/capability/state/enabled"), "/lldp/state/counters/frame-in"})
            .count("/lldp/state/counters/frame-in=42"),
        1u);
}

TEST_F(SeveralWalks, LoseNothingOfAWholeRead) {
    const std::set<std::string> whole = lines({"/lldp"});
    for (const char *line : {"/lldp/state/system-name=r1", "/lldp/state/counters/frame-in=42",
                             "/lldp/state/counters/frame-out=3", "/lldp/config/enabled=true"})
        EXPECT_EQ(whole.count(line), 1u) << line;
    for (const std::string &line : lines({at(any_neighbor, "/capabilities")}))
        EXPECT_EQ(whole.count(line), 1u) << line;
}

TEST_F(SeveralWalks, TakeTheKeyOfAnEntryAlongWhenItIsSelectedToo) {
    const std::set<std::string> both =
        lines({at(eth1, "/name"), at(eth1, "/neighbors/neighbor/custom-tlvs/tlv/state/type")});
    EXPECT_EQ(both, lines({at(eth1, "/neighbors/neighbor/custom-tlvs/tlv/state/type")}));
    EXPECT_EQ(both.size(), 4u);
}

// One selection for each way in which a request is walked.
const Lines selections = {tlv_type,
                          at(any_neighbor, "/custom-tlvs/tlv/state/value"),
                          at(any_neighbor, "/capabilities/capability[name='ROUTER']/state"),
                          at(any_neighbor, "/capabilities/capability[name='MAC_BRIDGE']/state/enabled"),
                          at(eth1, "/state"),
                          at(eth2, "/state/enabled"),
                          at(eth3, "/state"),
                          at(eth1, "/neighbors/neighbor[id='r2#p1']/state"),
                          at(eth1, "/neighbors/neighbor[id='r3#p2']/state/chassis-id"),
                          at(eth2, "/neighbors/neighbor[id='r2#p1']/custom-tlvs"),
                          at(eth1, "/neighbors/neighbor[id='r9#p9']/state"),
                          "/lldp/interfaces/interface[name='eth9']/state",
                          "/lldp/interfaces/interface/state/counters",
                          "/lldp/state/counters/frame-in",
                          "/lldp/state/system-name",
                          "/lldp/config"};

// The union of the chosen answers.
std::set<std::string> united(const std::vector<std::set<std::string>> &alone,
                             const std::vector<size_t> &chosen) {
    std::set<std::string> all;
    for (const size_t i : chosen)
        all.insert(alone[i].begin(), alone[i].end());
    return all;
}

TEST_F(SeveralWalks, GiveOfAnyTwoSelectionsWhatEachGivesAlone) {
    std::vector<std::set<std::string>> alone;
    for (const std::string &asked : selections)
        alone.push_back(lines({asked}));
    for (size_t i = 0; i < selections.size(); i++)
        for (size_t j = 0; j < selections.size(); j++)
            EXPECT_EQ(lines({selections[i], selections[j]}), united(alone, {i, j}))
                << selections[i] << " and " << selections[j];
}

TEST_F(SeveralWalks, GiveOfAllSelectionsWhatEachGivesAlone) {
    std::vector<std::set<std::string>> alone;
    std::vector<size_t> every;
    for (const std::string &asked : selections) {
        every.push_back(alone.size());
        alone.push_back(lines({asked}));
    }
    EXPECT_EQ(lines(selections), united(alone, every));
    EXPECT_EQ(lines(Lines(selections.rbegin(), selections.rend())), united(alone, every));
}

TEST_F(SeveralWalks, GiveEveryEntryThatIsNamedByKey) {
    EXPECT_EQ(lines({at(eth1, "/state/enabled"), at(eth2, "/state/enabled"), at(eth3, "/state/enabled")}),
              (std::set<std::string>{at(eth1, "/state/enabled=true"), at(eth2, "/state/enabled=false"),
                                     at(eth3, "/state/enabled=true")}));
    EXPECT_EQ(lines({at(eth1, "/neighbors/neighbor[id='r2#p1']/state/port-id"),
                     at(eth1, "/neighbors/neighbor[id='r3#p2']/state/port-id"),
                     at(eth2, "/neighbors/neighbor[id='r2#p1']/state/port-id")}),
              (std::set<std::string>{at(eth1, "/neighbors/neighbor[id='r2#p1']/state/port-id=p1"),
                                     at(eth1, "/neighbors/neighbor[id='r3#p2']/state/port-id=p2"),
                                     at(eth2, "/neighbors/neighbor[id='r2#p1']/state/port-id=p1")}));
}

TEST_F(SeveralWalks, GiveEachEntryOnceWhenItIsNamedTwice) {
    const Lines once = device.read({at(eth1, "/neighbors/neighbor[id='r2#p1']")});
    EXPECT_EQ(device.read({at(eth1, "/neighbors/neighbor[id='r2#p1']"),
                           at(eth1, "/neighbors/neighbor[id='r2#p1']/state")}),
              once);
}

TEST_F(SeveralWalks, CountTheNodesOnceHoweverManyKeysAreNamed) {
    EXPECT_EQ(lines({at(eth1, "/state/enabled"), at(eth2, "/state/enabled"), "/lldp/state/counters"})
                  .count("/lldp/state/counters/frame-in=42"),
              1u);
}

} // namespace
} // namespace yfw::host::test

// The shipped mapping together with the one that is shipped beside it.
#include <algorithm>

#include <gtest/gtest.h>

#include "data_texts.h"
#include "neighbor_answers.h"
#include "test_device.h"

namespace yfw::host::test {
namespace {

constexpr const char *enabled = "/lldp/state/enabled";
constexpr const char *suppressed = "/lldp/state/suppress-tlv-advertisement";

std::string configured(const std::string &settings) {
    return "<lldp xmlns=\"" + std::string(cfg_ns) + "\">" + settings + "</lldp>";
}

std::string disabled(const std::vector<std::string> &tlvs) {
    std::string text = "<tlv-select>";
    for (const std::string &tlv : tlvs)
        text.append("<").append(tlv).append("><disable>true</disable></").append(tlv).append(">");
    return text + "</tlv-select>";
}

class TheShippedMappings : public testing::Test {
protected:
    Lines read(const Lines &paths, Content content = Content::all) {
        const Answer answer = engine.read(request(paths, content));
        EXPECT_TRUE(answer.warnings.empty());
        return leaves(answer.data.get());
    }

    // Warnings may come with it.
    Lines engine_lines(const Lines &paths) { return leaves(engine.read(request(paths)).data.get()); }

    TextSource source;
    Engine engine{schemas(), source, read_mapping(YFW_PLUGINS)};
};

struct Device {
    const char *name;
    std::string xml;
    const char *enabled;
};

void PrintTo(const Device &device, std::ostream *stream) {
    *stream << device.xml;
}

class EnabledInTheState : public TheShippedMappings, public testing::WithParamInterface<Device> {};

TEST_P(EnabledInTheState, IsTheSameByItselfAndInAReadOfEverything) {
    source.xml = GetParam().xml;
    const std::string line = std::string(enabled) + "=" + GetParam().enabled;
    EXPECT_EQ(read({enabled}), Lines{line});
    EXPECT_EQ(read({enabled}, Content::state), Lines{line});
    for (const Content content : {Content::all, Content::state}) {
        const Lines whole = read({"/lldp"}, content);
        EXPECT_EQ(std::count(whole.begin(), whole.end(), line), 1);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, EnabledInTheState,
    testing::Values(Device{"ADeviceThatIsOn", configured("<enable>true</enable>"), "true"},
                    Device{"ADeviceThatIsOff", configured("<enable>false</enable>"), "false"},
                    Device{"ADeviceWithATimer", configured("<timer>30</timer>"), "true"},
                    Device{"ADeviceWithASuppressedTlv", configured(disabled({"system-name"})), "true"},
                    Device{"ADeviceWithOtherSettings", configured("<system-name>r1</system-name>"), "false"},
                    Device{"ADeviceWithStateOnly", Table{{}, {{"system-name", "r1"}}}.xml(), "false"},
                    Device{"ADeviceWithoutData", "", "false"}),
    [](const auto &test) { return test.param.name; });

TEST_F(TheShippedMappings, SayNothingOfStateInAReadOfConfiguration) {
    EXPECT_EQ(read({"/lldp"}, Content::config), Lines{});
    EXPECT_EQ(read({enabled, suppressed}, Content::config), Lines{});
    source.xml = configured("<enable>true</enable>" + disabled({"system-name", "port-description"}));
    EXPECT_EQ(read({"/lldp"}, Content::config),
              (Lines{"/lldp/config/enabled=true",
                     "/lldp/config/suppress-tlv-advertisement=openconfig-lldp-types:PORT_DESCRIPTION"}));
}

TEST_F(TheShippedMappings, NameEverySuppressedTlvOnce) {
    source.xml = configured(disabled({"system-name", "system-capabilities", "management-address"}));
    Lines lines = read({suppressed});
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(lines, (Lines{std::string(suppressed) + "=openconfig-lldp-types:MANAGEMENT_ADDRESS",
                            std::string(suppressed) + "=openconfig-lldp-types:SYSTEM_CAPABILITIES",
                            std::string(suppressed) + "=openconfig-lldp-types:SYSTEM_NAME"}));
}

TEST_F(TheShippedMappings, AddNothingToOtherPartsOfTheState) {
    EXPECT_EQ(read({"/lldp/state/hello-timer", "/lldp/state/counters", "/lldp/interfaces"}), Lines{});
}

// What the request says of `enabled` is compared with the value of the mapping that answers it.
TEST_F(TheShippedMappings, AreSelectedFromTogether) {
    Selection wanted = selection({"/lldp/state/system-name"});
    wanted.children.front().children.push_back(
        {schemas().find("openconfig-lldp", enabled), std::string("false"), {}, false});
    ReadRequest narrowed;
    narrowed.selection = wanted;
    source.xml = Table{{}, {{"system-name", "r1"}}}.xml();
    EXPECT_EQ(leaves(engine.read(narrowed).data.get()), Lines{"/lldp/state/system-name=r1"});
    source.xml += configured("<enable>true</enable>");
    EXPECT_EQ(leaves(engine.read(narrowed).data.get()), Lines{});
}

TEST_F(TheShippedMappings, KeepAnsweringWhenTheMainOneIsLoadedAnew) {
    Table table{{{"0/0"}, {"0/1"}}};
    for (Card &card : table.cards)
        card.statistics = {{"received-packets", "21"}};
    source.xml = table.xml();
    for (int round = 0; round < 3; round++)
        EXPECT_EQ(read({"/lldp/state/counters/frame-in", enabled}),
                  (Lines{"/lldp/state/enabled=false", "/lldp/state/counters/frame-in=42"}));
}

// The main mapping asks for "sw" and finds another neighbor; the one beside it has all of the interface's.
TEST_F(TheShippedMappings, FindANeighborByAnIdThatCannotBeTakenApart) {
    const Announcement asked{"p", {{"chassis-id", "c1"}}}, other{"p", {{"chassis-id", "c2"}}};
    source.xml = Table{{{"0/0", {{"eth1", "sw", {other}}, {"eth1", "sw#1", {asked}}}}}}.xml();
    const std::string entry = neighbor_path({"eth1", "sw#1#p"});
    const Lines found = read({entry, enabled});
    EXPECT_EQ(std::count(found.begin(), found.end(), entry + "/state/chassis-id=c1"), 1);
    EXPECT_EQ(std::count(found.begin(), found.end(), std::string(enabled) + "=false"), 1);
    EXPECT_EQ(read({entry + "/state/chassis-id"}), Lines{entry + "/state/chassis-id=c1"});
}

// Two neighbors on eth1, one of them with addresses, and one on eth2.
Table neighbors_with_addresses() {
    const Announcement addressed{
        "p1", {}, {}, {}, {{"ipv4-address", "192.0.2.1"}, {"ipv6-address", "2001:db8::1"}}};
    const Announcement plain{"p2"};
    const Announcement cable{"p3", {}, {}, {{"combined-capabilities", "5242880"}}}; // also a router
    return Table{{{"0/0", {{"eth1", "r2", {addressed}}, {"eth1", "r3", {plain}}, {"eth2", "r4", {cable}}}}}};
}

TEST_F(TheShippedMappings, HaveEachNeighborOnceWithItsAddressesInIt) {
    source.xml = neighbors_with_addresses().xml();
    const Lines whole = engine_lines({"/lldp"});
    for (const NeighborKey &key : {NeighborKey{"eth1", "r2#p1"}, {"eth1", "r3#p2"}, {"eth2", "r4#p3"}})
        EXPECT_EQ(std::count(whole.begin(), whole.end(), neighbor_path(key) + "/state/id=" + key.second), 1);
    Lines addresses;
    for (const std::string &line : whole)
        if (line.find("/mgmt-address[") != std::string::npos)
            addresses.push_back(line);
    const std::string list = neighbor_path({"eth1", "r2#p1"}) + "/mgmt-addresses/mgmt-address";
    EXPECT_EQ(addresses, (Lines{list + "[address='192.0.2.1']/state/address=192.0.2.1",
                                list + "[address='2001:db8::1']/state/address=2001:db8::1"}));
}

TEST_F(TheShippedMappings, ReadTheAddressesOfOneNeighbor) {
    source.xml = neighbors_with_addresses().xml();
    const std::string list = neighbor_path({"eth1", "r2#p1"}) + "/mgmt-addresses/mgmt-address";
    EXPECT_EQ(read({list + "/state/address"}),
              (Lines{list + "[address='192.0.2.1']/state/address=192.0.2.1",
                     list + "[address='2001:db8::1']/state/address=2001:db8::1"}));
    EXPECT_EQ(read({neighbor_path({"eth1", "r3#p2"}) + "/mgmt-addresses"}), Lines{});
    EXPECT_EQ(read({neighbor_path({"eth1", "r9#p9"}) + "/mgmt-addresses"}), Lines{});
}

TEST_F(TheShippedMappings, ReadOneAddressByItsKey) {
    source.xml = neighbors_with_addresses().xml();
    const std::string list = neighbor_path({"eth1", "r2#p1"}) + "/mgmt-addresses/mgmt-address";
    EXPECT_EQ(read({list + "[address='2001:db8::1']/state"}),
              Lines{list + "[address='2001:db8::1']/state/address=2001:db8::1"});
    EXPECT_EQ(read({list + "[address='192.0.2.9']"}), Lines{});
}

// The main mapping finds the first of them.
TEST_F(TheShippedMappings, ShowNoNeighborsThatTheMainOneDoesNot) {
    const Announcement same{"p", {}, {}, {}, {{"ipv4-address", "192.0.2.1"}}};
    source.xml = Table{{{"0/0", {{"eth1", "r2", {same}}, {"eth2", "r2", {same}}}}}}.xml();
    const std::string found =
        neighbor_path({"eth1", "r2#p"}) + "/mgmt-addresses/mgmt-address[address='192.0.2.1']";
    EXPECT_EQ(read({"/lldp/interfaces/interface/neighbors/neighbor[id='r2#p']/mgmt-addresses"}),
              Lines{found + "/state/address=192.0.2.1"});
}

TEST_F(TheShippedMappings, SayNothingOfAddressesInAReadOfConfiguration) {
    source.xml = neighbors_with_addresses().xml();
    for (const std::string &line : leaves(engine.read(request({"/lldp"}, Content::config)).data.get()))
        EXPECT_EQ(line.find("neighbor"), std::string::npos) << line;
}

TEST_F(TheShippedMappings, NameTheCapabilityOfACableDeviceAsPublished) {
    source.xml = neighbors_with_addresses().xml();
    const std::string list = neighbor_path({"eth2", "r4#p3"}) + "/capabilities/capability";
    const Answer answer = engine.read(request({list + "/state/enabled"}));
    EXPECT_EQ(leaves(answer.data.get()),
              (Lines{list + "[name='openconfig-lldp-types:ROUTER']/state/enabled=false",
                     list + "[name='openconfig-lldp-types:DOCSIS_CABLE_DEVICE']/state/enabled=false"}));
}

TEST_F(TheShippedMappings, HaveTheTimeToLiveThatIsConfigured) {
    source.xml = configured("<enable>true</enable><holdtime>120</holdtime>");
    EXPECT_EQ(read({"/lldp/state/ttl"}), Lines{"/lldp/state/ttl=120"});
    EXPECT_EQ(read({"/lldp/state/ttl"}, Content::config), Lines{});
    source.xml = configured("<enable>true</enable>");
    EXPECT_EQ(read({"/lldp/state/ttl"}), Lines{});
}

TEST_F(TheShippedMappings, LeaveOutATimeToLiveThatNoFrameCanCarry) {
    source.xml = configured("<holdtime>65536</holdtime>");
    const Answer answer = engine.read(request({"/lldp/state/ttl"}));
    EXPECT_EQ(answer.data, nullptr);
    ASSERT_EQ(answer.warnings.size(), 1u);
    EXPECT_NE(answer.warnings[0].find(":lldp/state/ttl"), std::string::npos);
}

TEST_F(TheShippedMappings, AreToldApartInAnExplanation) {
    const Explanation explanation = engine.explain(request({enabled}));
    ASSERT_FALSE(explanation.empty());
    const ExplainedNode &last = explanation.back();
    EXPECT_EQ(last.openconfig, enabled);
    EXPECT_EQ(last.callbacks,
              Lines{"libocextra.so:ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_enabled"});
    EXPECT_EQ(last.paths.front().path, "/lldp/enable");
    EXPECT_EQ(std::count_if(explanation.begin(), explanation.end(),
                            [](const ExplainedNode &node) { return node.openconfig == enabled; }),
              2);
}

TEST_F(TheShippedMappings, LeaveEditsToTheMainOne) {
    yang::EditNode edit;
    edit.node = schemas().openconfig_root();
    yang::add_edit(edit, path("/lldp/config/enabled"), "true", yang::Operation::merge);
    Lines paths;
    for (const NativePath &native : engine.map_edit(edit, nullptr))
        paths.push_back(native.path);
    EXPECT_EQ(paths, Lines{"/lldp/enable"});
}

} // namespace
} // namespace yfw::host::test

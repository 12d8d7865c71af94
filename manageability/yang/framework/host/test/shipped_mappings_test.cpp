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

// The main mapping asks for "sw" and finds another neighbor; the one beside it has no neighbors at all.
TEST_F(TheShippedMappings, FindANeighborByAnIdThatCannotBeTakenApart) {
    const Announcement asked{"p", {{"chassis-id", "c1"}}}, other{"p", {{"chassis-id", "c2"}}};
    source.xml = Table{{{"0/0", {{"eth1", "sw", {other}}, {"eth1", "sw#1", {asked}}}}}}.xml();
    const std::string entry = neighbor_path({"eth1", "sw#1#p"});
    const Lines found = read({entry, enabled});
    EXPECT_EQ(std::count(found.begin(), found.end(), entry + "/state/chassis-id=c1"), 1);
    EXPECT_EQ(std::count(found.begin(), found.end(), std::string(enabled) + "=false"), 1);
    EXPECT_EQ(read({entry + "/state/chassis-id"}), Lines{entry + "/state/chassis-id=c1"});
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

#include "host/engine.h"

#include <thread>

#include <gtest/gtest.h>

#include "base/error.h"
#include "data_texts.h"
#include "neighbor_tables.h"
#include "platform/debug_log.h"
#include "test_device.h"

namespace yfw::host::test {
namespace {

constexpr const char *neighbors_of_eth1 = "/lldp/interfaces/interface[name='eth1']/neighbors";

Announcement full_announcement() {
    Announcement made{"eth5"};
    made.leaves = {{"chassis-id", "02:00:00:00:00:02"}, {"hold-time", "120"}};
    made.detail = {{"port-description", "to r1"},
                   {"system-name", "r2.example.net"},
                   {"system-description", "Router r2"},
                   {"last-update", "7"},
                   {"age", "31"}};
    made.mib = {{"combined-capabilities", "1310724"}, {"chassis-id-sub-type", "4"}, {"port-id-sub-type", "5"}};
    made.addresses = {{"ipv4-address", "192.0.2.2"}};
    made.tlvs = {{"00:80:c2", "9", "abc"}};
    return made;
}

// One neighbor with everything that is mapped, and the device's own system data.
Table one_neighbor() {
    Table table{{{"0/0"}}};
    Card &card = table.cards.front();
    card.details = {{"eth1", "r2", {full_announcement()}}};
    card.interfaces = {{"eth1", {{"tx-enabled", "1"}, {"rx-enabled", "0"}}, {{"received-packets", "20"}}},
                       {"eth2", {{"tx-enabled", "0"}, {"rx-enabled", "0"}}}};
    card.statistics = {{"transmitted-packets", "57"}};
    table.system = {
        {"chassis-id", "02:00:00:00:00:01"}, {"chassis-id-sub-type", "4"}, {"system-name", "r1.example.net"}};
    return table;
}

constexpr const char *configuration = R"(
<lldp xmlns="urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg"><enable>true</enable>
  <system-name>r1.example.net</system-name></lldp>
<interface-configurations xmlns="urn:tarvo:yang:Tarvo-QD-ifmgr-cfg"><interface-configuration>
  <active>act</active><interface-name>eth1</interface-name>
  <lldp xmlns="urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg"><enable>true</enable></lldp>
</interface-configuration></interface-configurations>)";

class EngineRead : public testing::Test {
protected:
    void SetUp() override { device.source.xml = configuration + one_neighbor().xml(); }

    // The error of a read that must fail.
    Error error_of(const Lines &paths) {
        try {
            device.read(paths);
        } catch (const Error &error) {
            return error;
        }
        ADD_FAILURE() << "the read succeeded";
        return {ErrorTag::operation_failed, "", ""};
    }

    DeviceUnderTest device;
};

TEST_F(EngineRead, GivesAllThatIsKnownOfANeighbor) {
    const Lines lines = below(device.read({neighbors_of_eth1}), neighbors_of_eth1);
    EXPECT_EQ(below(lines, "/neighbor[id='r2#eth5']"),
              (Lines{"/state/system-name=r2.example.net",
                     "/state/system-description=Router r2",
                     "/state/chassis-id=02:00:00:00:00:02",
                     "/state/chassis-id-type=MAC_ADDRESS",
                     "/state/id=r2#eth5",
                     "/state/age=31",
                     "/state/last-update=7",
                     "/state/ttl=120",
                     "/state/port-id=eth5",
                     "/state/port-id-type=INTERFACE_NAME",
                     "/state/port-description=to r1",
                     "/state/management-address=192.0.2.2",
                     "/state/management-address-type=ipv4",
                     "/custom-tlvs/tlv[type='127'][oui='00:80:c2'][oui-subtype='9']/state/type=127",
                     "/custom-tlvs/tlv[type='127'][oui='00:80:c2'][oui-subtype='9']/state/oui=00:80:c2",
                     "/custom-tlvs/tlv[type='127'][oui='00:80:c2'][oui-subtype='9']/state/oui-subtype=9",
                     "/custom-tlvs/tlv[type='127'][oui='00:80:c2'][oui-subtype='9']/state/value=YWJj",
                     "/capabilities/capability[name='openconfig-lldp-types:MAC_BRIDGE']/state/"
                     "name=openconfig-lldp-types:MAC_BRIDGE",
                     "/capabilities/capability[name='openconfig-lldp-types:MAC_BRIDGE']/state/enabled=true",
                     "/capabilities/capability[name='openconfig-lldp-types:ROUTER']/state/"
                     "name=openconfig-lldp-types:ROUTER",
                     "/capabilities/capability[name='openconfig-lldp-types:ROUTER']/state/enabled=false"}));
    EXPECT_TRUE(device.warnings.empty());
}

TEST_F(EngineRead, GivesTheStateOfTheDeviceAndOfItsInterfaces) {
    EXPECT_EQ(device.read({"/lldp/state/system-name", "/lldp/state/chassis-id-type",
                           "/lldp/state/counters/frame-out", "/lldp/interfaces/interface/state/enabled",
                           "/lldp/interfaces/interface/state/counters/frame-in"}),
              (Lines{"/lldp/state/system-name=r1.example.net", "/lldp/state/chassis-id-type=MAC_ADDRESS",
                     "/lldp/state/counters/frame-out=57",
                     "/lldp/interfaces/interface[name='eth1']/state/enabled=true",
                     "/lldp/interfaces/interface[name='eth1']/state/counters/frame-in=20",
                     "/lldp/interfaces/interface[name='eth2']/state/enabled=false"}));
}

TEST_F(EngineRead, OfConfigurationShowsNoState) {
    EXPECT_EQ(device.read({"/lldp"}, Content::config),
              (Lines{"/lldp/config/enabled=true", "/lldp/config/system-name=r1.example.net",
                     "/lldp/interfaces/interface[name='eth1']/config/name=eth1",
                     "/lldp/interfaces/interface[name='eth1']/config/enabled=true"}));
}

TEST_F(EngineRead, OfStateShowsNoConfiguration) {
    const Lines lines = device.read({"/lldp"}, Content::state);
    EXPECT_EQ(below(lines, "/lldp/config"), Lines{});
    EXPECT_EQ(below(lines, "/lldp/interfaces/interface[name='eth1']/config"), Lines{});
    EXPECT_FALSE(below(lines, std::string(neighbors_of_eth1) + "/neighbor[id='r2#eth5']/state/ttl").empty());
    EXPECT_FALSE(below(lines, "/lldp/state/counters/frame-out").empty());
}

struct EmptyRead : EngineRead, testing::WithParamInterface<const char *> {};

TEST_P(EmptyRead, IsNoError) {
    EXPECT_EQ(device.read({GetParam()}), Lines{});
    EXPECT_TRUE(device.warnings.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Absent, EmptyRead,
    testing::Values("/lldp/interfaces/interface[name='eth9']", "/lldp/interfaces/interface[name='eth9']/state",
                    "/lldp/interfaces/interface[name='eth9']/neighbors/neighbor[id='r2#eth5']",
                    "/lldp/interfaces/interface[name='eth2']/neighbors",
                    "/lldp/interfaces/interface/neighbors/neighbor[id='r9#eth5']",
                    "/lldp/interfaces/interface/neighbors/neighbor[id='r2#eth6']",
                    "/lldp/interfaces/interface/neighbors/neighbor/capabilities/capability[name='TELEPHONE']",
                    "/lldp/config/hello-timer"));

TEST_F(EngineRead, OfADeviceWithoutDataIsEmpty) {
    device.source.xml.clear();
    EXPECT_EQ(device.read({"/lldp"}), Lines{});
    EXPECT_TRUE(device.warnings.empty());
}

TEST_F(EngineRead, OfDataBesideWhatWasAskedForIsEmpty) {
    device.source.xml = Table{{}, {{"system-name", "r1"}}}.xml();
    EXPECT_EQ(device.read({"/lldp/state/counters"}), Lines{});
    EXPECT_EQ(device.read({neighbors_of_eth1}), Lines{});
}

TEST_F(EngineRead, GivesOneCapabilityByName) {
    const std::string capability =
        std::string(neighbors_of_eth1) + "/neighbor[id='r2#eth5']/capabilities/capability";
    for (const char *name : {"ROUTER", "openconfig-lldp-types:ROUTER"})
        EXPECT_EQ(device.read({capability + "[name='" + name + "']/state/enabled"}),
                  (Lines{capability + "[name='openconfig-lldp-types:ROUTER']/state/enabled=false"}))
            << name;
}

TEST_F(EngineRead, GivesCustomTlvsOfTheTypeThatThereIs) {
    EXPECT_EQ(
        device.read({"/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv[type='127']/state/value"}),
        (Lines{std::string(neighbors_of_eth1) + "/neighbor[id='r2#eth5']/custom-tlvs/"
                                                "tlv[type='127'][oui='00:80:c2'][oui-subtype='9']/"
                                                "state/value=YWJj"}));
}

TEST_F(EngineRead, RefusesCustomTlvsOfAnotherType) {
    const Error error = error_of({"/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv[type='1']"});
    EXPECT_EQ(error.status(), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(error.tag(), ErrorTag::invalid_value);
    EXPECT_STREQ(error.what(), "Invalid key type value");
    EXPECT_TRUE(error.path().starts_with("/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs"))
        << error.path();
}

TEST_F(EngineRead, FailsWhereTheDeviceReportsAnImpossibleSubtype) {
    Table table = one_neighbor();
    table.cards.front().details.front().announcements.front().mib = {{"chassis-id-sub-type", "0"}};
    device.source.xml = table.xml();
    const Error error = error_of({"/lldp"});
    EXPECT_EQ(error.status(), YMAP_ERR_MAP_FAILED);
    EXPECT_EQ(error.tag(), ErrorTag::operation_failed);
    EXPECT_STREQ(error.what(), "Invalid Chassis id type");
    EXPECT_NE(error.path().find("eth1"), std::string::npos) << error.path();
}

TEST_F(EngineRead, LosesOnlyTheCapabilityThatTheModelDoesNotKnow) {
    Table table = one_neighbor();
    table.cards.front().details.front().announcements.front().mib = {
        {"combined-capabilities", std::to_string(0x54u << 16)}}; // bridge, router and cable device
    device.source.xml = table.xml();
    const std::string list = std::string(neighbors_of_eth1) + "/neighbor[id='r2#eth5']/capabilities/capability";
    EXPECT_EQ(device.read({list + "/state/enabled"}),
              (Lines{list + "[name='openconfig-lldp-types:MAC_BRIDGE']/state/enabled=false",
                     list + "[name='openconfig-lldp-types:ROUTER']/state/enabled=false"}));
    ASSERT_EQ(device.warnings.size(), 1u);
    EXPECT_NE(device.warnings.front().find("DCOS_IS_CABLE_DEVICE"), std::string::npos);
}

TEST_F(EngineRead, PassesOnWhyTheDeviceCannotBeRead) {
    class Unreadable final : public sources::NativeSource {
        yang::DataTree read(const ly_ctx *) override {
            throw Error(ErrorTag::resource_denied, "device", "is out of reach");
        }
    } source;
    Engine engine(schemas(), source, read_mapping(YFW_PLUGINS));
    try {
        engine.read(request({"/lldp"}));
        FAIL() << "the read succeeded";
    } catch (const Error &error) {
        EXPECT_EQ(error.path(), "device");
        EXPECT_STREQ(error.what(), "is out of reach");
    }
}

TEST_F(EngineRead, ReadsTheDeviceOnceForEachRequest) {
    device.read({"/lldp"});
    EXPECT_EQ(device.source.reads, 1);
    device.read({"/lldp/interfaces/interface[name='eth1']", "/lldp/interfaces/interface[name='eth2']"});
    EXPECT_EQ(device.source.reads, 2);
}

TEST_F(EngineRead, FollowsTheDeviceFromReadToRead) {
    EXPECT_EQ(device.read({"/lldp/state/counters/frame-out"}), (Lines{"/lldp/state/counters/frame-out=57"}));
    Table table = one_neighbor();
    table.cards.front().statistics = {{"transmitted-packets", "58"}};
    device.source.xml = table.xml();
    EXPECT_EQ(device.read({"/lldp/state/counters/frame-out"}), (Lines{"/lldp/state/counters/frame-out=58"}));
}

TEST_F(EngineRead, LogsTheStepsOfTheMappingOnlyWhenTracing) {
    Lines logged;
    const platform::LogSink before = platform::set_log_sink(
        [&logged](platform::LogChannel, std::string_view line) { logged.emplace_back(line); });
    device.read({"/lldp"});
    EXPECT_EQ(logged, Lines{});
    const uint64_t written = device.engine.trace_buffer().written();
    device.engine.set_trace(true);
    device.read({"/lldp"});
    device.engine.set_trace(false);
    platform::set_log_sink(before);
    EXPECT_GT(logged.size(), 100u);
    EXPECT_GT(device.engine.trace_buffer().written(), written);
}

TEST_F(EngineRead, ServesThreadsOneAfterTheOther) {
    const Lines paths = {"/lldp/interfaces/interface[name='eth1']", "/lldp/interfaces/interface[name='eth2']",
                         std::string(neighbors_of_eth1) + "/neighbor[id='r2#eth5']", "/lldp/state"};
    std::vector<Lines> alone;
    std::vector<ReadRequest> requests;
    for (const std::string &asked : paths) {
        alone.push_back(device.read({asked}));
        requests.push_back(request({asked}));
    }
    std::vector<std::vector<Answer>> answers(paths.size());
    std::vector<std::thread> threads;
    for (size_t i = 0; i < paths.size(); i++)
        threads.emplace_back([&, i] {
            for (int round = 0; round < 5; round++)
                answers[i].push_back(device.engine.read(requests[i]));
        });
    for (std::thread &thread : threads)
        thread.join();
    for (size_t i = 0; i < paths.size(); i++)
        for (const Answer &answer : answers[i])
            EXPECT_EQ(leaves(answer.data.get()), alone[i]) << paths[i];
}

} // namespace
} // namespace yfw::host::test

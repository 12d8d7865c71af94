// The settings that a native configuration asks of lldpd, and what lldpd cannot do.
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/error.h"
#include "native_modules.h"
#include "sources/lldpd/wanted_settings.h"
#include "support/native_xml.h"

namespace yfw::sources::test {
namespace {

using lldpd::PortStatus;
using lldpd::WantedSettings;
using yfw::test::element;
using yfw::test::native_configuration;

constexpr PortStatus both{true, true};
constexpr PortStatus sends{true, false};
constexpr PortStatus listens{false, true};
constexpr PortStatus silent{false, false};

std::string interfaces(const std::string &entries) {
    return "<interface-configurations xmlns=\"urn:tarvo:yang:Tarvo-QD-ifmgr-cfg\">" + entries +
           "</interface-configurations>";
}

std::string interface(const std::string &name, const std::string &lldp, const std::string &active = "act") {
    const std::string settings =
        lldp.empty() ? "" : "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\">" + lldp + "</lldp>";
    return element("interface-configuration",
                   element("active", active) + element("interface-name", name) + settings);
}

const std::string on = element("enable", "true");
const std::string off = element("enable", "false");
const std::string no_transmit = element("transmit", element("disable", "true"));
const std::string no_receive = element("receive", element("disable", "true"));
const std::string global_on = native_configuration(on);
const std::string global_off = native_configuration(off);

WantedSettings wanted(const std::string &configuration) {
    const yang::DataTree data = native_data(configuration);
    return lldpd::wanted_settings(data.get());
}

TEST(NoConfiguration, WantsNoLldp) {
    EXPECT_FALSE(lldpd::wanted_settings(nullptr).runs);
    EXPECT_EQ(lldpd::wanted_settings(nullptr).of_port("eth1"), silent);
}

// --- where LLDP runs ---

struct SwitchCase {
    const char *name;
    std::string configuration;
    bool runs;
    PortStatus eth1, eth2;
};

class Switches : public testing::TestWithParam<SwitchCase> {};

TEST_P(Switches, SayWhereLldpRuns) {
    const WantedSettings settings = wanted(GetParam().configuration);
    EXPECT_EQ(settings.runs, GetParam().runs);
    for (const auto &[port, status] :
         {std::pair("eth1", GetParam().eth1), std::pair("eth2", GetParam().eth2)}) {
        EXPECT_EQ(settings.of_port(port).transmits, status.transmits) << port;
        EXPECT_EQ(settings.of_port(port).receives, status.receives) << port;
    }
}

INSTANTIATE_TEST_SUITE_P(AreGlobal, Switches,
                         testing::Values(SwitchCase{"On", global_on, true, both, both},
                                         SwitchCase{"Off", global_off, false, silent, silent},
                                         SwitchCase{"Absent", native_configuration(element("timer", "30")),
                                                    false, silent, silent}),
                         [](const auto &named) { return named.param.name; });

INSTANTIATE_TEST_SUITE_P(
    OfInterfacesUnderOn, Switches,
    testing::Values(
        SwitchCase{"Enabled", global_on + interfaces(interface("eth1", on)), true, both, both},
        SwitchCase{"Disabled", global_on + interfaces(interface("eth1", off)), true, silent, both},
        SwitchCase{"DisabledBothWays",
                   global_on + interfaces(interface("eth1", off + no_transmit + no_receive)), true, silent,
                   both},
        SwitchCase{"WithoutTransmit", global_on + interfaces(interface("eth1", no_transmit)), true, listens,
                   both},
        SwitchCase{"WithoutReceive", global_on + interfaces(interface("eth1", no_receive)), true, sends, both},
        SwitchCase{"WithoutEither", global_on + interfaces(interface("eth1", no_transmit + no_receive)), true,
                   silent, both},
        SwitchCase{"EnabledWithoutTransmit", global_on + interfaces(interface("eth1", on + no_transmit)), true,
                   listens, both},
        SwitchCase{"WhoseDisablesAreFalse",
                   global_on +
                       interfaces(interface("eth1", element("transmit", element("disable", "false")) +
                                                        element("receive", element("disable", "false")))),
                   true, both, both},
        SwitchCase{"WithoutLldp", global_on + interfaces(interface("eth1", "")), true, both, both},
        SwitchCase{"OnDifferentPorts",
                   global_on + interfaces(interface("eth1", no_transmit) + interface("eth2", no_receive)), true,
                   listens, sends},
        SwitchCase{"OfHardwareThatIsNotThere", global_on + interfaces(interface("eth1", no_transmit, "pre")),
                   true, both, both}),
    [](const auto &named) { return named.param.name; });

INSTANTIATE_TEST_SUITE_P(
    OfInterfacesUnderOff, Switches,
    testing::Values(SwitchCase{"Enabled", interfaces(interface("eth1", on)), true, both, silent},
                    SwitchCase{"EnabledBesideAFalseSwitch", global_off + interfaces(interface("eth1", on)),
                               true, both, silent},
                    SwitchCase{"EnabledWithoutTransmit", interfaces(interface("eth1", on + no_transmit)), true,
                               listens, silent},
                    SwitchCase{"EnabledWithoutReceive", interfaces(interface("eth1", on + no_receive)), true,
                               sends, silent},
                    SwitchCase{"Disabled", interfaces(interface("eth1", off)), false, silent, silent},
                    SwitchCase{"WithoutTransmit", interfaces(interface("eth1", no_transmit)), false, silent,
                               silent},
                    SwitchCase{"Both", interfaces(interface("eth1", on) + interface("eth2", on + no_receive)),
                               true, both, sends},
                    SwitchCase{"OfHardwareThatIsNotThere", interfaces(interface("eth1", on, "pre")), false,
                               silent, silent}),
    [](const auto &named) { return named.param.name; });

TEST(InterfacesWithoutSettings, AreMeantByTheGlobalSwitchAlone) {
    EXPECT_TRUE(wanted(global_on).everywhere);
    EXPECT_FALSE(wanted(interfaces(interface("eth1", on))).everywhere);
    EXPECT_EQ(wanted(global_on + interfaces(interface("eth1", on) + interface("eth2", ""))).ports.count("eth2"),
              0U);
}

// --- what is announced ---

TEST(TextsAndNumbers, AreWantedAsTheyAreConfigured) {
    const WantedSettings settings =
        wanted(native_configuration(on + element("timer", "65534") + element("system-name", "r1 &amp; more") +
                                    element("system-description", "caf\xc3\xa9") +
                                    element("chassis-id", "rack 4") + element("chassis-id-type", "local")));
    EXPECT_EQ(settings.transmit_interval, 65534U);
    EXPECT_EQ(settings.system_name, "r1 & more");
    EXPECT_EQ(settings.system_description, "caf\xc3\xa9");
    EXPECT_EQ(settings.chassis_id, "rack 4");
}

TEST(TextsAndNumbers, ThatAreNotConfiguredAreNotWanted) {
    const WantedSettings settings = wanted(global_on);
    EXPECT_EQ(settings.transmit_interval, std::nullopt);
    EXPECT_EQ(settings.system_name, std::nullopt);
    EXPECT_EQ(settings.system_description, std::nullopt);
    EXPECT_EQ(settings.chassis_id, std::nullopt);
}

std::string selection(const std::string &tlv, const std::string &disable) {
    return native_configuration(on + element("tlv-select", element("tlv-select-enter", "true") +
                                                               element(tlv, element("disable", disable))));
}

TEST(CapabilitiesAndAddresses, AreAnnouncedUnlessTheyAreDisabled) {
    EXPECT_TRUE(wanted(global_on).advertises_capabilities);
    EXPECT_TRUE(wanted(global_on).advertises_addresses);
    const WantedSettings no_capabilities = wanted(selection("system-capabilities", "true"));
    EXPECT_FALSE(no_capabilities.advertises_capabilities);
    EXPECT_TRUE(no_capabilities.advertises_addresses);
    const WantedSettings no_addresses = wanted(selection("management-address", "true"));
    EXPECT_TRUE(no_addresses.advertises_capabilities);
    EXPECT_FALSE(no_addresses.advertises_addresses);
    EXPECT_TRUE(wanted(selection("system-capabilities", "false")).advertises_capabilities);
    EXPECT_TRUE(wanted(selection("management-address", "false")).advertises_addresses);
}

TEST(ATlvThatIsNotDisabled, MayBeNamed) {
    for (const char *tlv : {"system-name", "system-description", "port-description"})
        EXPECT_TRUE(wanted(selection(tlv, "false")).runs) << tlv;
}

// --- what lldpd cannot do ---

struct RefusedCase {
    const char *name;
    std::string configuration;
    const char *path; // of the node, below its module
};

class WhatLldpdCannotDo : public testing::TestWithParam<RefusedCase> {};

TEST_P(WhatLldpdCannotDo, IsRefusedAtItsNode) {
    try {
        wanted(GetParam().configuration);
        FAIL() << "the configuration was accepted";
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), ErrorTag::operation_not_supported) << error.what();
        EXPECT_THAT(error.path(), std::string("/Tarvo-QD-ethernet-lldp-cfg:") + GetParam().path);
        EXPECT_THAT(error.what(), testing::Not(testing::HasSubstr("\n")));
    }
}

std::string chassis(const std::string &kind) {
    return native_configuration(on + element("chassis-id", "x") + element("chassis-id-type", kind));
}

INSTANTIATE_TEST_SUITE_P(
    ToLeaveOut, WhatLldpdCannotDo,
    testing::Values(RefusedCase{"TheSystemName", selection("system-name", "true"),
                                "lldp/tlv-select/system-name/disable"},
                    RefusedCase{"TheSystemDescription", selection("system-description", "true"),
                                "lldp/tlv-select/system-description/disable"},
                    RefusedCase{"ThePortDescription", selection("port-description", "true"),
                                "lldp/tlv-select/port-description/disable"}),
    [](const auto &named) { return named.param.name; });

INSTANTIATE_TEST_SUITE_P(
    AnIdentifierOf, WhatLldpdCannotDo,
    testing::Values(RefusedCase{"AChassisComponent", chassis("chassis-component"), "lldp/chassis-id-type"},
                    RefusedCase{"AnInterfaceAlias", chassis("interface-alias"), "lldp/chassis-id-type"},
                    RefusedCase{"APortComponent", chassis("port-component"), "lldp/chassis-id-type"},
                    RefusedCase{"AMacAddress", chassis("mac-address"), "lldp/chassis-id-type"},
                    RefusedCase{"ANetworkAddress", chassis("network-address"), "lldp/chassis-id-type"},
                    RefusedCase{"AnInterfaceName", chassis("interface-name"), "lldp/chassis-id-type"}),
    [](const auto &named) { return named.param.name; });

INSTANTIATE_TEST_SUITE_P(
    ToKeepTime, WhatLldpdCannotDo,
    testing::Values(
        RefusedCase{"OfHolding", native_configuration(on + element("holdtime", "77")), "lldp/holdtime"},
        RefusedCase{"OfReinitialization", native_configuration(on + element("reinit", "77")), "lldp/reinit"}),
    [](const auto &named) { return named.param.name; });

} // namespace
} // namespace yfw::sources::test

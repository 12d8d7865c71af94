// Settings that lldpcli changes on a running lldpd: an edit of others leaves them, a restoration puts them
// right.
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "native_modules.h"
#include "sources/lldpd/lldpd_source.h"
#include "sources/lldpd/reader.h"
#include "sources/lldpd/settings_writer.h"
#include "support/native_xml.h"
#include "two_routers.h"

namespace yfw::sources::test {
namespace {

using yfw::test::element;
using yfw::test::native_configuration;
using Words = std::vector<std::string>;

const std::string on = element("enable", "true");
const std::string no_receive = element("receive", element("disable", "true"));
// What the daemon is configured with before it is changed by hand, and an edit of something else.
const std::string settings = on + element("timer", "20") + element("system-name", "configured") +
                             element("tlv-select", element("management-address", element("disable", "true")));
const std::string edited = element("system-description", "edited");

// What lldpcli changes, and what shows it.
struct ByHand {
    const char *name;
    Words words;
    std::function<std::string()> shown;
    std::string now, configured;
};

void PrintTo(const ByHand &by_hand, std::ostream *to) {
    *to << by_hand.name;
}

class SettingsByHand : public TwoRouters {
public: // for the cases
    using TwoRouters::setting;
    using TwoRouters::status;
    static std::string socket() { return lab().socket("a"); }
    // What lldpcli does not show.
    static lldpd::DaemonSettings all() { return lldpd::read_settings(lldpd::Connection(lab().socket("a"))); }
};

class ASettingByHand : public SettingsByHand, public testing::WithParamInterface<ByHand> {
protected:
    void SetUp() override {
        SettingsByHand::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        restore(native_configuration(settings));
        ASSERT_EQ(GetParam().shown(), GetParam().configured);
        lldpcli(GetParam().words);
        ASSERT_EQ(GetParam().shown(), GetParam().now);
    }
};

TEST_P(ASettingByHand, StaysWhenAnotherLeafIsEdited) {
    apply(native_configuration(settings), native_configuration(settings + edited));
    EXPECT_EQ(setting("description"), "edited");
    EXPECT_EQ(GetParam().shown(), GetParam().now);
}

TEST_P(ASettingByHand, StaysWhenAnotherInterfaceIsEdited) {
    apply(native_configuration(settings), with_interface(settings, "eth2", on + no_receive));
    EXPECT_EQ(status("eth2"), "TX only");
    EXPECT_EQ(GetParam().shown(), GetParam().now);
}

TEST_P(ASettingByHand, StaysWhenAnEditOfAnotherLeafIsTakenBack) {
    apply(native_configuration(settings), native_configuration(settings + edited));
    apply(native_configuration(settings + edited), native_configuration(settings));
    EXPECT_EQ(setting("description"), "(none)");
    EXPECT_EQ(GetParam().shown(), GetParam().now);
}

TEST_P(ASettingByHand, IsAsConfiguredAfterARestoration) {
    restore(native_configuration(settings));
    EXPECT_EQ(GetParam().shown(), GetParam().configured);
}

std::string setting_of(const char *name) {
    return SettingsByHand::setting(name);
}

std::string yes_or_no(bool flag) {
    return flag ? "yes" : "no";
}

INSTANTIATE_TEST_SUITE_P(
    Of, ASettingByHand,
    testing::Values(
        ByHand{"TheInterval",
               {"configure", "lldp", "tx-interval", "40"},
               [] { return setting_of("tx-delay"); },
               "40",
               "20"},
        ByHand{"TheSystemName",
               {"configure", "system", "hostname", "by hand"},
               [] { return setting_of("hostname"); },
               "by hand",
               "configured"},
        ByHand{"TheChassisId",
               {"configure", "system", "chassisid", "by hand"},
               [] { return setting_of("cid-string"); },
               "by hand",
               "(none)"},
        ByHand{"ThePause", {"pause"}, [] { return yes_or_no(SettingsByHand::all().paused); }, "yes", "no"},
        ByHand{"TheManagementAddresses",
               {"configure", "lldp", "management-addresses-advertisements"},
               [] { return yes_or_no(SettingsByHand::all().advertises_addresses); },
               "yes",
               "no"},
        ByHand{"APort",
               {"configure", "ports", "eth1", "lldp", "status", "rx-only"},
               [] { return SettingsByHand::status("eth1"); },
               "RX only",
               "RX and TX"}),
    [](const auto &named) { return named.param.name; });

// --- what a restoration would write ---

using Pending = std::vector<PendingSetting>;

Pending pending(const std::string &configuration) {
    return lldpd::LldpdSource(SettingsByHand::socket()).pending(native_data(configuration).get());
}

const std::string lldp = "/Tarvo-QD-ethernet-lldp-cfg:lldp/";

std::string of_port(const std::string &name, const std::string &leaf) {
    return "/Tarvo-QD-ifmgr-cfg:interface-configurations/"
           "interface-configuration[active='act'][interface-name='" +
           name + "']/Tarvo-QD-ethernet-lldp-cfg:lldp/" + leaf;
}

TEST_F(SettingsByHand, AreNotPendingAfterARestoration) {
    restore(native_configuration(settings));
    EXPECT_THAT(pending(native_configuration(settings)), testing::IsEmpty());
}

TEST_F(SettingsByHand, ArePendingAsNativeLeaves) {
    restore(native_configuration(settings));
    lldpcli({"configure", "system", "hostname", "by hand"});
    lldpcli({"configure", "lldp", "tx-interval", "40"});
    lldpcli({"configure", "lldp", "management-addresses-advertisements"});
    lldpcli({"pause"});
    lldpcli({"configure", "ports", "eth1", "lldp", "status", "rx-only"});
    lldpcli({"configure", "ports", "eth2", "lldp", "status", "tx-only"});
    EXPECT_THAT(pending(native_configuration(settings)),
                testing::UnorderedElementsAre(
                    PendingSetting{lldp + "enable", "true", "false"},
                    PendingSetting{lldp + "timer", "20", "40"},
                    PendingSetting{lldp + "system-name", "configured", "by hand"},
                    PendingSetting{lldp + "tlv-select/management-address/disable", "true", std::nullopt},
                    PendingSetting{of_port("eth1", "transmit/disable"), std::nullopt, "true"},
                    PendingSetting{of_port("eth2", "receive/disable"), std::nullopt, "true"}));
    EXPECT_EQ(setting("hostname"), "by hand") << "it was written";
}

TEST_F(SettingsByHand, OfAnIntervalAreNotWantedWhereNoneIsConfigured) {
    restore(native_configuration(on + element("timer", "20")));
    EXPECT_THAT(pending(native_configuration(on)),
                testing::ElementsAre(PendingSetting{lldp + "timer", std::nullopt, "20"}));
}

// --- the edit's own settings ---

TEST_F(SettingsByHand, GiveWayToTheEditThatIsMadeOfThem) {
    restore(native_configuration(settings));
    lldpcli({"configure", "system", "hostname", "by hand"});
    lldpcli({"configure", "lldp", "tx-interval", "3"});
    apply(native_configuration(settings), native_configuration(on));
    EXPECT_EQ(setting("hostname"), "(none)");
    EXPECT_EQ(setting("tx-delay"), "30");
}

TEST_F(SettingsByHand, OfPortsGiveWayWhenLldpIsSwitchedOn) {
    const std::string off = native_configuration(element("enable", "false"));
    restore(off);
    lldpcli({"configure", "ports", "eth1", "lldp", "status", "rx-only"});
    apply(off, native_configuration(on));
    EXPECT_EQ(status("eth1"), "RX and TX");
}

TEST_F(SettingsByHand, StayWhenTheyAreMadeJustBeforeAnEditIsWritten) {
    restore(native_configuration(settings));
    const lldpd::Connection connection(lab().socket("a"));
    lldpd::SettingsWriter writer(connection);
    lldpcli({"configure", "system", "hostname", "by hand"});
    lldpd::WantedSettings before, after;
    after.system_description = "edited";
    writer.apply(before, after);
    EXPECT_EQ(setting("description"), "edited");
    EXPECT_EQ(setting("hostname"), "by hand");
}

} // namespace
} // namespace yfw::sources::test

// Applies native configurations to a running lldpd and checks them with lldpcli, on the daemon and on its
// neighbor.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/error.h"
#include "native_modules.h"
#include "sources/lldpd/lldpd_source.h"
#include "support/answers.h"
#include "support/eventually.h"
#include "support/native_xml.h"
#include "two_routers.h"

namespace yfw::sources::test {
namespace {

using yfw::test::element;
using yfw::test::eventually;
using yfw::test::native_configuration;

const std::string on = element("enable", "true");
const std::string no_transmit = element("transmit", element("disable", "true"));
const std::string no_receive = element("receive", element("disable", "true"));

class AConfiguration : public TwoRouters {};

TEST_F(AConfiguration, OfTransmissionAloneIsHeardByTheNeighborAndHearsNothing) {
    ASSERT_TRUE(eventually([] { return hears("a", "eth1") && hears("b", "eth1"); }));
    apply(native_configuration(on), with_interface(on, "eth1", on + no_receive));
    EXPECT_EQ(status("eth1"), "TX only");
    EXPECT_EQ(status("eth2"), "RX and TX");
    EXPECT_TRUE(eventually([] { return !hears("a", "eth1"); }));
    EXPECT_TRUE(hears("b", "eth1"));
}

TEST_F(AConfiguration, OfReceptionAloneHearsTheNeighborAndIsNotHeard) {
    ASSERT_TRUE(eventually([] { return hears("a", "eth1") && hears("b", "eth1"); }));
    apply(native_configuration(on), with_interface(on, "eth1", on + no_transmit));
    EXPECT_EQ(status("eth1"), "RX only");
    EXPECT_TRUE(eventually([] { return !hears("b", "eth1"); }));
    EXPECT_TRUE(hears("a", "eth1"));
    EXPECT_TRUE(hears("b", "eth2"));
}

TEST_F(AConfiguration, OfOneInterfaceUnderNoGlobalLldpIsOfThatInterfaceAlone) {
    apply(native_configuration(on), with_interface("", "eth2", on));
    EXPECT_EQ(status("eth2"), "RX and TX");
    EXPECT_EQ(status("eth1"), "disabled");
    EXPECT_TRUE(eventually([] { return !hears("b", "eth1") && hears("b", "eth2"); }));
}

// Removing an interface's settings may leave their container behind.
TEST_F(AConfiguration, OfAnInterfaceThatIsGoneMayLeaveNothingOfItsSettings) {
    EXPECT_NO_THROW(apply(native_configuration(on), with_interface(on, "eth9", "")));
    EXPECT_THROW(apply(native_configuration(on), with_interface(on, "eth9", on)), Error);
}

TEST_F(AConfiguration, WithoutLldpPausesTheDaemon) {
    apply(native_configuration(on), native_configuration(element("enable", "false")));
    EXPECT_TRUE(eventually([] { return !hears("b", "eth1") && !hears("b", "eth2"); }));
    apply(native_configuration(element("enable", "false")), native_configuration(on));
    EXPECT_TRUE(eventually([] { return hears("b", "eth1") && hears("b", "eth2"); }));
}

TEST_F(AConfiguration, OfTextsIsAnnounced) {
    const std::string after =
        native_configuration(on + element("timer", "5") + element("system-name", "a &amp; \"more\"") +
                             element("system-description", "caf\xc3\xa9") + element("chassis-id", "rack 4") +
                             element("chassis-id-type", "local"));
    apply(native_configuration(on), after);
    // The texts may arrive in several frames.
    EXPECT_TRUE(eventually([] { return chassis_heard() == "local rack 4, a & \"more\", caf\xc3\xa9"; }))
        << chassis_heard();
    // Without them the daemon returns to its defaults.
    apply(after, native_configuration(on));
    EXPECT_EQ(setting("hostname"), "(none)");
    EXPECT_EQ(setting("description"), "(none)");
    EXPECT_EQ(setting("cid-string"), "(none)");
    EXPECT_TRUE(eventually([] { return chassis_heard().starts_with("mac "); })) << chassis_heard();
}

TEST_F(AConfiguration, OfTheTimerIsTheInterval) {
    const std::string timed = native_configuration(on + element("timer", "5"));
    apply(native_configuration(on), timed);
    EXPECT_EQ(setting("tx-delay"), "5");
    apply(timed, native_configuration(on));
    EXPECT_NE(setting("tx-delay"), "5");
}

TEST_F(AConfiguration, WithoutATimerLeavesTheDaemonItsOwnInterval) {
    const std::string own = std::to_string(yfw::test::lab_interval);
    ASSERT_EQ(setting("tx-delay"), own);
    apply(native_configuration(on), native_configuration(on + element("system-name", "x")));
    EXPECT_EQ(setting("tx-delay"), own);
}

TEST_F(AConfiguration, OfTlvsLeavesThemOutOfTheFrames) {
    lab().ip("a", {"address", "add", "192.0.2.77/24", "dev", "eth1"});
    const auto announces = [](const char *what) {
        const auto heard = lab().neighbors("b", "eth1");
        return heard.size() == 1 && heard.front().at("/chassis/0"_json_pointer).contains(what);
    };
    ASSERT_TRUE(eventually([&] { return announces("capability") && announces("mgmt-ip"); }));
    const std::string without = native_configuration(
        on + element("tlv-select", element("system-capabilities", element("disable", "true")) +
                                       element("management-address", element("disable", "true"))));
    apply(native_configuration(on), without);
    EXPECT_TRUE(eventually([&] { return !announces("capability") && !announces("mgmt-ip"); }));
    apply(without, native_configuration(on));
    EXPECT_TRUE(eventually([&] { return announces("capability") && announces("mgmt-ip"); }));
}

TEST_F(AConfiguration, ThatNamesAnUnknownInterfaceIsRefusedAndChangesNothing) {
    const nlohmann::json settings = lab().ask("a", {"configuration"});
    const std::string after =
        with_interface(on + element("system-name", "changed") + element("timer", "7"), "eth9", on + no_receive);
    const yang::DataTree from = native_data(native_configuration(on)), to = native_data(after);
    EXPECT_THROW(device().check(from.get(), to.get()), Error);
    EXPECT_EQ(lab().ask("a", {"configuration"}), settings);
    EXPECT_EQ(status("eth1"), "RX and TX");
}

TEST_F(AConfiguration, ThatIsCheckedIsNotApplied) {
    const nlohmann::json settings = lab().ask("a", {"configuration"});
    const yang::DataTree from = native_data(native_configuration(on)),
                         to = native_data(
                             with_interface(on + element("system-name", "changed"), "eth1", no_receive));
    device().check(from.get(), to.get());
    EXPECT_EQ(lab().ask("a", {"configuration"}), settings);
    EXPECT_EQ(status("eth1"), "RX and TX");
}

TEST_F(AConfiguration, ThatIsRestoredHoldsWhateverTheDaemonRunsNow) {
    const std::string wanted = with_interface(on + element("system-name", "restored"), "eth1", on + no_receive);
    restore(wanted);
    lab().configure("a", {"system", "hostname", "by hand"});
    lab().configure("a", {"ports", "eth1", "lldp", "status", "disabled"});
    lab().configure("a", {"ports", "eth2", "lldp", "status", "rx-only"});
    restore(wanted);
    EXPECT_EQ(setting("hostname"), "restored");
    EXPECT_EQ(status("eth1"), "TX only");
    EXPECT_EQ(status("eth2"), "RX and TX");
}

// What a port does is told by the daemon, whoever configured it.
TEST_F(AConfiguration, OfAPortThatWasMadeByHandIsInTheNativeData) {
    struct Status {
        const char *words, *transmits, *receives;
    };
    for (const Status &made : {Status{"rx-only", "0", "1"},
                               {"tx-only", "1", "0"},
                               {"disabled", "0", "0"},
                               {"rx-and-tx", "1", "1"}}) {
        lldpcli({"configure", "ports", "eth1", "lldp", "status", made.words});
        const yang::DataTree data = device().read(native_modules());
        const std::string port =
            "/Tarvo-QD-ethernet-lldp-oper:lldp/nodes/node/interfaces/interface[interface-name='eth1']/";
        EXPECT_THAT(yfw::test::values_at(data.get(), port + "tx-enabled"), testing::ElementsAre(made.transmits))
            << made.words;
        EXPECT_THAT(yfw::test::values_at(data.get(), port + "rx-enabled"), testing::ElementsAre(made.receives))
            << made.words;
    }
}

} // namespace
} // namespace yfw::sources::test

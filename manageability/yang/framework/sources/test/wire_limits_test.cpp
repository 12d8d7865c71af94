// Values that lldpd takes and LLDP cannot carry: refused before anything changes.
#include <functional>
#include <ostream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/error.h"
#include "native_modules.h"
#include "sources/lldpd/wire_limits.h"
#include "support/eventually.h"
#include "support/native_xml.h"
#include "two_routers.h"

namespace yfw::sources::test {
namespace {

using lldpd::WantedSettings;
using yfw::test::element;
using yfw::test::eventually;
using yfw::test::native_configuration;

const std::string on = element("enable", "true");

std::string octets(size_t count) {
    return std::string(count, 'x');
}

// Characters of two octets each.
std::string wide(size_t characters) {
    std::string text;
    for (size_t i = 0; i < characters; i++)
        text += "\xc3\xa9";
    return text;
}

std::string chassis_id(const std::string &text) {
    return element("chassis-id", text) + element("chassis-id-type", "local");
}

std::string path_of(const std::string &leaf) {
    return "/Tarvo-QD-ethernet-lldp-cfg:lldp/" + leaf;
}

// Where the error is, and that it says why; empty when there is none.
std::string refused_at(const std::function<void()> &work) {
    try {
        work();
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), ErrorTag::invalid_value);
        EXPECT_THAT(error.what(), testing::ContainsRegex("255 octets|65535 seconds"));
        EXPECT_THAT(error.what(), testing::Not(testing::HasSubstr("\n")));
        return error.path();
    }
    return "";
}

WantedSettings settings(const std::string &global) {
    const yang::DataTree data = native_data(native_configuration(on + global));
    return lldpd::wanted_settings(data.get());
}

struct LimitCase {
    const char *name;
    std::string settings;
    uint32_t hold_multiplier = 4;
    const char *leaf = ""; // that cannot be carried
};

void PrintTo(const LimitCase &limit, std::ostream *to) {
    *to << limit.name;
}

class Lldp : public testing::TestWithParam<LimitCase> {};

TEST_P(Lldp, CarriesAValueOrTheEditIsRefusedAtItsLeaf) {
    const LimitCase &limit = GetParam();
    const std::string at = refused_at([&] {
        lldpd::refuse_what_lldp_cannot_carry(settings(""), settings(limit.settings), limit.hold_multiplier);
    });
    EXPECT_EQ(at, *limit.leaf != '\0' ? path_of(limit.leaf) : "");
}

TEST_P(Lldp, DoesNotHoldUpAnEditOfSomethingElse) {
    EXPECT_NO_THROW(lldpd::refuse_what_lldp_cannot_carry(
        settings(GetParam().settings),
        settings(GetParam().settings +
                 element("tlv-select", element("management-address", element("disable", "true")))),
        GetParam().hold_multiplier));
}

TEST_P(Lldp, GetsWhatItCanCarryOfAStoredConfiguration) {
    const LimitCase &limit = GetParam();
    const WantedSettings stored = settings(limit.settings);
    const WantedSettings rest = lldpd::without_what_lldp_cannot_carry(stored, limit.hold_multiplier);
    const std::string leaf = limit.leaf;
    EXPECT_EQ(rest.system_name, leaf != "system-name" ? stored.system_name : std::nullopt);
    EXPECT_EQ(rest.system_description, leaf != "system-description" ? stored.system_description : std::nullopt);
    EXPECT_EQ(rest.chassis_id, leaf != "chassis-id" ? stored.chassis_id : std::nullopt);
    EXPECT_EQ(rest.transmit_interval, leaf != "timer" ? stored.transmit_interval : std::nullopt);
    EXPECT_TRUE(rest.runs);
}

INSTANTIATE_TEST_SUITE_P(
    ChassisId, Lldp,
    testing::Values(LimitCase{"Empty", chassis_id(""), 4, "chassis-id"},
                    LimitCase{"EmptyWithoutAType", element("chassis-id", ""), 4, "chassis-id"},
                    LimitCase{"OfOneOctet", chassis_id("x")}, LimitCase{"Of255Octets", chassis_id(octets(255))},
                    LimitCase{"Of256Octets", chassis_id(octets(256)), 4, "chassis-id"},
                    LimitCase{"Of254OctetsIn127Characters", chassis_id(wide(127))},
                    LimitCase{"Of256OctetsIn128Characters", chassis_id(wide(128)), 4, "chassis-id"}),
    [](const auto &named) { return named.param.name; });

INSTANTIATE_TEST_SUITE_P(
    SystemName, Lldp,
    testing::Values(LimitCase{"Empty", element("system-name", "")},
                    LimitCase{"Of255Octets", element("system-name", octets(255))},
                    LimitCase{"Of256Octets", element("system-name", octets(256)), 4, "system-name"},
                    LimitCase{"Of254OctetsIn127Characters", element("system-name", wide(127))},
                    LimitCase{"Of256OctetsIn128Characters", element("system-name", wide(128)), 4,
                              "system-name"}),
    [](const auto &named) { return named.param.name; });

INSTANTIATE_TEST_SUITE_P(SystemDescription, Lldp,
                         testing::Values(LimitCase{"Empty", element("system-description", "")},
                                         LimitCase{"Of255Octets", element("system-description", octets(255))},
                                         LimitCase{"Of256Octets", element("system-description", octets(256)), 4,
                                                   "system-description"},
                                         LimitCase{"Of256OctetsIn128Characters",
                                                   element("system-description", wide(128)), 4,
                                                   "system-description"}),
                         [](const auto &named) { return named.param.name; });

// A time to live of 65535 seconds is the longest.
INSTANTIATE_TEST_SUITE_P(
    Timer, Lldp,
    testing::Values(LimitCase{"Of16383SecondsHeldFourTimes", element("timer", "16383")},
                    LimitCase{"Of16384SecondsHeldFourTimes", element("timer", "16384"), 4, "timer"},
                    LimitCase{"Of65534SecondsHeldFourTimes", element("timer", "65534"), 4, "timer"},
                    LimitCase{"Of65534SecondsHeldOnce", element("timer", "65534"), 1},
                    LimitCase{"Of5SecondsHeld13107Times", element("timer", "5"), 13107},
                    LimitCase{"Of5SecondsHeld13108Times", element("timer", "5"), 13108, "timer"},
                    LimitCase{"Of65534SecondsHeldAsOftenAsANumberCanSay", element("timer", "65534"),
                              4294967295U, "timer"}),
    [](const auto &named) { return named.param.name; });

TEST(ATimer, IsNotTakenAwayWhereTheUsualIntervalIsHeldTooLong) {
    EXPECT_EQ(refused_at([] {
                  lldpd::refuse_what_lldp_cannot_carry(settings(element("timer", "5")), settings(""), 3000);
              }),
              path_of("timer"));
}

// --- on a running daemon ---

class AnLldpdWithANeighbor : public TwoRouters {
protected:
    void TearDown() override {
        if (!IsSkipped())
            lldpcli({"configure", "lldp", "tx-hold", "4"});
        TwoRouters::TearDown();
    }

    static void expect_refused(const std::string &global, const std::string &leaf) {
        const nlohmann::json before = lab().ask("a", {"configuration"});
        const std::string after = native_configuration(on + element("enable-subintf", "false") + global);
        EXPECT_EQ(refused_at([&] { check(native_configuration(on), after); }), path_of(leaf));
        EXPECT_EQ(refused_at([&] { apply(native_configuration(on), after); }), path_of(leaf));
        EXPECT_EQ(lab().ask("a", {"configuration"}), before);
    }
    static std::string time_to_live_heard() {
        for (const nlohmann::json &neighbor : lab().neighbors("b", "eth1"))
            return neighbor.value(nlohmann::json::json_pointer("/port/0/ttl/0/value"), "");
        return "";
    }
};

TEST_F(AnLldpdWithANeighbor, IsNotGivenWhatItsNeighborsWouldNotTake) {
    expect_refused(chassis_id(""), "chassis-id");
    expect_refused(chassis_id(octets(256)), "chassis-id");
    expect_refused(chassis_id(wide(128)), "chassis-id");
    expect_refused(element("system-name", wide(128)), "system-name");
    expect_refused(element("system-description", wide(128)), "system-description");
    expect_refused(element("timer", "16384"), "timer");
}

TEST_F(AnLldpdWithANeighbor, IsGivenNothingOfAnEditThatHoldsSuchAValue) {
    expect_refused(element("timer", "7") + element("system-name", "changed") + chassis_id(octets(256)),
                   "chassis-id");
}

TEST_F(AnLldpdWithANeighbor, IsHeardWithTheLongestTextsAndTime) {
    apply(native_configuration(on),
          native_configuration(on + element("timer", "16383") + element("system-name", octets(255)) +
                               element("system-description", wide(127) + "x") + chassis_id(octets(255))));
    const std::string expected = "local " + octets(255) + ", " + octets(255) + ", " + wide(127) + "x";
    EXPECT_TRUE(eventually([&] { return chassis_heard() == expected; })) << chassis_heard();
    EXPECT_EQ(time_to_live_heard(), "65532");
}

TEST_F(AnLldpdWithANeighbor, IsAskedHowOftenItHoldsTheInterval) {
    lldpcli({"configure", "lldp", "tx-hold", "8"});
    expect_refused(element("timer", "8192"), "timer");
    apply(native_configuration(on), native_configuration(on + element("timer", "8191")));
    EXPECT_TRUE(eventually([] { return time_to_live_heard() == "65528"; })) << time_to_live_heard();
}

TEST_F(AnLldpdWithANeighbor, IsHeardWhenAConfigurationThatHoldsSuchValuesIsRestored) {
    restore(native_configuration(on + element("system-name", "stored") + element("timer", "65534") +
                                 element("system-description", octets(600)) + chassis_id("")));
    EXPECT_EQ(setting("hostname"), "stored");
    EXPECT_TRUE(eventually([] {
        const std::string heard = chassis_heard();
        return heard.starts_with("mac ") && heard.find(", stored, ") != std::string::npos;
    })) << chassis_heard();
}

} // namespace
} // namespace yfw::sources::test

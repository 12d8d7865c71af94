// A daemon's settings as native configuration, which gives the same settings when it is applied.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "native_modules.h"
#include "sources/lldpd/native_data.h"
#include "sources/lldpd/wanted_settings.h"
#include "support/answers.h"

namespace yfw::sources::test {
namespace {

using lldpd::State;
using lldpd::WantedSettings;
using testing::ElementsAre;

// Two ports, both with LLDP.
State running_state() {
    State state = state_of({});
    state.ports.push_back(state.ports.front());
    state.ports.back().name = "eth2";
    return state;
}

std::vector<std::string> configured(const State &state, const std::string &xpath) {
    const yang::DataTree data = lldpd::configuration_data(native_modules(), state);
    return yfw::test::values_at(data.get(), "/Tarvo-QD-ethernet-lldp-cfg:lldp" + xpath);
}

WantedSettings configured_again(const State &state) {
    const yang::DataTree data = lldpd::configuration_data(native_modules(), state);
    EXPECT_EQ(fault_of(data), "");
    return lldpd::wanted_settings(data.get());
}

TEST(AnInterval, IsConfiguredWhereTheNativeTimerHoldsIt) {
    for (const auto &[seconds, held] : {std::pair{1U, false},
                                        {4U, false},
                                        {5U, true},
                                        {30U, true},
                                        {65534U, true},
                                        {65535U, false},
                                        {4294967295U, false}}) {
        State state = running_state();
        state.settings.transmit_interval = seconds;
        EXPECT_EQ(configured(state, "/timer").size(), held ? 1U : 0U) << seconds;
        EXPECT_EQ(configured_again(state).transmit_interval, held ? std::optional(seconds) : std::nullopt);
    }
}

TEST(APausedDaemon, RunsNoLldp) {
    State state = running_state();
    state.settings.paused = true;
    EXPECT_FALSE(configured_again(state).runs);
}

TEST(ARunningDaemon, RunsOnItsPortsAsTheyAre) {
    for (const lldpd::PortStatus status :
         {lldpd::PortStatus{true, true}, {true, false}, {false, true}, {false, false}}) {
        State state = running_state();
        state.ports.front().status = status;
        const WantedSettings wanted = configured_again(state);
        EXPECT_TRUE(wanted.runs);
        EXPECT_EQ(wanted.of_port("eth1").transmits, status.transmits);
        EXPECT_EQ(wanted.of_port("eth1").receives, status.receives);
        EXPECT_EQ(wanted.of_port("eth2"), lldpd::PortStatus{});
    }
}

TEST(TextsThatWereSet, AreConfiguredAsTheyAre) {
    State state = running_state();
    state.settings.system_name = "r1 <of> \"many\" & 'more'";
    state.settings.system_description = "caf\xc3\xa9";
    state.settings.chassis_id = "rack 4";
    const WantedSettings wanted = configured_again(state);
    EXPECT_EQ(wanted.system_name, state.settings.system_name);
    EXPECT_EQ(wanted.system_description, state.settings.system_description);
    EXPECT_EQ(wanted.chassis_id, state.settings.chassis_id);
    EXPECT_THAT(configured(state, "/chassis-id-type"), ElementsAre("local"));
}

// Defaults that the daemon announces are not configuration.
TEST(TextsThatWereNotSet, AreNotConfigured) {
    State state = running_state();
    state.local.name = "host.example.net";
    state.local.description = "Debian";
    for (const char *leaf : {"/system-name", "/system-description", "/chassis-id", "/chassis-id-type"})
        EXPECT_THAT(configured(state, leaf), ElementsAre()) << leaf;
}

TEST(TextsThatWereSetToEmpty, AreConfiguredAsEmptyExceptForTheChassisId) {
    State state = running_state();
    state.settings.system_name = state.settings.system_description = state.settings.chassis_id = "";
    const WantedSettings wanted = configured_again(state);
    EXPECT_EQ(wanted.system_name, "");
    EXPECT_EQ(wanted.system_description, "");
    EXPECT_EQ(wanted.chassis_id, std::nullopt);
}

// lldpcli sets any octets.
TEST(TextsThatNoYangStringHolds, AreLeftOut) {
    for (const char *text : {"\x01", "a\x7f\xff", "\xc3", "\xef\xbf\xbf"}) {
        State state = running_state();
        state.settings.system_name = state.settings.system_description = state.settings.chassis_id = text;
        state.local.name = state.local.description = text;
        state.local.id = text;
        const WantedSettings wanted = configured_again(state);
        EXPECT_EQ(wanted.system_name, std::nullopt);
        EXPECT_EQ(wanted.system_description, std::nullopt);
        EXPECT_EQ(wanted.chassis_id, std::nullopt);
        for (const char *leaf : {"chassis-id", "system-name", "system-description"})
            EXPECT_THAT(operational_values(state, std::string("/global-lldp/lldp-info/") + leaf), ElementsAre());
    }
}

TEST(TextsOfAPausedDaemon, AreConfiguredAsTheyAre) {
    State state = running_state();
    state.settings.paused = true;
    state.settings.system_name = "r1";
    state.settings.chassis_id = "rack 4";
    EXPECT_EQ(configured_again(state).system_name, "r1");
    EXPECT_EQ(configured_again(state).chassis_id, "rack 4");
}

// A mapping takes these to mean that LLDP is on.
TEST(TheIntervalAndTheTlvsOfAPausedDaemon, AreNotConfigured) {
    State state = running_state();
    state.settings.paused = true;
    state.settings.advertises_capabilities = false;
    EXPECT_THAT(configured(state, "/timer"), ElementsAre());
    EXPECT_THAT(configured(state, "/tlv-select//*"), ElementsAre());
    EXPECT_THAT(configured(state, "/enable"), ElementsAre("false"));
}

TEST(WhatIsNotAnnounced, IsConfiguredAsDisabled) {
    for (const bool capabilities : {true, false})
        for (const bool addresses : {true, false}) {
            State state = running_state();
            state.settings.advertises_capabilities = capabilities;
            state.settings.advertises_addresses = addresses;
            const WantedSettings wanted = configured_again(state);
            EXPECT_EQ(wanted.advertises_capabilities, capabilities);
            EXPECT_EQ(wanted.advertises_addresses, addresses);
        }
}

} // namespace
} // namespace yfw::sources::test

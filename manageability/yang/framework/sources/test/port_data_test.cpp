// Ports, counters and the device itself as native operational data.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "native_modules.h"
#include "sources/lldpd/native_data.h"

namespace yfw::sources::test {
namespace {

using lldpd::Counters;
using lldpd::State;
using testing::ElementsAre;
using Strings = std::vector<std::string>;

const std::string interface = "/nodes/node/interfaces/interface";

State state_with_counters(const std::vector<Counters> &counters) {
    State state;
    state.local.id = "00:00:5e:00:53:01";
    for (const Counters &of_port : counters)
        state.ports.push_back({.name = "eth" + std::to_string(state.ports.size() + 1),
                               .status = {},
                               .counters = of_port,
                               .neighbors = {}});
    return state;
}

TEST(Ports, AreTheInterfacesInTheirOrder) {
    State state = state_with_counters({{}, {}});
    state.ports[0].name = "swp10";
    EXPECT_THAT(operational_values(state, interface + "/interface-name"), ElementsAre("swp10", "eth2"));
}

TEST(ADaemon, WithoutPortsHasNoInterfaces) {
    EXPECT_THAT(operational_values(state_with_counters({}), interface + "/interface-name"), ElementsAre());
}

TEST(APort, TellsWhetherItTransmitsAndReceives) {
    for (const bool transmits : {true, false})
        for (const bool receives : {true, false}) {
            State state = state_with_counters({{}});
            state.ports[0].status = {.transmits = transmits, .receives = receives};
            EXPECT_THAT(operational_values(state, interface + "/tx-enabled"),
                        ElementsAre(transmits ? "1" : "0"));
            EXPECT_THAT(operational_values(state, interface + "/rx-enabled"),
                        ElementsAre(receives ? "1" : "0"));
        }
}

TEST(APort, OfADaemonThatReceivesOnlyDoesNotTransmit) {
    State state = state_with_counters({{}});
    state.settings.receives_only = true;
    EXPECT_THAT(operational_values(state, interface + "/tx-enabled"), ElementsAre("0"));
    EXPECT_THAT(operational_values(state, interface + "/rx-enabled"), ElementsAre("1"));
}

TEST(APort, OfADaemonThatIsPausedDoesNeither) {
    State state = state_with_counters({{}});
    state.settings.paused = true;
    EXPECT_THAT(operational_values(state, interface + "/tx-enabled"), ElementsAre("0"));
    EXPECT_THAT(operational_values(state, interface + "/rx-enabled"), ElementsAre("0"));
}

// --- counters ---

struct CounterCase {
    const char *leaf;
    std::optional<uint64_t> Counters::*counter;
    bool of_interfaces; // as well as of the node
};

class ACounter : public testing::TestWithParam<CounterCase> {
protected:
    using Count = std::optional<uint64_t>;

    static Counters counters(Count value) {
        Counters made{.transmitted = 1, .received = 1, .discarded = 1, .unrecognized = 1, .aged_out = 1};
        made.*GetParam().counter = value;
        return made;
    }
    static Strings of_interfaces(const State &state) {
        return operational_values(state, interface + "/interface-stats/" + GetParam().leaf);
    }
    static Strings of_node(const State &state) {
        return operational_values(state, std::string("/nodes/node/statistics/") + GetParam().leaf);
    }
};

TEST_P(ACounter, IsCountedForEachInterfaceAndSummedForTheNode) {
    const State state = state_with_counters({counters(12), counters(0), counters(30)});
    if (GetParam().of_interfaces) {
        EXPECT_THAT(of_interfaces(state), ElementsAre("12", "0", "30"));
    }
    EXPECT_THAT(of_node(state), ElementsAre("42"));
}

TEST_P(ACounter, ThatTheDaemonDoesNotHaveIsAbsent) {
    const State state = state_with_counters({counters({}), counters({})});
    if (GetParam().of_interfaces) {
        EXPECT_THAT(of_interfaces(state), ElementsAre());
    }
    EXPECT_THAT(of_node(state), ElementsAre());
}

TEST_P(ACounter, StartsAgainAfterThirtyTwoBits) {
    constexpr uint64_t turn = 1ULL << 32;
    for (const auto &[counted, shown] : {std::pair<uint64_t, const char *>{turn - 1, "4294967295"},
                                         {turn, "0"},
                                         {turn + 5, "5"},
                                         {7 * turn + 9, "9"},
                                         {~0ULL, "4294967295"}}) {
        const State state = state_with_counters({counters(counted)});
        if (GetParam().of_interfaces) {
            EXPECT_THAT(of_interfaces(state), ElementsAre(shown));
        }
        EXPECT_THAT(of_node(state), ElementsAre(shown));
    }
    EXPECT_THAT(of_node(state_with_counters({counters(turn - 1), counters(2)})), ElementsAre("1"));
}

INSTANTIATE_TEST_SUITE_P(Named, ACounter,
                         testing::Values(CounterCase{"transmitted-packets", &Counters::transmitted, true},
                                         CounterCase{"received-packets", &Counters::received, true},
                                         CounterCase{"discarded-packets", &Counters::discarded, true},
                                         CounterCase{"unrecognized-tl-vs", &Counters::unrecognized, true},
                                         CounterCase{"aged-out-entries", &Counters::aged_out, false}),
                         [](const auto &counter) {
                             std::string name;
                             for (const char c : std::string(counter.param.leaf))
                                 name += c == '-' ? '_' : c;
                             return name;
                         });

// lldpd has none of these counters.
class ACounterThatNoDaemonHas : public testing::TestWithParam<const char *> {};

TEST_P(ACounterThatNoDaemonHas, IsNotInvented) {
    const State state = state_with_counters(
        {{.transmitted = 0, .received = 0, .discarded = 0, .unrecognized = 0, .aged_out = 0}});
    EXPECT_THAT(operational_values(state, "//*[local-name()='" + std::string(GetParam()) + "']"),
                ElementsAre());
}

INSTANTIATE_TEST_SUITE_P(Named, ACounterThatNoDaemonHas,
                         testing::Values("bad-packets", "discarded-tl-vs", "accepted-tl-vs",
                                         "transmit-failures", "last-clear"));

// --- the device itself ---

TEST(TheDevice, TellsOfItselfWhatItAnnounces) {
    State state = state_with_counters({});
    state.local.id_subtype = 7;
    state.local.id = "rack 4";
    state.local.name = "r1.example.net";
    state.local.description = "Router r1";
    const std::string info = "/global-lldp/lldp-info";
    EXPECT_THAT(operational_values(state, info + "/chassis-id"), ElementsAre("rack 4"));
    EXPECT_THAT(operational_values(state, info + "/chassis-id-sub-type"), ElementsAre("7"));
    EXPECT_THAT(operational_values(state, info + "/system-name"), ElementsAre("r1.example.net"));
    EXPECT_THAT(operational_values(state, info + "/system-description"), ElementsAre("Router r1"));
}

TEST(TheDevice, DoesNotTellWhatItDoesNotHave) {
    const State state = state_with_counters({});
    for (const char *leaf : {"chassis-id-sub-type", "system-name", "system-description"})
        EXPECT_THAT(operational_values(state, std::string("/global-lldp/lldp-info/") + leaf), ElementsAre());
}

} // namespace
} // namespace yfw::sources::test

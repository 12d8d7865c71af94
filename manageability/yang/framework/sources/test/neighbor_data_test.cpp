// A neighbor as native data: one test for each thing that it may announce.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "native_modules.h"
#include "sources/lldpd/native_data.h"
#include "sources/lldpd/neighbor_ids.h"
#include "yang/octet_text.h"
#include "yang/test/data_texts.h"

namespace yfw::sources::test {
namespace {

using lldpd::Neighbor;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;
using Strings = std::vector<std::string>;

const std::string detail = "/nodes/node/neighbors/details/detail";

// --- identity ---

TEST(ANeighbor, IsKnownByItsSystemName) {
    EXPECT_EQ(lldpd::device_id(neighbor_named("sw1.example.net")), "sw1.example.net");
    const lldpd::State state = state_of({neighbor_named("sw1.example.net")});
    EXPECT_THAT(operational_values(state, detail + "/interface-name"), ElementsAre("eth1"));
    EXPECT_THAT(operational_values(state, detail + "/device-id"), ElementsAre("sw1.example.net"));
    EXPECT_THAT(operational_values(state, detail + "/lldp-neighbor/device-id"), ElementsAre("sw1.example.net"));
    EXPECT_THAT(operational_values(state, detail + "/lldp-neighbor/detail/system-name"),
                ElementsAre("sw1.example.net"));
    EXPECT_THAT(operational_values(state, detail + "/lldp-neighbor/receiving-interface-name"),
                ElementsAre("eth1"));
}

TEST(ANeighbor, WithoutASystemNameIsKnownAsDisabled) {
    Neighbor nameless = neighbor_named("");
    nameless.chassis.name.reset();
    EXPECT_EQ(lldpd::device_id(nameless), "[DISABLED]");
    const lldpd::State state = state_of({nameless});
    EXPECT_THAT(operational_values(state, detail + "/device-id"), ElementsAre("[DISABLED]"));
    EXPECT_THAT(operational_values(state, detail + "/lldp-neighbor/device-id"), ElementsAre("[DISABLED]"));
    EXPECT_THAT(operational_values(state, detail + "/lldp-neighbor/detail/system-name"), ElementsAre());
}

TEST(ADevice, HeardTwiceOnAnInterfaceIsOneEntryWithTwoAnnouncements) {
    const lldpd::State state = state_of({neighbor_named("sw1", "eth7"), neighbor_named("sw1", "eth8")});
    EXPECT_THAT(operational_values(state, detail + "/device-id"), ElementsAre("sw1"));
    EXPECT_THAT(operational_values(state, detail + "/lldp-neighbor/port-id-detail"),
                ElementsAre("eth7", "eth8"));
}

TEST(Devices, WithoutNamesOnAnInterfaceAreOneEntry) {
    Neighbor first = neighbor_named("", "eth7");
    first.chassis.name.reset();
    Neighbor second = first;
    second.port_id = "eth8";
    const lldpd::State state = state_of({first, neighbor_named("sw1"), second});
    EXPECT_THAT(operational_values(state, detail + "/device-id"),
                testing::UnorderedElementsAre("[DISABLED]", "sw1"));
    EXPECT_THAT(operational_values(state, detail + "[device-id='[DISABLED]']/lldp-neighbor/port-id-detail"),
                ElementsAre("eth7", "eth8"));
}

TEST(ADevice, HeardOnTwoInterfacesIsTwoEntries) {
    lldpd::State state = state_of({neighbor_named("sw1")});
    state.ports.push_back(state.ports.front());
    state.ports.back().name = "eth2";
    EXPECT_THAT(operational_values(state, detail + "/interface-name"), ElementsAre("eth1", "eth2"));
}

TEST(ANeighbor, WhoseNameHasBothKindsOfQuotesIsThere) {
    const lldpd::State state = state_of({neighbor_named("the \"big\" router's [1]/<a>&")});
    EXPECT_THAT(operational_values(state, detail + "/device-id"), ElementsAre("the \"big\" router's [1]/<a>&"));
}

// lldpd passes on any bytes that a neighbor sent. Such a neighbor must not make the rest unreadable.
class ANeighborWhoseNameIsNoText : public testing::TestWithParam<const char *> {};

TEST_P(ANeighborWhoseNameIsNoText, LeavesTheOthersReadable) {
    Neighbor odd = neighbor_named(GetParam(), "eth9");
    odd.chassis.description = GetParam();
    odd.port_description = GetParam();
    const lldpd::State state = state_of({neighbor_named("sw1"), odd});
    EXPECT_THAT(operational_values(state, detail + "[device-id='sw1']/lldp-neighbor/port-id-detail"),
                ElementsAre("eth7"));
    EXPECT_THAT(operational_values(state, detail + "/lldp-neighbor/port-id-detail"),
                testing::UnorderedElementsAre("eth7", "eth9"));
}

// An entry's key appears in paths and documents, which can only contain text.
TEST_P(ANeighborWhoseNameIsNoText, IsKnownByATextAllTheSame) {
    const lldpd::State state = state_of({neighbor_named(GetParam())});
    const yang::DataTree data = lldpd::operational_data(native_modules(), state);
    EXPECT_EQ(fault_of(data), "");
    EXPECT_NO_THROW(native_data(yang::test::xml(data.get())));
}

INSTANTIATE_TEST_SUITE_P(But, ANeighborWhoseNameIsNoText,
                         testing::Values("sw\xff\xfe", "\xc3", "sw\xed\xa0\x80", "\x01\x02", "sw\x7f\x1b[2J"));

// --- announcements ---

TEST(ANeighbor, TellsItsIdentifiersAsTheyAre) {
    Neighbor neighbor = neighbor_named("sw1", "ge-0/0/1.0 \"uplink\"");
    neighbor.chassis.id = "chassis <1>";
    EXPECT_THAT(announcements(neighbor),
                testing::IsSupersetOf(Strings{"chassis-id=chassis <1>", "port-id-detail=ge-0/0/1.0 \"uplink\"",
                                              "hold-time=120"}));
}

TEST(ANeighbor, TellsWhatItsIdentifiersAreMadeFromAsNumbers) {
    for (uint32_t subtype = 1; subtype <= 7; subtype++) {
        Neighbor neighbor = neighbor_named("sw1");
        neighbor.chassis.id_subtype = subtype;
        neighbor.port_id_subtype = 8 - subtype;
        EXPECT_THAT(announcements(neighbor),
                    testing::IsSupersetOf(Strings{"mib/chassis-id-sub-type=" + std::to_string(subtype),
                                                  "mib/port-id-sub-type=" + std::to_string(8 - subtype)}));
    }
}

struct AbsentCase {
    const char *name;
    void (*forget)(Neighbor &);
    const char *leaf;
};

// A neighbor with everything that it may announce.
Neighbor talkative_neighbor() {
    Neighbor neighbor = neighbor_named("sw1");
    neighbor.chassis.description = "A switch";
    neighbor.chassis.capabilities = {.available = 0x14, .enabled = 0x04};
    neighbor.chassis.addresses = {{.text = "192.0.2.1", .interface_number = 3}};
    neighbor.port_description = "uplink";
    neighbor.last_update = 1700000000;
    neighbor.age = 7;
    neighbor.tlvs = {{.oui = {0x00, 0x80, 0xc2}, .subtype = 9, .octets = "abc"}};
    return neighbor;
}

class WhatANeighborDoesNotTell : public testing::TestWithParam<AbsentCase> {};

TEST_P(WhatANeighborDoesNotTell, IsAbsent) {
    Neighbor neighbor = talkative_neighbor();
    ASSERT_THAT(announcements(neighbor), Contains(StartsWith(GetParam().leaf)));
    GetParam().forget(neighbor);
    EXPECT_THAT(announcements(neighbor), Not(Contains(StartsWith(GetParam().leaf))));
}

INSTANTIATE_TEST_SUITE_P(
    Of, WhatANeighborDoesNotTell,
    testing::Values(
        AbsentCase{"ChassisIdSubtype", [](Neighbor &n) { n.chassis.id_subtype.reset(); },
                   "mib/chassis-id-sub-type"},
        AbsentCase{"PortIdSubtype", [](Neighbor &n) { n.port_id_subtype.reset(); }, "mib/port-id-sub-type"},
        AbsentCase{"SystemDescription", [](Neighbor &n) { n.chassis.description.reset(); },
                   "detail/system-description"},
        AbsentCase{"CombinedCapabilities", [](Neighbor &n) { n.chassis.capabilities.reset(); },
                   "mib/combined-capabilities"},
        AbsentCase{"SystemCapabilities", [](Neighbor &n) { n.chassis.capabilities.reset(); },
                   "detail/system-capabilities"},
        AbsentCase{"EnabledCapabilities", [](Neighbor &n) { n.chassis.capabilities->enabled = 0; },
                   "detail/enabled-capabilities"},
        AbsentCase{"PortDescription", [](Neighbor &n) { n.port_description.reset(); },
                   "detail/port-description"},
        AbsentCase{"TimeToLive", [](Neighbor &n) { n.time_to_live.reset(); }, "hold-time"},
        AbsentCase{"LastUpdate", [](Neighbor &n) { n.last_update.reset(); }, "detail/last-update"},
        AbsentCase{"Age", [](Neighbor &n) { n.age.reset(); }, "detail/age"},
        AbsentCase{"Address", [](Neighbor &n) { n.chassis.addresses.clear(); },
                   "detail/network-addresses/lldp-addr-entry"},
        AbsentCase{"InterfaceNumber", [](Neighbor &n) { n.chassis.addresses.front().interface_number.reset(); },
                   "detail/network-addresses/lldp-addr-entry[1]/if-num"},
        AbsentCase{"CustomTlv", [](Neighbor &n) { n.tlvs.clear(); }, "mib/org-def-tlv-list/lldp-org-def"}),
    [](const auto &absent) { return absent.param.name; });

TEST(ANeighbor, TellsWhenItWasHeard) {
    Neighbor neighbor = neighbor_named("sw1");
    neighbor.last_update = 5'000'000'000; // beyond 32 bits
    neighbor.age = 5'000'000'001;
    EXPECT_THAT(announcements(neighbor),
                testing::IsSupersetOf(Strings{"detail/last-update=5000000000", "detail/age=5000000001"}));
}

struct CapabilityCase {
    uint16_t available, enabled;
    const char *combined;
    Strings letters; // of the available and of the enabled capabilities
};

class Capabilities : public testing::TestWithParam<CapabilityCase> {};

TEST_P(Capabilities, AreBitsWithThoseOfTheSystemAboveThoseThatAreOn) {
    Neighbor neighbor = neighbor_named("sw1");
    neighbor.chassis.capabilities = {.available = GetParam().available, .enabled = GetParam().enabled};
    const lldpd::State state = state_of({neighbor});
    EXPECT_THAT(operational_values(state, detail + "/lldp-neighbor/mib/combined-capabilities"),
                ElementsAre(GetParam().combined));
    Strings letters = operational_values(state, detail + "/lldp-neighbor/detail/system-capabilities");
    for (const std::string &on :
         operational_values(state, detail + "/lldp-neighbor/detail/enabled-capabilities"))
        letters.push_back(on);
    EXPECT_EQ(letters, GetParam().letters);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Capabilities,
    testing::Values(CapabilityCase{0x0001, 0x0001, "65537", {"O", "O"}},
                    CapabilityCase{0x0042, 0x0040, "4325440", {"P,C", "C"}},
                    CapabilityCase{0x0014, 0x0014, "1310740", {"B,R", "B,R"}},
                    CapabilityCase{0x00a8, 0x0000, "11010048", {"W,T,S"}},
                    CapabilityCase{0x00ff, 0x00ff, "16711935", {"O,P,B,W,R,T,C,S", "O,P,B,W,R,T,C,S"}},
                    CapabilityCase{0xffff, 0x8001, "4294934529", {"O,P,B,W,R,T,C,S", "O"}},
                    CapabilityCase{0x0000, 0x0000, "0", {}}));

TEST(ManagementAddresses, AreToldWithTheirFamilyAndInterface) {
    Neighbor neighbor = neighbor_named("sw1");
    neighbor.chassis.addresses = {{.text = "192.0.2.1", .interface_number = 4},
                                  {.text = "2001:db8::1", .interface_number = 4294967295},
                                  {.text = "fe80::1", .interface_number = std::nullopt}};
    const std::string entry = "detail/network-addresses/lldp-addr-entry";
    Strings found;
    for (const std::string &line : announcements(neighbor))
        if (line.starts_with(entry))
            found.push_back(line.substr(entry.size()));
    EXPECT_THAT(found, ElementsAre("[1]/address/address-type=ipv4", "[1]/address/ipv4-address=192.0.2.1",
                                   "[1]/if-num=4", "[2]/address/address-type=ipv6",
                                   "[2]/address/ipv6-address=2001:db8::1", "[2]/if-num=4294967295",
                                   "[3]/address/address-type=ipv6", "[3]/address/ipv6-address=fe80::1"));
}

// --- custom TLVs ---

const std::string tlv = detail + "/lldp-neighbor/mib/org-def-tlv-list/lldp-org-def-tlv-entry";

lldpd::State state_with_tlvs(std::vector<lldpd::CustomTlv> tlvs) {
    Neighbor neighbor = neighbor_named("sw1");
    neighbor.tlvs = std::move(tlvs);
    return state_of({neighbor});
}

class TheOctetsOfATlv : public testing::TestWithParam<std::string> {};

TEST_P(TheOctetsOfATlv, AreItsValueAsTheyAre) {
    const lldpd::State state =
        state_with_tlvs({{.oui = {0x00, 0x80, 0xc2}, .subtype = 9, .octets = GetParam()}});
    EXPECT_THAT(operational_values(state, tlv + "/oui"), ElementsAre("00:80:c2"));
    EXPECT_THAT(operational_values(state, tlv + "/tlv-subtype"), ElementsAre("9"));
    EXPECT_THAT(operational_values(state, tlv + "/tlv-value"), ElementsAre(GetParam()));
}

std::string octets_from_to(int first, int last) {
    std::string octets;
    for (int octet = first; octet <= last; octet++)
        octets += static_cast<char>(octet);
    return octets;
}

INSTANTIATE_TEST_SUITE_P(Are, TheOctetsOfATlv,
                         testing::Values("abc", "a", " ", "61:62:63", "<a>&amp;\"'", "\xff", "\xff\xfe\xfd",
                                         "caf\xc3\xa9", "\xc3", "\x01", "\t\r\n", octets_from_to(1, 255),
                                         std::string(507, '\xff')));

// A value is read as a C string, so zeros are coded.
TEST(ATlv, WithAZeroOctetHasAllItsOctets) {
    for (const std::string &octets :
         {std::string("\0", 1), std::string("a\0c", 3), std::string("abc\0", 4), std::string(507, '\0')}) {
        const lldpd::State state =
            state_with_tlvs({{.oui = {0x00, 0x80, 0xc2}, .subtype = 9, .octets = octets}});
        EXPECT_THAT(operational_values(state, tlv + "/oui"), ElementsAre("00:80:c2"));
        EXPECT_THAT(operational_values(state, tlv + "/tlv-subtype"), ElementsAre("9"));
        const Strings values = operational_values(state, tlv + "/tlv-value");
        ASSERT_EQ(values.size(), 1U);
        EXPECT_EQ(yang::coded_octets(values.front()), octets);
    }
}

TEST(ATlv, WithoutContentIsThereAndTellsNothing) {
    const lldpd::State state = state_with_tlvs({{.oui = {0xff, 0x0a, 0x00}, .subtype = 255, .octets = ""}});
    EXPECT_THAT(operational_values(state, tlv + "/oui"), ElementsAre("ff:0a:00"));
    EXPECT_THAT(operational_values(state, tlv + "/tlv-subtype"), ElementsAre("255"));
    EXPECT_THAT(operational_values(state, tlv + "/tlv-value"), testing::Each(""));
}

TEST(Tlvs, OfTheSameKindAreAllThereInTheirOrder) {
    const lldpd::State state = state_with_tlvs({{.oui = {1, 2, 3}, .subtype = 0, .octets = "first"},
                                                {.oui = {1, 2, 3}, .subtype = 0, .octets = "second"},
                                                {.oui = {1, 2, 3}, .subtype = 0, .octets = "first"}});
    EXPECT_THAT(operational_values(state, tlv + "/tlv-value"), ElementsAre("first", "second", "first"));
}

} // namespace
} // namespace yfw::sources::test

// TLVs that lldpd interprets, as their octets: examples written down from the standards.
#include "sources/lldpd/organization_tlvs.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace yfw::sources::test {
namespace {

using namespace lldpd;

std::string hexadecimal(const std::string &octets) {
    std::string text;
    for (const char octet : octets) {
        char two[3];
        std::snprintf(two, sizeof two, "%02x", static_cast<unsigned char>(octet));
        text += two;
    }
    return text;
}

// "00120f/1 036c01001e"
std::string text_of(const CustomTlv &tlv) {
    return hexadecimal(std::string(tlv.oui.begin(), tlv.oui.end())) + "/" + std::to_string(tlv.subtype) +
           (tlv.octets.empty() ? "" : " " + hexadecimal(tlv.octets));
}

TEST(TlvsOf8021, AreTheirOctets) {
    EXPECT_EQ(text_of(port_vlan_id(100)), "0080c2/1 0064");
    EXPECT_EQ(text_of(port_vlan_id(4094)), "0080c2/1 0ffe");
    EXPECT_EQ(text_of(port_and_protocol_vlan_id(6, 300)), "0080c2/2 06012c");
    EXPECT_EQ(text_of(vlan_name(101, "vlan")), "0080c2/3 006504766c616e");
    EXPECT_EQ(text_of(vlan_name(1, "")), "0080c2/3 000100");
    EXPECT_EQ(text_of(protocol_identity({"\x00\x00\x42\x03", 4})), "0080c2/4 0400004203");
}

TEST(TlvsOf8023, AreTheirOctets) {
    EXPECT_EQ(text_of(mac_phy({true, true, 0x6c01, 30})), "00120f/1 036c01001e");
    EXPECT_EQ(text_of(mac_phy({false, true, 0, 16})), "00120f/1 0200000010");
    EXPECT_EQ(text_of(link_aggregation(9)), "00120f/3 0300000009");
    EXPECT_EQ(text_of(max_frame_size(1518)), "00120f/4 05ee");
}

TEST(PowerViaMdi, HasTheFormThatWasAnnounced) {
    MdiPower power{true, true, true, false, 1, 5, {}, {}};
    EXPECT_EQ(text_of(mdi_power(power)), "00120f/2 070105");
    EXPECT_EQ(text_of(mdi_power({false, false, false, false, 2, 3, {}, {}})), "00120f/2 000203");
    EXPECT_EQ(
        text_of(mdi_power({true, true, true, true, 2, 5, PowerNegotiation{2, 1, 1, false, 130, 255}, {}})),
        "00120f/2 0f0205"
        "91008200ff");
    EXPECT_EQ(
        text_of(mdi_power({false, false, false, false, 1, 5, PowerNegotiation{1, 3, 3, false, 130, 0}, {}})),
        "00120f/2 000105"
        "7300820000");
    power.negotiation = PowerNegotiation{0, 1, 1, true, 400, 390};
    power.four_pair = FourPairPower{11, 12, 13, 14, 2, 1, 2, 6, 4, 6, 3, true, 511};
    EXPECT_EQ(text_of(mdi_power(power)), "00120f/2 070105"
                                         "1501900186"
                                         "000b000c000d000e"
                                         "9b46"
                                         "07"
                                         "01ff"
                                         "00000000");
}

TEST(TlvsOfMed, AreTheirOctets) {
    EXPECT_EQ(text_of(med_capabilities(0x3f, 3)), "0012bb/1 003f03");
    EXPECT_EQ(text_of(network_policy({1, false, true, 100, 6, 40})), "0012bb/2 0140c9a8");
    EXPECT_EQ(text_of(network_policy({2, true, false, 100, 6, 46})), "0012bb/2 0280c9ae");
    EXPECT_EQ(text_of(network_policy({8, false, false, 4095, 7, 63})), "0012bb/2 081fffff");
    EXPECT_EQ(text_of(extended_power({1, 1, 3, 65})), "0012bb/4 530041");
    EXPECT_EQ(text_of(extended_power({0, 0, 0, 16})), "0012bb/4 000010");
    EXPECT_EQ(text_of(inventory(5, "hw1")), "0012bb/5 687731");
    EXPECT_EQ(text_of(inventory(11, "asset")), "0012bb/11 6173736574");
}

TEST(LocationsOfMed, AreTheirOctets) {
    EXPECT_EQ(text_of(emergency_number("911")), "0012bb/3 03393131");
    EXPECT_EQ(text_of(civic_location("FR", "\x01\x05Paris").value()), "0012bb/3 020a"
                                                                      "024652"
                                                                      "01055061726973");
    EXPECT_FALSE(civic_location("F", "").has_value());
    EXPECT_FALSE(civic_location("FR", std::string(253, 'x')).has_value());
}

struct Place {
    const char *latitude, *longitude, *altitude, *octets;
};

// Resolution and value of latitude, of longitude, and unit, resolution and value of the altitude.
TEST(CoordinatesOfMed, AreFixedPointNumbersWithTheResolutionOfTheirWords) {
    const Place places[] = {
        {"0.5N", "0.5E", "0",
         "3001000000"
         "3001000000"
         "1580000000"},
        {"0.5S", "0.5W", "-1",
         "33ff000000"
         "33ff000000"
         "15bfffff00"},
        {"90.0N", "180.0W", "35.25",
         "30b4000000"
         "3298000000"
         "1700002340"},
    };
    for (const Place &place : places) {
        const auto tlv = coordinate_location({place.latitude, place.longitude, place.altitude, 1, 1});
        ASSERT_TRUE(tlv.has_value()) << place.latitude;
        EXPECT_EQ(text_of(*tlv), std::string("0012bb/3 01") + place.octets + "01") << place.latitude;
    }
    for (const char *words : {"", "N", "48.8", "48,8N", "48.8X", "nanN", "infN", "1e99N"})
        EXPECT_FALSE(coordinate_location({words, "0.5E", "0", 1, 1}).has_value()) << words;
}

} // namespace
} // namespace yfw::sources::test

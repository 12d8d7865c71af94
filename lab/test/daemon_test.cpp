#include "lab/daemon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/files.h"

namespace yfw::lab::test {
namespace {

using testing::Contains;
using testing::ElementsAreArray;

TEST(TheInterfacePattern, has_a_star_in_place_of_numbers_and_each_stem_once) {
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"eth1", "eth2", "eth30"}, "eth*"},
        {{"eth1", "ge-0.1"}, "eth*,ge-0.*"},
        {{"uplink"}, "uplink"},
        {{}, ""},
    };
    for (const auto &[interfaces, pattern] : cases)
        EXPECT_EQ(interface_pattern(interfaces), pattern);
}

Router router() {
    Router result;
    result.name = "a";
    result.system_name = "a.example.net";
    result.system_description = "a router";
    return result;
}

TEST(TheConfiguration, ends_with_the_system_name) {
    Router all = router();
    all.capabilities = {"bridge", "router"};
    all.custom_tlvs = {{{0x00, 0x80, 0xc2}, 9, {0x61, 0x00}}, {{0x33, 0x44, 0x55}, 44, {}}};
    EXPECT_THAT(
        yfw::test::lines_of(daemon_configuration(all, 7)),
        ElementsAreArray({"configure system description \"a router\"", "configure lldp portidsubtype ifname",
                          "configure lldp tx-interval 7", "configure system capabilities enabled bridge,router",
                          "configure lldp custom-tlv add oui 00,80,c2 subtype 9 oui-info 61,00",
                          "configure lldp custom-tlv add oui 33,44,55 subtype 44",
                          "configure system hostname \"a.example.net\""}));
}

TEST(TheConfiguration, quotes_a_text_with_the_quotes_that_it_does_not_hold) {
    Router quoting = router();
    quoting.system_description = "the \"best\"";
    quoting.system_name = "it's";
    const auto lines = yfw::test::lines_of(daemon_configuration(quoting, 2));
    EXPECT_THAT(lines, Contains("configure system description 'the \"best\"'"));
    EXPECT_THAT(lines, Contains("configure system hostname \"it's\""));
}

} // namespace
} // namespace yfw::lab::test

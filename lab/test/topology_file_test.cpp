#include "lab/topology_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/error.h"
#include "lab/json_reader.h"
#include "support/files.h"

namespace yfw::lab::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

Topology read(const std::string &text) {
    return read_topology(parse_json(text, "net.json"), "net.json");
}

struct Refused {
    const char *title;
    std::string text;
    const char *place;
    const char *expected;
};

void PrintTo(const Refused &refused, std::ostream *stream) {
    *stream << refused.title;
}

class ATopologyThatIsWrong : public testing::TestWithParam<Refused> {};

TEST_P(ATopologyThatIsWrong, is_refused_with_its_place_and_what_was_expected) {
    try {
        read(GetParam().text);
        FAIL() << "the topology was accepted";
    } catch (const Error &error) {
        EXPECT_EQ(error.path(), GetParam().place);
        EXPECT_THAT(error.what(), HasSubstr(GetParam().expected));
        EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
        EXPECT_EQ(error.status(), 0U);
    }
}

std::string with_router(const std::string &members) {
    return R"({"routers": [{"name": "a", )" + members +
           R"(}, {"name": "b"}], "links": [["a:eth1", "b:eth1"]]})";
}

std::string with_links(const std::string &links) {
    return R"({"routers": [{"name": "a"}, {"name": "b"}, {"name": "c"}], "links": )" + links + "}";
}

std::string with_segments(const std::string &segments) {
    return R"({"routers": [{"name": "a"}, {"name": "b"}, {"name": "c"}], "segments": )" + segments + "}";
}

const Refused files[] = {
    {"no_json", "{", "net.json", "expected JSON"},
    {"a_number_that_is_too_large", "3e333", "net.json", "no number that large"},
    {"a_member_twice", R"({"routers": [{"name": "a", "name": "b"}]})", "net.json", "\"name\" is repeated"},
    {"too_deep", std::string(100, '['), "net.json", "levels"},
    {"no_object", "[]", "net.json", "expected an object with the members routers, links, segments"},
    {"an_unknown_member", R"({"routers": [{"name": "a"}], "wires": []})", "net.json", "\"wires\""},
    {"no_routers", "{}", "net.json", "\"routers\""},
    {"no_router_in_the_list", R"({"routers": []})", "net.json: routers", "at least one router"},
    {"routers_that_are_no_list", R"({"routers": {}})", "net.json: routers", "expected an array"},
};
INSTANTIATE_TEST_SUITE_P(file, ATopologyThatIsWrong, testing::ValuesIn(files),
                         [](const auto &refused) { return refused.param.title; });

const std::string long_text(256, 'x');
const Refused routers[] = {
    {"no_name", R"({"routers": [{}]})", "net.json: routers[0]", "\"name\""},
    {"a_router_that_is_no_object", R"({"routers": ["a"]})", "net.json: routers[0]", "expected an object"},
    {"a_name_with_a_slash", R"({"routers": [{"name": "a/b"}]})", "net.json: routers[0]: name",
     "1 to 32 letters"},
    {"a_name_that_is_no_text", R"({"routers": [{"name": 1}]})", "net.json: routers[0]: name", "not 1"},
    {"a_name_too_long", R"({"routers": [{"name": ")" + std::string(33, 'a') + "\"}]}",
     "net.json: routers[0]: name", "1 to 32"},
    {"a_name_twice", R"({"routers": [{"name": "a"}, {"name": "a"}]})", "net.json: routers[1]: name",
     "no other router"},
    {"an_unknown_member", with_router(R"("colour": 1)"), "net.json: routers[0] (a)", "\"colour\""},
    {"a_line_break_in_a_text", with_router(R"("system-name": "x\ny")"), "net.json: routers[0] (a): system-name",
     "without control characters"},
    {"a_backslash_in_a_text", with_router(R"("system-description": "x\\y")"),
     "net.json: routers[0] (a): system-description", "backslashes"},
    {"both_kinds_of_quotes", with_router(R"("system-description": "it's \"x\"")"),
     "net.json: routers[0] (a): system-description", "both kinds of quotes"},
    {"an_empty_text", with_router(R"("system-name": "")"), "net.json: routers[0] (a): system-name", "1 to 255"},
    {"a_text_too_long", with_router("\"system-name\": \"" + long_text + "\""),
     "net.json: routers[0] (a): system-name", "1 to 255"},
    {"an_unknown_capability", with_router(R"("capabilities": ["bridge", "flying"])"),
     "net.json: routers[0] (a): capabilities[1]", "one of other, repeater, bridge"},
    {"a_capability_twice", with_router(R"("capabilities": ["bridge", "bridge"])"),
     "net.json: routers[0] (a): capabilities[1]", "once"},
    {"a_tlv_without_oui", with_router(R"("custom-tlvs": [{"subtype": 1}])"),
     "net.json: routers[0] (a): custom-tlvs[0]", "\"oui\""},
    {"an_oui_of_two_bytes", with_router(R"("custom-tlvs": [{"oui": "00:80", "subtype": 1}])"),
     "net.json: routers[0] (a): custom-tlvs[0]: oui", "three bytes"},
    {"an_oui_that_ends_early", with_router(R"("custom-tlvs": [{"oui": "00:80:c2:", "subtype": 1}])"),
     "net.json: routers[0] (a): custom-tlvs[0]: oui", "three bytes"},
    {"an_oui_of_letters", with_router(R"("custom-tlvs": [{"oui": "0x:80:zz", "subtype": 1}])"),
     "net.json: routers[0] (a): custom-tlvs[0]: oui", "three bytes"},
    {"a_subtype_too_large", with_router(R"("custom-tlvs": [{"oui": "00:80:c2", "subtype": 256}])"),
     "net.json: routers[0] (a): custom-tlvs[0]: subtype", "0 to 255"},
    {"a_subtype_beyond_all_numbers",
     with_router(R"("custom-tlvs": [{"oui": "00:80:c2", "subtype": 18446744073709551615}])"),
     "net.json: routers[0] (a): custom-tlvs[0]: subtype", "0 to 255"},
    {"a_broken_subtype", with_router(R"("custom-tlvs": [{"oui": "00:80:c2", "subtype": 1.5}])"),
     "net.json: routers[0] (a): custom-tlvs[0]: subtype", "0 to 255"},
    {"an_address_without_length", with_router(R"("addresses": {"eth1": ["192.0.2.1"]})"),
     "net.json: routers[0] (a): addresses: eth1[0]", "prefix length"},
    {"an_address_with_a_long_prefix", with_router(R"("addresses": {"eth1": ["192.0.2.1/33"]})"),
     "net.json: routers[0] (a): addresses: eth1[0]", "prefix length"},
    {"an_address_with_a_zero_before_its_prefix", with_router(R"("addresses": {"eth1": ["192.0.2.1/024"]})"),
     "net.json: routers[0] (a): addresses: eth1[0]", "prefix length"},
    {"no_address", with_router(R"("addresses": {"eth1": ["::g/64"]})"),
     "net.json: routers[0] (a): addresses: eth1[0]", "prefix length"},
    {"addresses_of_no_port", with_router(R"("addresses": {"eth9": ["192.0.2.1/24"]})"),
     "net.json: routers[0] (a): addresses", "interfaces that a link or a segment names"},
};
INSTANTIATE_TEST_SUITE_P(router, ATopologyThatIsWrong, testing::ValuesIn(routers),
                         [](const auto &refused) { return refused.param.title; });

const Refused connections[] = {
    {"a_link_of_one_end", with_links(R"([["a:eth1"]])"), "net.json: links[0]", "two ports"},
    {"a_link_of_three_ends", with_links(R"([["a:eth1", "b:eth1", "c:eth1"]])"), "net.json: links[0]",
     "two ports"},
    {"a_link_that_is_no_list", with_links(R"(["a:eth1"])"), "net.json: links[0]", "two ports"},
    {"an_end_without_interface", with_links(R"([["a", "b:eth1"]])"), "net.json: links[0][0]",
     "ROUTER:INTERFACE"},
    {"an_end_that_is_no_text", with_links(R"([[1, "b:eth1"]])"), "net.json: links[0][0]", "ROUTER:INTERFACE"},
    {"an_unknown_router", with_links(R"([["a:eth1", "b:eth1"], ["a:eth2", "d:eth1"]])"),
     "net.json: links[1][1]", "of a router of this file, not \"d:eth1\""},
    {"an_interface_of_16_bytes", with_links(R"([["a:eth1234567890123", "b:eth1"]])"), "net.json: links[0][0]",
     "1 to 15"},
    {"the_loopback", with_links(R"([["a:lo", "b:eth1"]])"), "net.json: links[0][0]", "is not lo"},
    {"an_interface_with_a_space", with_links(R"([["a:e 1", "b:eth1"]])"), "net.json: links[0][0]", "1 to 15"},
    {"a_port_twice", with_links(R"([["a:eth1", "b:eth1"], ["c:eth1", "b:eth1"]])"), "net.json: links[1][1]",
     "connected once"},
    {"a_router_with_itself", with_links(R"([["a:eth1", "a:eth2"]])"), "net.json: links[0]",
     "different routers"},
    {"a_segment_without_name", with_segments(R"([{"ports": ["a:eth1", "b:eth1"]}])"), "net.json: segments[0]",
     "\"name\""},
    {"a_segment_named_like_a_router", with_segments(R"([{"name": "a", "ports": ["a:eth1", "b:eth1"]}])"),
     "net.json: segments[0] (a): name", "no router and no other segment"},
    {"a_segment_of_one_port", with_segments(R"([{"name": "lan", "ports": ["a:eth1"]}])"),
     "net.json: segments[0] (lan): ports", "at least two ports"},
    {"a_segment_without_ports", with_segments(R"([{"name": "lan"}])"), "net.json: segments[0] (lan)",
     "\"ports\""},
    {"a_segment_with_a_port_twice", with_segments(R"([{"name": "lan", "ports": ["a:eth1", "a:eth1"]}])"),
     "net.json: segments[0] (lan): ports[1]", "connected once"},
    {"an_unknown_member_of_a_segment", with_segments(R"([{"name": "lan", "ports": [], "speed": 1}])"),
     "net.json: segments[0] (lan)", "\"speed\""},
    {"a_segment_with_the_name_of_a_segment",
     with_segments(R"([{"name": "lan", "ports": ["a:eth1", "b:eth1"]}, {"name": "lan", "ports": []}])"),
     "net.json: segments[1] (lan): name", "no other segment"},
    {"a_segment_that_is_no_object", with_segments("[1]"), "net.json: segments[0]", "expected an object"},
};
INSTANTIATE_TEST_SUITE_P(connection, ATopologyThatIsWrong, testing::ValuesIn(connections),
                         [](const auto &refused) { return refused.param.title; });

TEST(ATopology, has_what_its_file_says) {
    const Topology topology = read(R"({
      "routers": [{"name": "a", "system-name": "a.example.net", "system-description": "it's a",
                   "capabilities": ["bridge"], "addresses": {"eth2": ["192.0.2.1/24", "2001:db8::1/64"]},
                   "custom-tlvs": [{"oui": "00:80:C2", "subtype": 255, "value": "61:00:ff"},
                                   {"oui": "33:44:55", "subtype": 0}]},
                  {"name": "b"}, {"name": "c"}],
      "links": [["a:eth1", "b:ge-0.1"]],
      "segments": [{"name": "lan", "ports": ["a:eth2", "b:eth2", "c:eth2"]}]})");
    const Router &a = topology.routers.at(0);
    EXPECT_EQ(a.system_name, "a.example.net");
    EXPECT_EQ(a.system_description, "it's a");
    EXPECT_THAT(a.capabilities, ElementsAre("bridge"));
    EXPECT_THAT(a.addresses, ElementsAre(Pair("eth2", ElementsAre("192.0.2.1/24", "2001:db8::1/64"))));
    EXPECT_THAT(a.custom_tlvs.at(0).oui, ElementsAre(0x00, 0x80, 0xc2));
    EXPECT_EQ(a.custom_tlvs.at(0).subtype, 255);
    EXPECT_THAT(a.custom_tlvs.at(0).content, ElementsAre(0x61, 0x00, 0xff));
    EXPECT_TRUE(a.custom_tlvs.at(1).content.empty());
    EXPECT_EQ(topology.links.at(0).second, (Port{"b", "ge-0.1"}));
    EXPECT_EQ(topology.segments.at(0).ports.at(2), (Port{"c", "eth2"}));
    EXPECT_THAT(topology.interfaces_of("a"), ElementsAre("eth1", "eth2"));
    EXPECT_THAT(topology.peers(), ElementsAre(Pair(Port{"a", "eth1"}, 1), Pair(Port{"b", "ge-0.1"}, 1),
                                              Pair(Port{"a", "eth2"}, 2), Pair(Port{"b", "eth2"}, 2),
                                              Pair(Port{"c", "eth2"}, 2)));
}

TEST(ATopology, names_a_router_that_has_no_system_name_by_its_name) {
    EXPECT_EQ(read(R"({"routers": [{"name": "b"}]})").routers.at(0).system_name, "b");
}

TEST(ATopologyFile, that_is_not_there_is_named) {
    for (const std::string file : {"/nonexistent/net.json", "/"})
        try {
            read_topology_file(file);
            FAIL() << file << " was accepted";
        } catch (const Error &error) {
            EXPECT_EQ(error.path(), file);
        }
}

TEST(ATopologyFile, is_named_in_the_error_of_its_content) {
    const yfw::test::TemporaryDirectory directory;
    const std::string file = directory.add("mine.json", R"({"routers": [{}]})");
    try {
        read_topology_file(file);
        FAIL() << "the topology was accepted";
    } catch (const Error &error) {
        EXPECT_EQ(error.path(), file + ": routers[0]");
    }
}

TEST(TheDefaultTopology, is_that_of_the_recorded_routers) {
    const Topology topology = default_topology();
    std::vector<std::string> names;
    for (const Router &router : topology.routers)
        names.push_back(router.system_name);
    EXPECT_THAT(names, ElementsAre("r1.example.net", "r2.example.net", "r3.example.net", "r4.example.net"));
    EXPECT_THAT(topology.peers(),
                testing::UnorderedElementsAre(
                    Pair(Port{"r1", "eth1"}, 1), Pair(Port{"r2", "eth1"}, 1), Pair(Port{"r1", "eth2"}, 1),
                    Pair(Port{"r3", "eth1"}, 1), Pair(Port{"r2", "eth2"}, 1), Pair(Port{"r3", "eth2"}, 1),
                    Pair(Port{"r1", "eth3"}, 2), Pair(Port{"r2", "eth3"}, 2), Pair(Port{"r4", "eth3"}, 2)));
}

} // namespace
} // namespace yfw::lab::test

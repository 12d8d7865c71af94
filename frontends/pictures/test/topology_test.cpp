// Drawings of networks from hand-made reports: which routers are connected, as text and as a graph.
#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frontends/pictures/graphviz.h"
#include "frontends/pictures/test/topology_networks.h"
#include "frontends/pictures/topology_drawing.h"
#include "frontends/pictures/topology_model.h"

namespace yfw::pictures {
namespace {

// The graph without the lines that set its style.
std::string edges_of(const std::string &dot) {
    const std::string_view end_of_settings = "\n\n";
    return dot.substr(dot.find(end_of_settings) + end_of_settings.size());
}

class Drawing : public testing::TestWithParam<Network> {};

TEST_P(Drawing, is_the_same_in_whatever_order_devices_interfaces_and_neighbors_come) {
    std::vector<Report> reports = GetParam().reports;
    const auto expect_drawings = [&] {
        const Topology topology = build(reports);
        EXPECT_EQ(draw_text(topology), GetParam().text);
        EXPECT_EQ(edges_of(draw_dot(topology)), GetParam().edges);
    };
    expect_drawings();
    std::reverse(reports.begin(), reports.end());
    for (Report &report : reports) {
        std::reverse(report.interfaces.begin(), report.interfaces.end());
        for (Interface &interface : report.interfaces)
            std::reverse(interface.neighbors.begin(), interface.neighbors.end());
    }
    expect_drawings();
}

TEST_P(Drawing, is_the_same_when_every_device_is_read_twice_and_tells_every_neighbor_twice) {
    std::vector<Report> reports = GetParam().reports;
    for (Report &report : reports)
        for (Interface &interface : report.interfaces) {
            const std::vector<Neighbor> neighbors = interface.neighbors;
            for (const Neighbor &neighbor : neighbors)
                if (!neighbor.system_name.empty() || !neighbor.chassis_id.empty())
                    interface.neighbors.push_back(neighbor);
        }
    for (const Report &report : std::vector<Report>(reports))
        if (!report.system_name.empty() || !report.chassis_id.empty())
            reports.push_back(report);
    EXPECT_EQ(draw_text(build(reports)), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Network, Drawing, testing::ValuesIn(networks()),
                         [](const auto &tested) { return tested.param.name; });

struct OddName {
    std::string name;
    std::string router;
    std::string shown; // as it appears in the SVG
};

class NameInSvg : public testing::TestWithParam<OddName> {};

TEST_P(NameInSvg, is_the_router_as_it_is) {
    std::string svg;
    try {
        svg = make_svg(draw_dot(build({device(GetParam().router, {})})));
    } catch (const std::runtime_error &error) {
        if (std::string_view(error.what()).find("install graphviz") != std::string_view::npos)
            GTEST_SKIP() << error.what();
        throw;
    }
    EXPECT_THAT(svg, testing::HasSubstr('>' + GetParam().shown + "</text>"));
}

INSTANTIATE_TEST_SUITE_P(
    Names, NameInSvg,
    testing::Values(OddName{"plain", "r1", "r1"}, OddName{"blank", "core 1", "core 1"},
                    OddName{"quotes", "a\"b\"", "a&quot;b&quot;"}, OddName{"backslash", "a\\b\\n", "a\\b\\n"},
                    OddName{"backslash_at_the_end", "a\\", "a\\"}, OddName{"name_of_the_node", "\\N", "\\N"},
                    OddName{"keyword", "graph", "graph"}, OddName{"port_separator", "a:b", "a:b"},
                    OddName{"record", "{a|b}", "{a|b}"}, OddName{"markup", "<b>", "&lt;b&gt;"},
                    OddName{"entity", "a&lt;b", "a&amp;lt;b"}, OddName{"comment", "a//b", "a//b"},
                    OddName{"utf8", "zwölf", "zwölf"}, OddName{"lines", "a\nb", "a\\x0ab"}),
    [](const auto &tested) { return tested.param.name; });

TEST(Topology, is_drawn_for_many_unread_neighbors_on_one_port_as_one_segment) {
    constexpr size_t many = 20000;
    Report hub = device("hub", {{"eth0", {}}});
    for (size_t i = 0; i < many; i++)
        hub.interfaces[0].neighbors.push_back(neighbor("phone" + std::to_string(i), "port"));
    const Topology topology = build({hub});
    ASSERT_EQ(topology.segments.size(), 1U);
    EXPECT_EQ(topology.segments[0].ports.size(), many + 1);
    EXPECT_EQ(topology.networks, 1U);
}

struct Order {
    std::string name;
    std::vector<std::string> sorted;
};

class NaturalOrder : public testing::TestWithParam<Order> {};

TEST_P(NaturalOrder, counts_numbers_as_numbers) {
    const std::vector<std::string> &sorted = GetParam().sorted;
    for (size_t i = 0; i < sorted.size(); i++)
        for (size_t j = 0; j < sorted.size(); j++)
            EXPECT_EQ(natural_less(sorted[i], sorted[j]), i < j) << sorted[i] << ' ' << sorted[j];
}

INSTANTIATE_TEST_SUITE_P(
    Names, NaturalOrder,
    testing::Values(Order{"interfaces", {"", "eth", "eth1", "eth2", "eth10", "eth10.7", "lo"}},
                    Order{"slots", {"xe-0/0/2", "xe-0/0/10", "xe-0/1/0", "xe-1/0/0"}},
                    Order{"leading_zeros", {"r01", "r1", "r001a", "r2", "r010"}},
                    Order{"beyond_64_bits", {"9", "18446744073709551616", "18446744073709551617"}}),
    [](const auto &tested) { return tested.param.name; });

} // namespace
} // namespace yfw::pictures

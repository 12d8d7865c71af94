// The picture of a large network: what lies where.
#include <cstdlib>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frontends/pictures/graphviz.h"
#include "frontends/pictures/test/topology_networks.h"
#include "frontends/pictures/topology_html.h"
#include "frontends/pictures/topology_picture.h"

namespace yfw::pictures {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr size_t routers = 60;

std::string router_name(size_t number) {
    return "core-router-" + std::to_string(number) + ".example.net";
}

// A ring with chords, every link reported by both ends.
std::vector<Report> large_network() {
    std::vector<Report> reports;
    for (size_t i = 0; i < routers; i++)
        reports.push_back({"place", router_name(i), "", {}});
    std::vector<size_t> next(routers);
    const auto connect = [&](size_t a, size_t b) {
        const std::string left = "HundredGigE0/0/0/" + std::to_string(10 + next[a]++),
                          right = "HundredGigE0/0/0/" + std::to_string(10 + next[b]++);
        reports[a].interfaces.push_back({left, {{"", router_name(b), "", right, ""}}});
        reports[b].interfaces.push_back({right, {{"", router_name(a), "", left, ""}}});
    };
    for (size_t i = 0; i < routers; i++)
        connect(i, (i + 1) % routers);
    for (size_t i = 0; i < routers; i += 3)
        connect(i, (i + 20) % routers);
    return reports;
}

struct Box {
    double left, top, right, bottom;

    bool overlaps(const Box &other) const {
        return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
    }
};

// The outlines of the nodes: the corners of their polygons.
std::vector<Box> boxes_in(const std::string &svg) {
    static const std::regex polygon("class=\"node [^]*?<polygon[^>]* points=\"([^\"]*)\"");
    static const std::regex point("(-?[0-9.]+),(-?[0-9.]+)");
    std::vector<Box> boxes;
    for (std::sregex_iterator found(svg.begin(), svg.end(), polygon), none; found != none; ++found) {
        const std::string points = (*found)[1];
        Box box{1e9, 1e9, -1e9, -1e9};
        for (std::sregex_iterator at(points.begin(), points.end(), point); at != none; ++at) {
            const double x = std::stod((*at)[1]), y = std::stod((*at)[2]);
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x),
                   std::max(box.bottom, y)};
        }
        boxes.push_back(box);
    }
    return boxes;
}

// Nothing where Graphviz is missing, which fails the tests of a build that must have it.
std::string svg_of(const Topology &topology) {
    try {
        return make_svg(draw_picture(topology, "A network"));
    } catch (const std::runtime_error &error) {
        if (std::string_view(error.what()).find("install graphviz") == std::string_view::npos ||
            std::getenv("CI") != nullptr)
            throw;
        return "";
    }
}

TEST(ThePictureOfALargeNetwork, HasNoLabelOnABoxOrOnAnotherLabel) {
    const Topology topology = build(large_network());
    const std::string svg = svg_of(topology);
    if (svg.empty())
        GTEST_SKIP() << "Graphviz is not installed";
    const std::vector<Box> boxes = boxes_in(svg);
    ASSERT_EQ(boxes.size(), topology.routers.size() + topology.ports.size());
    for (size_t i = 0; i < boxes.size(); i++)
        for (size_t j = 0; j < i; j++)
            ASSERT_FALSE(boxes[i].overlaps(boxes[j])) << i << ' ' << j;
}

TEST(ThePicture, HasATitleAndAColorForEachKind) {
    const Topology topology = build(
        {device("a", {{"e1", {neighbor("b", "e1")}}, {"e2", {neighbor("c", "e1"), neighbor("d", "e1")}}})});
    const std::string picture = draw_picture(topology, "All \"routers\"");
    EXPECT_THAT(picture, HasSubstr("label=\"All \\\"routers\\\"\""));
    EXPECT_THAT(picture, HasSubstr("style=\"filled\", fillcolor=\"#dbe9f8\", label=\"a\""));
    EXPECT_THAT(picture, HasSubstr("style=\"filled,dashed\", fillcolor=\"#eeeeee\", label=\"b\""));
    EXPECT_THAT(picture, HasSubstr("fillcolor=\"#fdebc8\""));
}

TEST(ThePicture, NamesASharedSegmentByItsPorts) {
    const Topology topology = build({device("a", {{"e1", {neighbor("b", "x"), neighbor("c", "y")}}})});
    EXPECT_THAT(draw_picture(topology, ""), HasSubstr("label=\"a e1\\nb x\\nc y\""));
    std::vector<Neighbor> many;
    for (const char *name : {"b", "c", "d", "e", "f"})
        many.push_back(neighbor(name, "x"));
    EXPECT_THAT(draw_picture(build({device("a", {{"e1", many}})}), ""),
                HasSubstr("label=\"a e1\\nb x\\nc x\\nd x\\nand 2 more\""));
}

TEST(ThePicture, DashesWhatOneSideReportsAndNothingElse) {
    const Report a = device("a", {{"e1", {neighbor("b", "e1")}}});
    EXPECT_THAT(draw_picture(build({a}), ""), HasSubstr("penwidth=1.5, style=dashed]"));
    EXPECT_THAT(draw_picture(build({a, device("b", {{"e1", {neighbor("a", "e1")}}})}), ""),
                Not(HasSubstr("dashed")));
}

TEST(ThePage, HasThePictureAndWhatBothEndsHeard) {
    const Topology topology = build({device("a", {{"e1", {neighbor("b", "e2")}}})});
    const std::string page = draw_html(topology, "x < y", "<?xml version=\"1.0\"?>\n<svg>picture</svg>\n");
    EXPECT_THAT(page, HasSubstr("<title>x &lt; y</title>"));
    EXPECT_THAT(page, HasSubstr("<div id=\"picture\"><svg>picture</svg>"));
    EXPECT_THAT(page, HasSubstr(R"("router":"a","port":"e1","read":true,"heard":[{"of":"b e2")"));
    EXPECT_THAT(page, HasSubstr(R"(["Port id","e2"])"));
    EXPECT_THAT(page, Not(HasSubstr("@")));
}

TEST(ThePage, TakesNoMarkupFromNeighbors) {
    const Topology topology =
        build({device("a", {{"e1", {neighbor("</script><script>alert(1)</script>@DATA@", "e2")}}})});
    const std::string page = draw_html(topology, "t", "<svg/>");
    EXPECT_THAT(page, Not(HasSubstr("</script><script>")));
    EXPECT_THAT(page, HasSubstr("\\u003c/script>"));
}

TEST(ThePage, NeedsNothingFromElsewhere) {
    const std::string page = draw_html(build({device("a", {})}), "t", "<svg/>");
    for (const char *reference : {"http:", "https:", "src=", "href=", "url(", "@import"})
        EXPECT_THAT(page, Not(HasSubstr(reference)));
}

} // namespace
} // namespace yfw::pictures

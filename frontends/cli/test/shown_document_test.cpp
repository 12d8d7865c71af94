// What a terminal gets instead of characters that would command it, and the table of neighbors.
#include "frontends/cli/output/shown_document.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "frontends/cli/output/neighbor_table.h"

namespace yfw::cli {
namespace {

TEST(AShownJsonDocument, IsTheSameDataWithoutHarmfulCharacters) {
    const std::string text = "{\n  \"a\": \"\\u001b[2J zw\u00f6lf \u202egnp \u009b2J \U000e0041 \x7f\"\n}\n";
    const std::string shown = shown_json(text);
    EXPECT_EQ(shown, "{\n  \"a\": \"\\u001b[2J zw\u00f6lf \\u202egnp \\u009b2J \\udb40\\udc41 \\u007f\"\n}\n");
    EXPECT_EQ(nlohmann::json::parse(shown), nlohmann::json::parse(text));
}

TEST(AShownXmlDocument, HasReferencesInsteadOfHarmfulCharacters) {
    EXPECT_EQ(shown_xml("<a xmlns=\"urn:x\">\n  <b>evil\nforged\t\u009b2J</b>\n  <c/>\n</a>\n"),
              "<a xmlns=\"urn:x\">\n  <b>evil&#xa;forged&#x9;&#x9b;2J</b>\n  <c/>\n</a>\n");
}

TEST(AShownXmlDocument, KeepsItsLayout) {
    const std::string plain = "<a>\n  <b>\n    <c>zw\u00f6lf &amp; &gt; more</c>\n  </b>\n  <d/>\n</a>\n";
    EXPECT_EQ(shown_xml(plain), plain);
    EXPECT_EQ(shown_xml("rollback to 0"), "rollback to 0");
    EXPECT_EQ(shown_xml(""), "");
}

TEST(AShownXmlDocument, HasNoLineOfItsOwnForATextOfLineEnds) {
    EXPECT_EQ(shown_xml("<a>\n\n</a>"), "<a>&#xa;&#xa;</a>");
}

// ---- neighbors ----------------------------------------------------------------------------------------------

pictures::Report device_with_neighbors() {
    pictures::Neighbor router{"r2#eth1", "r2.example.net", "7e:d0:85:52:40:8c", "eth1", "uplink"};
    router.age = "7505";
    router.capabilities = {"ROUTER", "MAC_BRIDGE"};
    const pictures::Neighbor phone{"x", "", "", "", ""};
    return {"r1", "r1.example.net", "", {{"eth1", {router}}, {"eth2", {}}, {"eth10", {phone}}}};
}

TEST(TheTableOfNeighbors, HasALineForEach) {
    EXPECT_EQ(neighbor_table({device_with_neighbors()}, std::nullopt, false),
              "  Local port  System name     Port  Chassis id           Age  Capabilities\n"
              "  eth1        r2.example.net  eth1  7e:d0:85:52:40:8c  2h05m  ROUTER, MAC_BRIDGE\n"
              "  eth10       -               -     -                      -  -\n");
}

TEST(TheTableOfNeighbors, NamesTheDeviceWhenThereAreSeveral) {
    const std::string table =
        neighbor_table({device_with_neighbors(), {"r9", "", "", {}}}, std::nullopt, false);
    EXPECT_EQ(table.find("  Device          Local port"), 0U) << table;
    EXPECT_NE(table.find("\n  r1.example.net  eth1 "), std::string::npos) << table;
}

TEST(TheTableOfNeighbors, EscapesWhatTheyAnnounced) {
    pictures::Report report = device_with_neighbors();
    report.interfaces[0].neighbors[0].system_name = "evil\n\x1b[2J\u009b";
    const std::string table = neighbor_table({report}, std::nullopt, false);
    EXPECT_NE(table.find("evil\\x0a\\x1b[2J\\u009b"), std::string::npos) << table;
}

TEST(TheTableOfNeighbors, HasColorsOnRequest) {
    const std::string table = neighbor_table({device_with_neighbors()}, std::nullopt, true);
    EXPECT_EQ(table.find("  \x1b[1mLocal port\x1b[0m  "), 0U) << table;
    EXPECT_NE(table.find("\n  \x1b[36meth1\x1b[0m        \x1b[32mr2.example.net\x1b[0m  eth1"),
              std::string::npos)
        << table;
}

TEST(TheTableOfNeighbors, SaysWhenThereAreNone) {
    EXPECT_EQ(neighbor_table({{"r9", "", "", {}}}, std::nullopt, false), "no neighbors\n");
}

TEST(NeighborsAsJson, HaveWhatTheyAnnounced) {
    const auto all = nlohmann::json::parse(neighbor_json({device_with_neighbors()}, -1));
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0], nlohmann::json::parse(R"({"device": "r1", "local-port": "eth1", "id": "r2#eth1",
        "system-name": "r2.example.net", "port-id": "eth1", "port-description": "uplink",
        "chassis-id": "7e:d0:85:52:40:8c", "age": "7505", "capabilities": ["ROUTER", "MAC_BRIDGE"]})"));
    EXPECT_FALSE(all[1].contains("system-name"));
}

TEST(AnAge, IsShownInTwoUnits) {
    EXPECT_EQ(age_text("0"), "0s");
    EXPECT_EQ(age_text("59"), "59s");
    EXPECT_EQ(age_text("60"), "1m00s");
    EXPECT_EQ(age_text("3599"), "59m59s");
    EXPECT_EQ(age_text("11100"), "3h05m");
    EXPECT_EQ(age_text("183600"), "2d03h");
    EXPECT_EQ(age_text("18446744073709551615"), "213503982334601d07h");
    EXPECT_EQ(age_text(""), "");
    EXPECT_EQ(age_text("soon"), "soon");
}

} // namespace
} // namespace yfw::cli

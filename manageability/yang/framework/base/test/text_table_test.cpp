#include "base/text_table.h"

#include <gtest/gtest.h>

#include "base/text_width.h"

namespace yfw::test {
namespace {

TEST(TheWidthOfAText, CountsColumnsOfATerminal) {
    EXPECT_EQ(text_width(""), 0U);
    EXPECT_EQ(text_width("eth1"), 4U);
    EXPECT_EQ(text_width("zwölf"), 5U);
    EXPECT_EQ(text_width("zwo\u0308lf"), 5U);
    EXPECT_EQ(text_width("路由器"), 6U);
    EXPECT_EQ(text_width("한국"), 4U);
    EXPECT_EQ(text_width("\U0001f5a7"), 1U);
    EXPECT_EQ(text_width("\U0001f600"), 2U);
}

TEST(AFittedText, EndsInAnEllipsisWhereItIsCut) {
    EXPECT_EQ(fitted("HundredGigE0/0/0/12", 19), "HundredGigE0/0/0/12");
    EXPECT_EQ(fitted("HundredGigE0/0/0/12", 10), "HundredGi…");
    EXPECT_EQ(fitted("路由器", 5), "路由…");
    EXPECT_EQ(fitted("路由器", 4), "路…");
    EXPECT_EQ(fitted("ab", 1), "…");
    EXPECT_EQ(fitted("ab", 0), "");
}

TEST(ATable, AlignsCellsByTheirWidth) {
    TextTable table({Align::left, Align::right, Align::left});
    table.add({"路由器", "1", "a"});
    table.add({"r1", "200", "b"});
    table.add({"r22", "3", ""});
    EXPECT_EQ(table.text(), "  路由器    1  a\n"
                            "  r1      200  b\n"
                            "  r22       3\n");
}

TEST(ATable, IsShortenedWhereItIsWidest) {
    TextTable table({Align::left, Align::left, Align::left});
    table.add({"eth1", "a-very-long-system-name.example.net", "HundredGigE0/0/0/12"});
    table.fit(40);
    EXPECT_EQ(table.text(), "  eth1  a-very-long-sy…  HundredGigE0/0…\n");
    EXPECT_LE(text_width(table.text()) - 1, 40U);
}

TEST(ATable, KeepsAFewCharactersOfEachColumn) {
    TextTable table({Align::left, Align::left});
    table.add({"abcdefgh", "abcdefgh"});
    table.fit(3);
    EXPECT_EQ(table.text(), "  abcde…  abcde…\n");
}

TEST(ATable, IsPaintedWithoutLosingItsAlignment) {
    TextTable table({Align::left, Align::left});
    table.add({"a", "b"});
    table.add({"ccc", "d"});
    const auto paint = [](size_t row, size_t column, const std::string &cell) {
        return row == 0 && column == 0 ? "<" + cell + ">" : cell;
    };
    EXPECT_EQ(table.text(paint), "  <a>    b\n  ccc  d\n");
}

} // namespace
} // namespace yfw::test

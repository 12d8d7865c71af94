// What hostile names look like in a line for people.
#include "base/printable.h"

#include <string>

#include <gtest/gtest.h>

namespace yfw::test {
namespace {

using namespace std::string_literals;

struct Case {
    std::string name;
    std::string text, line;
};

class PrintableText : public testing::TestWithParam<Case> {};

TEST_P(PrintableText, is_the_line) {
    EXPECT_EQ(printable(GetParam().text), GetParam().line);
}

std::string name_of(const testing::TestParamInfo<Case> &info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Unchanged, PrintableText,
    testing::Values(Case{"nothing", "", ""}, Case{"a_name", "r2.example.net#eth1", "r2.example.net#eth1"},
                    Case{"a_path", "/lldp/neighbor[id='it''s \"x\"']", "/lldp/neighbor[id='it''s \"x\"']"},
                    Case{"backslashes", "a\\x1b\\", "a\\x1b\\"},
                    Case{"other_scripts", "Zürich κόμβος 交換機 🔌", "Zürich κόμβος 交換機 🔌"},
                    Case{"right_to_left_letters", "נתב", "נתב"},
                    Case{"joiners_in_words", "\u0645\u06cc\u200c\u062e \u200d",
                         "\u0645\u06cc\u200c\u062e \u200d"},
                    Case{"combining_marks", "e\u0301", "e\u0301"},
                    Case{"a_space_that_does_not_break", "a\u00a0b", "a\u00a0b"}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    ControlCharacters, PrintableText,
    testing::Values(Case{"a_line_feed", "sw\nyfw: forged", "sw\\x0ayfw: forged"},
                    Case{"a_carriage_return", "sw\rroot", "sw\\x0droot"}, Case{"a_tab", "a\tb", "a\\x09b"},
                    Case{"zero", "a\0b"s, "a\\x00b"}, Case{"delete_", "a\x7f", "a\\x7f"},
                    Case{"a_terminal_escape", "\x1b[2J\x1b]0;title\x07", "\\x1b[2J\\x1b]0;title\\x07"},
                    Case{"next_line", "a\u0085b", "a\\u0085b"},
                    Case{"an_escape_of_one_character", "\u009b31m", "\\u009b31m"},
                    Case{"a_window_title_of_one_character", "\u009d0;x\u009c", "\\u009d0;x\\u009c"}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    CharactersThatEndReorderOrHide, PrintableText,
    testing::Values(Case{"line_separator", "a\u2028b", "a\\u2028b"},
                    Case{"paragraph_separator", "a\u2029b", "a\\u2029b"},
                    Case{"right_to_left_override", "sw\u202egnp.exe", "sw\\u202egnp.exe"},
                    Case{"embeddings", "\u202a\u202b\u202c\u202d", "\\u202a\\u202b\\u202c\\u202d"},
                    Case{"isolates", "\u2066\u2067\u2068\u2069", "\\u2066\\u2067\\u2068\\u2069"},
                    Case{"direction_marks", "\u200e\u200f\u061c", "\\u200e\\u200f\\u061c"},
                    Case{"zero_width_space", "r\u200b1", "r\\u200b1"},
                    Case{"byte_order_mark", "\ufeffr1", "\\ufeffr1"},
                    Case{"tags", "r1\U000e0041\U000e007f", "r1\\ue0041\\ue007f"}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    BytesThatAreNoUtf8, PrintableText,
    testing::Values(Case{"stray_bytes", "sw\xff\xfe", "sw\\xff\\xfe"},
                    Case{"a_raw_c1_control",
                         "\x9b"
                         "2J",
                         "\\x9b2J"},
                    Case{"a_character_that_is_cut", "a\xc3", "a\\xc3"},
                    Case{"a_character_that_another_interrupts", "\xe2\x80q", "\\xe2\\x80q"},
                    Case{"a_line_feed_written_too_long", "\xc0\x8a", "\\xc0\\x8a"},
                    Case{"a_separator_written_too_long", "\xf0\x82\x80\xa8", "\\xf0\\x82\\x80\\xa8"},
                    Case{"a_surrogate", "\xed\xa0\x80", "\\xed\\xa0\\x80"},
                    Case{"beyond_unicode", "\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"}),
    name_of);

// Whatever the bytes: one line of printable characters, which are printed the same again.
TEST(PrintableTextOfAnyBytes, stays_in_its_line) {
    for (int first = 0; first < 256; first++)
        for (int second = 0; second < 256; second++) {
            const std::string text{'a', static_cast<char>(first), static_cast<char>(second), 'z'};
            const std::string line = printable(text);
            EXPECT_EQ(line.find_first_of("\n\r\x1b\x7f\0"s), std::string::npos) << line;
            EXPECT_EQ(printable(line), line);
            EXPECT_EQ(line.front(), 'a');
            EXPECT_EQ(line.back(), 'z');
        }
}

} // namespace
} // namespace yfw::test

// Characters of texts, and texts cut between them.
#include "base/utf8.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace yfw::test {
namespace {

// -1 stands for bytes that are no character.
std::vector<long> characters(std::string_view text) {
    std::vector<long> found;
    while (!text.empty()) {
        const auto character = take_character(text);
        found.push_back(character.has_value() ? static_cast<long>(*character) : -1);
    }
    return found;
}

TEST(Characters, are_taken_one_by_one) {
    EXPECT_EQ(characters("a\u00e9\u2713\U0001f50c"), (std::vector<long>{'a', 0xe9, 0x2713, 0x1f50c}));
}

TEST(Characters, at_the_ends_of_their_lengths_are_taken) {
    EXPECT_EQ(characters("\x7f\u0080\u07ff\u0800\uffff\U00010000\U0010ffff"),
              (std::vector<long>{0x7f, 0x80, 0x7ff, 0x800, 0xffff, 0x10000, 0x10ffff}));
}

TEST(Characters, follow_bytes_that_are_none) {
    EXPECT_EQ(characters("\xff"
                         "b\xc3"),
              (std::vector<long>{-1, 'b', -1}));
    EXPECT_EQ(characters("\xe2\x82z"), (std::vector<long>{-1, -1, 'z'}));
}

TEST(Texts, are_cut_between_characters) {
    const std::string text = "a\u00e9\u2713\U0001f50c";
    const size_t ends[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 10};
    for (size_t size = 0; size < std::size(ends); size++)
        EXPECT_EQ(cut_between_characters(text, size), text.substr(0, ends[size])) << size;
}

TEST(Texts, that_are_no_utf8_are_cut_anywhere) {
    EXPECT_EQ(cut_between_characters(std::string(9, '\x80'), 7).size(), 7U);
    EXPECT_EQ(cut_between_characters("\x80\x80\x80", 1).size(), 1U);
}

} // namespace
} // namespace yfw::test

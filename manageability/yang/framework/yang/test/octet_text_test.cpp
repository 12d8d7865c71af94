// Octets as values of leaves of text, and back through base64.
#include "yang/octet_text.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

#include "base/base64.h"
#include "yang/yang_text.h"

namespace yfw::yang::test {
namespace {

using namespace std::string_literals;

// What a reader of the native leaf has of it: a C string.
std::string as_c_string(const std::string &text) {
    return text.c_str();
}

TEST(OctetsWithoutZeros, AreTheValueAsTheyAre) {
    for (const char *octets : {"", "abc", "\xff\xfe", "\xc0", "\xc0\x81", "a\xc0\x80", "\x80\xc0"}) {
        EXPECT_EQ(octet_text(octets), octets);
        EXPECT_EQ(coded_octets(octets), std::nullopt);
    }
}

TEST(OctetsWithZeros, AreCodedInWhatNoTextIs) {
    for (const std::string &octets : {"\0"s, "a\0c"s, "abc\0"s, "\0\0\0"s, "\xc0\0\xc0\x80\0"s, "\xc0\x80"s}) {
        const std::string value = as_c_string(octet_text(octets));
        EXPECT_FALSE(is_yang_text(value));
        EXPECT_EQ(coded_octets(value), octets);
    }
}

TEST(AnyOctets, ComeBackAsTheValueOfABinaryLeaf) {
    std::mt19937 random(7);
    const std::string likely = "\0\0\xc0\xc0\x80\x81"
                               "az"s;
    for (int round = 0; round < 20000; round++) {
        std::string octets(random() % 9, ' ');
        for (char &octet : octets)
            octet = random() % 4 == 0 ? static_cast<char>(random()) : likely[random() % likely.size()];
        EXPECT_EQ(binary_value(base64(as_c_string(octet_text(octets)))), base64(octets)) << base64(octets);
    }
}

TEST(TheValueOfABinaryLeaf, IsLeftAloneWhereNothingIsCoded) {
    for (const char *text : {"", "YWJj", "wIB", "wI==", "wIGA", "no base64", "wIno"})
        EXPECT_EQ(binary_value(text), text);
}

} // namespace
} // namespace yfw::yang::test

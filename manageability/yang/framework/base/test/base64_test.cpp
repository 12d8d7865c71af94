// Base64: the vectors of RFC 4648 section 10, and texts that are none.
#include "base/base64.h"

#include <gtest/gtest.h>

namespace yfw::test {
namespace {

TEST(Base64, is_that_of_the_rfc) {
    const char *const vectors[][2] = {{"", ""},
                                      {"f", "Zg=="},
                                      {"fo", "Zm8="},
                                      {"foo", "Zm9v"},
                                      {"foob", "Zm9vYg=="},
                                      {"fooba", "Zm9vYmE="},
                                      {"foobar", "Zm9vYmFy"}};
    for (const auto &[octets, text] : vectors) {
        EXPECT_EQ(base64(octets), text);
        EXPECT_EQ(from_base64(text), octets);
    }
}

TEST(Base64, carries_any_octets) {
    std::string octets;
    for (int octet = 0; octet < 256; octet++) {
        octets += static_cast<char>(octet);
        EXPECT_EQ(from_base64(base64(octets)), octets);
    }
    EXPECT_EQ(base64(std::string(3, '\0')), "AAAA");
    EXPECT_EQ(base64("\xff\xff\xfe"), "///+");
}

TEST(Base64, is_nothing_else) {
    for (const char *text : {"Zg", "Zg=", "Z", "Zg===", "====", "Zg==Zg==", "Zm 9v", "Zm9v\n", "Zm-v", "=Zg="})
        EXPECT_EQ(from_base64(text), std::nullopt) << text;
}

} // namespace
} // namespace yfw::test

// What is allowed, beside what libyang says of the same value.
#include "yang/value_check.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "yang/schemas.h"

namespace yfw::yang::test {
namespace {

constexpr const char *leaves_module = R"(module types {
  yang-version 1.1; namespace "urn:types"; prefix t;
  leaf any { type string; }
  leaf at-most { type string { length "0..5"; } }
  leaf some { type string { length "1..5"; } }
  leaf two { type string { length "2..5"; } }
  leaf gap { type string { length "0..2 | 4..6"; } }
  leaf nothing { type string { length "0"; } }
  leaf pattern { type string { length "0..5"; pattern "[a-c]*"; } }
  leaf int8 { type int8; }
  leaf int16 { type int16; }
  leaf int32 { type int32; }
  leaf int64 { type int64; }
  leaf uint8 { type uint8; }
  leaf uint16 { type uint16; }
  leaf uint32 { type uint32; }
  leaf uint64 { type uint64; }
  leaf ranged { type uint8 { range "1..20"; } }
  leaf decimal { type decimal64 { fraction-digits 2; } }
  leaf on { type boolean; }
  leaf choice { type enumeration { enum one; enum two; } }
  leaf reference { type leafref { path "../two"; } }
  leaf either { type union { type uint8; type string { length "3"; } } }
})";

const std::vector<std::string> values = {"",
                                         "a",
                                         "ab",
                                         "abc",
                                         "abcd",
                                         "abcde",
                                         "abcdef",
                                         "abcdefg",
                                         " ",
                                         " a",
                                         "ü",
                                         "üüüüü",
                                         "üüüüüü",
                                         "\U0001f600",
                                         "\U0001f600\U0001f600\U0001f600\U0001f600\U0001f600",
                                         "aaa",
                                         "0",
                                         "00",
                                         "1",
                                         "01",
                                         "+1",
                                         "-1",
                                         "-0",
                                         " 1",
                                         "1 ",
                                         "9",
                                         "10",
                                         "20",
                                         "21",
                                         "99",
                                         "100",
                                         "127",
                                         "128",
                                         "-128",
                                         "-129",
                                         "255",
                                         "256",
                                         "9999",
                                         "32767",
                                         "32768",
                                         "65535",
                                         "65536",
                                         "999999999",
                                         "2147483647",
                                         "2147483648",
                                         "4294967295",
                                         "4294967296",
                                         "999999999999999999",
                                         "9223372036854775807",
                                         "9223372036854775808",
                                         "9999999999999999999",
                                         "18446744073709551615",
                                         "18446744073709551616",
                                         "0x10",
                                         "1.5",
                                         "1.50",
                                         "true",
                                         "false",
                                         "one",
                                         "two",
                                         "three"};

class AValueCheck : public testing::TestWithParam<const char *> {
protected:
    AValueCheck() {
        ly_ctx *context = nullptr;
        ly_ctx_new(nullptr, 0, &context);
        context_.reset(context);
        lys_module *module = nullptr;
        EXPECT_EQ(lys_parse_mem(context, leaves_module, LYS_IN_YANG, &module), LY_SUCCESS);
    }

    const lysc_node *leaf(const char *name) const {
        return lys_find_path(context_.get(), nullptr, ("/types:" + std::string(name)).c_str(), 0);
    }

    struct Free {
        void operator()(ly_ctx *context) const { ly_ctx_destroy(context); }
    };
    std::unique_ptr<ly_ctx, Free> context_;
};

TEST_P(AValueCheck, SaysWhatLibyangSays) {
    const lysc_node *node = leaf(GetParam());
    ASSERT_NE(node, nullptr);
    ValueCheck check(node);
    for (int round = 0; round < 2; round++) // it may remember
        for (const std::string &value : values) {
            const char *canonical = nullptr;
            const LY_ERR status = lyd_value_validate(context_.get(), node, value.data(), value.size(), nullptr,
                                                     nullptr, &canonical);
            const ValueCheck::Result &result = check.of(value.c_str());
            EXPECT_EQ(result.is_allowed, status == LY_SUCCESS || status == LY_EINCOMPLETE)
                << '"' << value << '"';
            if (result.is_allowed && canonical != nullptr) {
                EXPECT_EQ(result.canonical.empty() ? value : result.canonical, canonical);
            }
            EXPECT_EQ(result.error.empty(), result.is_allowed);
            lydict_remove(context_.get(), canonical);
        }
}

INSTANTIATE_TEST_SUITE_P(OfALeaf, AValueCheck,
                         testing::Values("any", "at-most", "some", "two", "gap", "nothing", "pattern", "int8",
                                         "int16", "int32", "int64", "uint8", "uint16", "uint32", "uint64",
                                         "ranged", "decimal", "on", "choice", "reference", "either"),
                         [](const auto &leaf) {
                             std::string name = leaf.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

} // namespace
} // namespace yfw::yang::test

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/status.h"
#include "yfw_map.h"

namespace yfw::platform {
namespace {

constexpr const char *caller = "strings_test";
constexpr std::size_t unbounded = SIZE_MAX;

// A destination whose bytes beyond the stated size must not change.
struct Destination {
    char bytes[32];
    Destination() { std::memset(bytes, '#', sizeof bytes); }
    bool untouched_from(std::size_t size) const {
        for (std::size_t i = size; i < sizeof bytes; ++i) {
            if (bytes[i] != '#') {
                return false;
            }
        }
        return true;
    }
};

struct CopyCase {
    const char *name;
    std::size_t size;
    const char *source;
    std::size_t count;
    const char *expected;
    terrno status;
};

class ABoundedCopy : public testing::TestWithParam<CopyCase> {};

TEST_P(ABoundedCopy, TerminatesTheTextAndTellsWhenItWasCut) {
    Destination destination;
    const terrno status =
        yfw_strncpy_s(caller, destination.bytes, GetParam().size, GetParam().source, GetParam().count);
    EXPECT_EQ(status, GetParam().status);
    EXPECT_STREQ(destination.bytes, GetParam().expected);
    EXPECT_TRUE(destination.untouched_from(GetParam().size));
}

INSTANTIATE_TEST_SUITE_P(
    Sources, ABoundedCopy,
    testing::Values(CopyCase{"Fits", 8, "lldp", 7, "lldp", status_ok},
                    CopyCase{"FillsTheDestination", 8, "1234567", 8, "1234567", status_ok},
                    CopyCase{"IsOneTooLongForTheDestination", 8, "12345678", 8, "1234567", status_text_cut},
                    CopyCase{"HasExactlyTheCount", 8, "1234", 4, "1234", status_ok},
                    CopyCase{"IsLongerThanTheCount", 8, "12345", 4, "1234", status_text_cut},
                    CopyCase{"IsCutToNothingByTheCount", 8, "lldp", 0, "", status_text_cut},
                    CopyCase{"IsEmpty", 8, "", 7, "", status_ok},
                    CopyCase{"IsEmptyWithACountOfNothing", 8, "", 0, "", status_ok},
                    CopyCase{"HasNoBoundButTheDestination", 4, "lldp", unbounded, "lld", status_text_cut},
                    CopyCase{"HasNoBoundAtAll", 5, "lldp", unbounded, "lldp", status_ok},
                    CopyCase{"OnlyHasRoomForTheEnd", 1, "lldp", 8, "", status_text_cut},
                    CopyCase{"IsNull", 8, nullptr, 7, "", status_invalid_argument}),
    [](const auto &test_case) { return test_case.param.name; });

TEST(StringCopy, IsBoundedByTheDestinationAlone) {
    char whole[5];
    EXPECT_EQ(yfw_strcpy_s(caller, whole, sizeof whole, "lldp"), status_ok);
    EXPECT_STREQ(whole, "lldp");
    char cut[4];
    EXPECT_EQ(yfw_strcpy_s(caller, cut, sizeof cut, "lldp"), status_text_cut);
    EXPECT_STREQ(cut, "lld");
}

TEST(StringCopy, WorksWithinOneBuffer) {
    const std::string name = "GigabitEthernet0/0/0/1.100 towards the core";
    std::string text = "#" + name;
    EXPECT_EQ(yfw_strcpy_s(caller, text.data(), text.size() + 1, text.data() + 1), status_ok);
    EXPECT_EQ(text.c_str(), name);
    text = name + "#";
    EXPECT_EQ(yfw_strncpy_s(caller, text.data() + 1, text.size(), text.data(), name.size()), status_text_cut);
    EXPECT_EQ(text, name.substr(0, 1) + name);
}

struct AppendCase {
    const char *name;
    const char *before;
    std::size_t size;
    const char *source;
    const char *expected;
    terrno status;
};

class AnAppend : public testing::TestWithParam<AppendCase> {};

TEST_P(AnAppend, TerminatesTheTextAndTellsWhenItWasCut) {
    Destination destination;
    std::strcpy(destination.bytes, GetParam().before);
    const std::size_t written = std::max(GetParam().size, std::strlen(GetParam().before) + 1);
    EXPECT_EQ(yfw_strcat_s(caller, destination.bytes, GetParam().size, GetParam().source), GetParam().status);
    EXPECT_STREQ(destination.bytes, GetParam().expected);
    EXPECT_TRUE(destination.untouched_from(written));
}

INSTANTIATE_TEST_SUITE_P(
    Sources, AnAppend,
    testing::Values(AppendCase{"Fits", "/ll", 8, "dp", "/lldp", status_ok},
                    AppendCase{"FillsTheDestination", "/ll", 6, "dp", "/lldp", status_ok},
                    AppendCase{"IsOneTooLong", "/ll", 5, "dp", "/lld", status_text_cut},
                    AppendCase{"MeetsAFullDestination", "/lldp", 6, "x", "/lldp", status_text_cut},
                    AppendCase{"IsNothingOnAFullDestination", "/lldp", 6, "", "/lldp", status_ok},
                    AppendCase{"StartsFromNothing", "", 8, "lldp", "lldp", status_ok},
                    AppendCase{"IsNull", "/ll", 8, nullptr, "/ll", status_invalid_argument},
                    AppendCase{"MeetsAnUnendedDestination", "/lldp", 4, "x", "/ll", status_invalid_argument}),
    [](const auto &test_case) { return test_case.param.name; });

TEST(BoundedStrings, RefuseADestinationThatHoldsNothing) {
    char untouched = '#';
    EXPECT_EQ(yfw_strncpy_s(caller, nullptr, 8, "lldp", 4), status_invalid_argument);
    EXPECT_EQ(yfw_strcpy_s(caller, nullptr, 8, "lldp"), status_invalid_argument);
    EXPECT_EQ(yfw_strcat_s(caller, nullptr, 8, "lldp"), status_invalid_argument);
    EXPECT_EQ(yfw_strncpy_s(caller, &untouched, 0, "lldp", 4), status_invalid_argument);
    EXPECT_EQ(yfw_strcpy_s(caller, &untouched, 0, "lldp"), status_invalid_argument);
    EXPECT_EQ(yfw_strcat_s(caller, &untouched, 0, "lldp"), status_invalid_argument);
    EXPECT_EQ(untouched, '#');
}

TEST(BoundedStrings, NeedNoNameOfTheCaller) {
    char text[8] = "ll";
    EXPECT_EQ(yfw_strcat_s(nullptr, text, sizeof text, "dp"), status_ok);
    EXPECT_STREQ(text, "lldp");
}

struct CompareCase {
    const char *name;
    const char *a;
    std::size_t maximum;
    const char *b;
    int result;
};

class AComparison : public testing::TestWithParam<CompareCase> {};

TEST_P(AComparison, GivesTheSignOfTheDifference) {
    int result = 42;
    EXPECT_EQ(yfw_strcmp_s(caller, GetParam().a, GetParam().maximum, GetParam().b, &result), status_ok);
    EXPECT_EQ(result, GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Texts, AComparison,
                         testing::Values(CompareCase{"Equal", "true", INT64_MAX, "true", 0},
                                         CompareCase{"Less", "false", INT64_MAX, "true", -1},
                                         CompareCase{"Greater", "true", INT64_MAX, "false", 1},
                                         CompareCase{"AStartOfTheOther", "tru", INT64_MAX, "true", -1},
                                         CompareCase{"LongerThanTheOther", "truer", INT64_MAX, "true", 1},
                                         CompareCase{"EqualAsFarAsCompared", "truest", 4, "true", 0},
                                         CompareCase{"HighBytesAreUnsigned", "\xc3", INT64_MAX, "a", 1},
                                         CompareCase{"BothEmpty", "", INT64_MAX, "", 0}),
                         [](const auto &test_case) { return test_case.param.name; });

TEST(Comparison, OfNothingIsAFailureAndNeverEqual) {
    for (const auto &[a, b] :
         {std::pair<const char *, const char *>{nullptr, "true"}, {"true", nullptr}, {nullptr, nullptr}}) {
        int result = 0;
        EXPECT_EQ(yfw_strcmp_s(caller, a, unbounded, b, &result), status_invalid_argument);
        EXPECT_NE(result, 0);
    }
    EXPECT_EQ(yfw_strcmp_s(caller, "true", unbounded, "true", nullptr), status_invalid_argument);
}

TEST(HeapCopy, IsACopyOfItsOwnThatEitherFreeTakes) {
    const std::string name = "suppress-tlv-advertisement";
    for (void (*release)(void *) : {&qdos_named_free, +[](void *memory) { std::free(memory); }}) {
        char *copy = yfw_strdup(name.c_str(), "YFW MAP");
        EXPECT_NE(copy, name.c_str());
        EXPECT_STREQ(copy, name.c_str());
        release(copy);
    }
}

TEST(HeapCopy, OfNothingIsNothing) {
    EXPECT_EQ(yfw_strdup(nullptr, "YFW MAP"), nullptr);
    qdos_named_free(nullptr);
}

} // namespace
} // namespace yfw::platform

#include "frontends/netconf/filters/xsd_pattern.h"

#include <string>

#include <gtest/gtest.h>

namespace yfw::netconf {
namespace {

constexpr size_t plenty = 1000000;

std::string answer_of(const std::string &pattern, const std::string &text) {
    const std::optional<XsdPattern> compiled = XsdPattern::of(pattern);
    if (!compiled.has_value())
        return "no pattern";
    size_t left = plenty;
    const std::optional<bool> matches = compiled->matches(text, left);
    return !matches.has_value() ? "too much" : *matches ? "matches" : "differs";
}

struct PatternCase {
    const char *name;
    std::string pattern;
    std::string text;
    const char *answer;
};

class APattern : public testing::TestWithParam<PatternCase> {};

TEST_P(APattern, IsReadAsXmlSchemaDefinesIt) {
    EXPECT_EQ(answer_of(GetParam().pattern, GetParam().text), GetParam().answer);
}

// XSD 1.0 part 2, appendix F.
INSTANTIATE_TEST_SUITE_P(
    Such, APattern,
    testing::Values(
        PatternCase{"AsOneOfLetters", "[a-z]+", "abc", "matches"},
        PatternCase{"AsOneThatMatchesAPartOnly", "b", "abc", "differs"},
        PatternCase{"AsAlternativesOfWhichTheLongerIsMeant", "a|ab", "ab", "matches"},
        PatternCase{"AsTheEmptyOne", "", "", "matches"}, PatternCase{"AsADollar", "a$", "a$", "matches"},
        PatternCase{"AsACaret", "^a", "^a", "matches"}, PatternCase{"AsAFullStop", "a.c", "a\nc", "differs"},
        PatternCase{"AsARepetition", "a{2,3}", "aaaa", "differs"},
        PatternCase{"AsAnOpenRepetition", "a{2,}", "aaaa", "matches"},
        PatternCase{"AsADigitOfAnyScript", "\\d", "\u0663", "matches"},
        PatternCase{"AsAName", "\\i\\c*", "x:y-1.2", "matches"},
        PatternCase{"AsANameThatIsNone", "\\i\\c*", "1x", "differs"},
        PatternCase{"AsWords", "\\w+", "h\u00e9llo", "matches"},
        PatternCase{"AsWordsWithPunctuation", "\\w+", "a-b", "differs"},
        PatternCase{"AsNoSpaces", "\\S+", "a b", "differs"},
        PatternCase{"AsAClassWithNoSpaces", "[\\S ]+", "a b", "matches"},
        PatternCase{"AsANegativeClassWithNoSpaces", "[^\\S]+", " \t", "matches"},
        PatternCase{"AsASubtraction", "[a-z-[aeiou]]+", "xyz", "matches"},
        PatternCase{"AsASubtractionThatIsMet", "[a-z-[aeiou]]+", "xaz", "differs"},
        PatternCase{"AsASubtractionOfASubtraction", "[a-z-[a-m-[c]]]+", "cz", "matches"},
        PatternCase{"AsANegativeClass", "[^a-c]", "d", "matches"},
        PatternCase{"AsAClassOfLiterals", "[.*\\-\\]]+", ".-]*", "matches"},
        PatternCase{"AsACategory", "\\p{Lu}\\P{Lu}", "Aa", "matches"},
        PatternCase{"AsABlock", "\\p{IsCyrillic}+", "\u0436", "matches"},
        PatternCase{"AsAMacAddress", "([0-9a-f]{2}:){5}[0-9a-f]{2}", "5a:75:19:78:f3:ec", "matches"},
        PatternCase{"AsAnUnclosedClass", "[a", "a", "no pattern"},
        PatternCase{"AsAnEmptyClass", "[]", "a", "no pattern"},
        PatternCase{"AsAnUnclosedGroup", "(a", "a", "no pattern"},
        PatternCase{"AsNothingRepeated", "*", "a", "no pattern"},
        PatternCase{"AsAHalfRepetition", "a{2", "a{2", "no pattern"},
        PatternCase{"AsAnUnknownEscape", "\\z", "z", "no pattern"},
        PatternCase{"AsAnUnknownBlock", "\\p{IsNowhere}", "a", "no pattern"},
        PatternCase{"AsAScript", "\\p{Greek}", "a", "no pattern"},
        PatternCase{"AsALookahead", "(?=a)a", "a", "no pattern"},
        PatternCase{"AsAVerb", "(*ACCEPT)", "a", "no pattern"},
        PatternCase{"AsALazyRepetition", "a*?", "a", "no pattern"},
        PatternCase{"AsABackReference", "(a)\\1", "aa", "no pattern"},
        PatternCase{"AsOneThatIsTooLong", std::string(5000, 'a'), "a", "no pattern"},
        PatternCase{"AsOneThatTakesForEver", "(a*)*b", std::string(40, 'a'), "too much"},
        PatternCase{"AsOneThatTakesForEverOtherwise", "(a|aa)+b", std::string(60, 'a'), "too much"}),
    [](const auto &test) { return test.param.name; });

TEST(ACostlyPattern, IsEndedWhenItsLimitIsReached) {
    const std::optional<XsdPattern> pattern = XsdPattern::of("a*a*a*a*b");
    ASSERT_TRUE(pattern.has_value());
    size_t left = 1000;
    EXPECT_EQ(pattern->matches(std::string(10000, 'a'), left), std::nullopt);
    EXPECT_LT(left, 1000U);
}

TEST(APatternOfSubtractions, IsRefusedWhenTheyAreTooDeep) {
    std::string deep;
    for (int i = 0; i < 500; i++)
        deep += "[a-";
    EXPECT_FALSE(XsdPattern::of(deep + "[b]" + std::string(500, ']')).has_value());
}

} // namespace
} // namespace yfw::netconf

#include "base/near_word.h"

#include <initializer_list>

#include <gtest/gtest.h>

namespace yfw {
namespace {

std::string near(std::string_view word, std::initializer_list<const char *> candidates) {
    NearWord found(word);
    for (const char *candidate : candidates)
        found.consider(candidate);
    return found.found();
}

TEST(NearWord, HasALetterMoreOrLessOrAnotherOne) {
    EXPECT_EQ(near("gett", {"set", "get"}), "get");
    EXPECT_EQ(near("neigbors", {"neighbors"}), "neighbors");
    EXPECT_EQ(near("histary", {"history"}), "history");
}

TEST(NearWord, HasTwoLettersSwapped) {
    EXPECT_EQ(near("sevre", {"serve"}), "serve");
    EXPECT_EQ(near("gte", {"get"}), "get");
}

TEST(NearWord, MayDifferInCase) {
    EXPECT_EQ(near("STATUS", {"status"}), "status");
}

TEST(NearWord, IsTheOneThatComesClosestAndThenTheFirst) {
    EXPECT_EQ(near("drift", {"draft", "drifts", "drift-of"}), "draft");
    EXPECT_EQ(near("applied", {"applies", "applied"}), "applied");
}

TEST(NearWord, IsNothingWhenNothingComesClose) {
    EXPECT_EQ(near("frobnicate", {"get", "set", "rollback"}), "");
    EXPECT_EQ(near("x", {"y"}), "");
    EXPECT_EQ(near("", {"get"}), "");
    EXPECT_EQ(near("get", {}), "");
}

} // namespace
} // namespace yfw

// Comparing forests: what makes two of them the same.
#include <string>

#include <gtest/gtest.h>

#include "yang/comparison.h"
#include "yang/tree_text.h"

namespace yfw::yang::test {
namespace {

constexpr const char *module_text = R"(module orders {
  yang-version 1.1;
  namespace "urn:orders";
  prefix o;
  grouping entry {
    leaf name { type string; }
    leaf value { type string; }
    leaf-list tag { type string; }
  }
  container top {
    list of-system { key name; uses entry; }
    list of-user { key name; ordered-by user; uses entry; }
    leaf-list choice { ordered-by user; type string; }
    leaf other { type string; }
  }
})";

class TwoForests : public testing::Test {
protected:
    TwoForests() {
        ly_ctx *context = nullptr;
        EXPECT_EQ(ly_ctx_new(nullptr, 0, &context), LY_SUCCESS);
        context_.reset(context);
        EXPECT_EQ(lys_parse_mem(context, module_text, LYS_IN_YANG, nullptr), LY_SUCCESS);
    }

    bool are_same(const std::string &a, const std::string &b) {
        const DataTree first = parsed(a), second = parsed(b);
        const bool same = is_same(first.get(), second.get());
        EXPECT_EQ(is_same(second.get(), first.get()), same);
        return same;
    }

    static std::string entry(const std::string &list, const std::string &name, const std::string &more = "") {
        return "<" + list + "><name>" + name + "</name>" + more + "</" + list + ">";
    }

private:
    DataTree parsed(const std::string &content) const {
        return parse_data(context_.get(), "<top xmlns=\"urn:orders\">" + content + "</top>", LYD_XML,
                          LYD_PARSE_ONLY | LYD_PARSE_STRICT | LYD_PARSE_ORDERED);
    }

    YangContext context_;
};

TEST_F(TwoForests, AreTheSameInAnyOrderOfTheSystem) {
    const std::string a = entry("of-system", "a", "<tag>x</tag><tag>y</tag>"), b = entry("of-system", "b");
    EXPECT_TRUE(are_same(a + b, b + a));
    EXPECT_TRUE(are_same(a + b, b + entry("of-system", "a", "<tag>y</tag><tag>x</tag>")));
}

TEST_F(TwoForests, DifferInTheOrderOfTheUser) {
    const std::string a = entry("of-user", "a"), b = entry("of-user", "b"), c = entry("of-user", "c");
    EXPECT_TRUE(are_same(a + b + c, a + b + c));
    EXPECT_FALSE(are_same(a + b + c, a + c + b));
    EXPECT_FALSE(are_same(a + b, b + a));
    EXPECT_FALSE(are_same("<choice>1</choice><choice>2</choice>", "<choice>2</choice><choice>1</choice>"));
}

TEST_F(TwoForests, KeepTheOrderOfTheUserWhateverStandsAroundIt) {
    const std::string users = entry("of-user", "a") + entry("of-user", "b");
    const std::string first = entry("of-system", "a"), second = entry("of-system", "b");
    EXPECT_TRUE(are_same(first + second + users, users + second + first));
}

TEST_F(TwoForests, DifferInValuesAndInNodes) {
    const std::string a = entry("of-system", "a", "<value>1</value>"), b = entry("of-system", "b");
    EXPECT_FALSE(are_same(a + b, b + entry("of-system", "a", "<value>2</value>")));
    EXPECT_FALSE(are_same(a + b, b + entry("of-system", "a")));
    EXPECT_FALSE(are_same(a + b, a));
    EXPECT_FALSE(are_same(a + b, b + entry("of-system", "c")));
    EXPECT_FALSE(are_same("<other>1</other>", ""));
}

TEST_F(TwoForests, OfNothingAreTheSame) {
    EXPECT_TRUE(is_same(nullptr, nullptr));
}

} // namespace
} // namespace yfw::yang::test

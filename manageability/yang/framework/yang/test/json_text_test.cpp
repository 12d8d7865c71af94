// JSON of clients and devices.
#include <string>

#include <gmock/gmock.h>

#include "base/error.h"
#include "yang/json_text.h"

namespace yfw::yang::test {
namespace {

using testing::HasSubstr;

std::string refusal_of(const std::string &text) {
    try {
        parse_json(text);
        return "";
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), ErrorTag::invalid_value);
        return error.what();
    }
}

std::string repeated(const std::string &text, size_t count) {
    std::string made;
    for (size_t i = 0; i < count; i++)
        made += text;
    return made;
}

std::string objects(size_t count) {
    return "[" + repeated("{\"name\":\"a\"},", count) + "{}]";
}

std::string members(size_t count) {
    std::string text = "{";
    for (size_t i = 0; i < count; i++)
        text += (i > 0 ? ",\"" : "\"") + std::to_string(i) + "\":1";
    return text + "}";
}

TEST(ParsedJson, HasItsMembersInOrder) {
    EXPECT_EQ(parse_json(R"({"b":[1,true,null,"x",{"a":1}],"a":{}})").dump(),
              R"({"b":[1,true,null,"x",{"a":1}],"a":{}})");
}

// So many elements that it would take minutes if each looked through those before it.
TEST(ParsedJson, MayHaveManyElements) {
    EXPECT_EQ(parse_json(objects(160'000)).size(), 160'001U);
}

TEST(JsonThatIsNone, IsRefusedWithItsPlace) {
    EXPECT_THAT(refusal_of("{\"a\":"), HasSubstr("is no JSON: parse error at line 1, column 6"));
    EXPECT_THAT(refusal_of("\xff"), HasSubstr("is no JSON"));
    EXPECT_THAT(refusal_of("1 2"), HasSubstr("is no JSON"));
}

TEST(JsonWithAMemberTwice, IsRefused) {
    EXPECT_EQ(refusal_of(R"([{"a":{"b":1},"b":2},{"a":1,"a":2}])"),
              "the member \"a\" is repeated in one object");
    EXPECT_EQ(refusal_of(R"([{"a":{"b":1},"b":{"a":1}},{"a":1}])"), "");
}

TEST(JsonThatIsTooDeep, IsRefused) {
    EXPECT_EQ(refusal_of(repeated("[", 128) + "1" + repeated("]", 128)), "");
    EXPECT_EQ(refusal_of(repeated("[", 129) + "1" + repeated("]", 129)), "values are nested deeper than 128");
    EXPECT_EQ(refusal_of(repeated("{\"a\":", 129) + "1" + repeated("}", 129)),
              "values are nested deeper than 128");
}

TEST(JsonWithATooLargeNumber, IsRefused) {
    EXPECT_EQ(refusal_of("[1e999]"), "a number is too large");
}

// Finding a member of an object takes time by their number.
TEST(JsonWithTooManyMembers, IsRefused) {
    EXPECT_EQ(refusal_of(members(1000)), "");
    EXPECT_EQ(refusal_of(members(1001)), "an object has more than 1000 members");
}

} // namespace
} // namespace yfw::yang::test

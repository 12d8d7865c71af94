// Protocol violations: each ends its own session and affects no other.
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_server.h"

namespace yfw::test {
namespace {

const std::string request = rpc_message("<get-config><source><running/></source></get-config>");

std::string nested(int depth) {
    std::string text = "<a xmlns=\"urn:example\">";
    for (int i = 1; i < depth; i++)
        text += "<a>";
    for (int i = 0; i < depth; i++)
        text += "</a>";
    return text;
}

struct BrokenCase {
    const char *name;
    std::string bytes; // after the greeting, in chunks unless the session is of base:1.0
    std::string version = base_1_1;
    bool ends_sending = false; // the client then closes its end for sending
};

class ABrokenConversation : public NetconfTest, public testing::WithParamInterface<BrokenCase> {};

TEST_P(ABrokenConversation, EndsItsOwnSessionAlone) {
    NetconfClient holder(server().socket());
    expect_ok(holder.rpc(lock("running")));
    NetconfClient broken(server().socket(), {GetParam().version});
    ASSERT_NE(broken.rpc(get_config("running")).child("data"), nullptr);
    broken.connection().send(GetParam().bytes);
    if (GetParam().ends_sending)
        broken.connection().finish_sending();
    EXPECT_TRUE(broken.connection().until_closed().has_value());
    expect_ok(holder.rpc(edit_config("running", name_edit("new"))));
    NetconfClient next(server().socket());
    EXPECT_EQ(name(next), "new");
    EXPECT_EQ(error_tag(next.rpc(lock("running"))), "lock-denied");
}

INSTANTIATE_TEST_SUITE_P(
    Of, ABrokenConversation,
    testing::Values(
        BrokenCase{"AnEndOfChunksFirst", "\n##\n"}, BrokenCase{"AnEmptyChunk", "\n#0\n"},
        BrokenCase{"LettersForASize", "\n#abc\n"}, BrokenCase{"ALeadingZero", "\n#01\na"},
        BrokenCase{"ASizeOfSixtyFourBits", "\n#18446744073709551615\n" + request},
        BrokenCase{"ASizeBeyondTheGrammar", "\n#4294967296\n" + request},
        BrokenCase{"TheLargestSizeOfTheGrammar", "\n#4294967295\n" + request},
        BrokenCase{"ASizeBeyondTheLimit", "\n#10485761\n" + request},
        BrokenCase{"AHeaderWithoutEnd", "\n#1111111111111111111111"},
        BrokenCase{"AnEndOfChunksInsideAChunk", "\n#" + std::to_string(request.size() + 9) + "\n" + request +
                                                    "\n##\n" + in_one_chunk(request)},
        BrokenCase{"AChunkThatIsTooLong", "\n#5\n" + request + "\n##\n"}, BrokenCase{"Garbage", "garbage"},
        BrokenCase{"TheOldFraming", with_end_of_message(request)},
        BrokenCase{"GarbageAfterARequest", in_one_chunk(request) + "garbage"},
        BrokenCase{"BytesAfterClose", in_one_chunk(rpc_message("<close-session/>")) + "garbage"},
        BrokenCase{"AnEndInsideAHeader", "\n#1", base_1_1, true},
        BrokenCase{"AnEndInsideAChunk", "\n#100\nabc", base_1_1, true},
        BrokenCase{"AnEndInsideAMessage", request.substr(0, 30), base_1_0, true},
        BrokenCase{"AnEndBetweenMessages", "", base_1_1, true},
        BrokenCase{"ADocumentType", in_one_chunk("<!DOCTYPE rpc>" + request)},
        BrokenCase{"ADocumentTypeInTheOldFraming", with_end_of_message("<!DOCTYPE rpc>" + request), base_1_0},
        BrokenCase{"TwentyThousandNestedElements", in_one_chunk(rpc_message(nested(20000)))},
        BrokenCase{"TwentyThousandNestedElementsInAFilter",
                   in_one_chunk(rpc_message("<get>" + subtree(nested(20000)) + "</get>"))},
        BrokenCase{"NoXml", in_one_chunk("garbage")},
        BrokenCase{"AnUnclosedElement", in_one_chunk(request.substr(0, 90))},
        BrokenCase{"TwoRoots", in_one_chunk(request + request)},
        BrokenCase{"AnUnknownEntity", in_one_chunk(rpc_message("<get>&x;</get>"))},
        BrokenCase{"InvalidUtf8", in_one_chunk(rpc_message("<get>\xff</get>"))},
        BrokenCase{"AZeroByte", in_one_chunk(rpc_message("<get>" + std::string(1, '\0') + "</get>"))},
        BrokenCase{"AnotherHello", in_one_chunk(hello_message({base_1_1}))},
        BrokenCase{"AReply", in_one_chunk("<rpc-reply message-id=\"1\" xmlns=\"" + base_namespace + "\"/>")}),
    [](const auto &test) { return test.param.name; });

// --- the server gives the reason where it can ---

class AMalformedMessage : public NetconfTest, public testing::WithParamInterface<BrokenCase> {};

TEST_P(AMalformedMessage, IsAnsweredAsSuchBeforeTheEnd) {
    NetconfClient client(server().socket());
    client.send(GetParam().bytes);
    expect_error(client.receive(), "rpc", "malformed-message");
}

INSTANTIATE_TEST_SUITE_P(
    Being, AMalformedMessage,
    testing::Values(BrokenCase{"ADocumentType", "<!DOCTYPE rpc>" + request},
                    BrokenCase{"DeeplyNested", rpc_message(nested(20000))}, BrokenCase{"NoXml", "garbage"},
                    BrokenCase{"Unclosed", request.substr(0, 90)},
                    BrokenCase{"AReply", "<rpc-reply message-id=\"1\" xmlns=\"" + base_namespace + "\"/>"}),
    [](const auto &test) { return test.param.name; });

// RFC 6241 appendix A: the tag is new in base:1.1, and must not be sent to others.
TEST_P(AMalformedMessage, EndsASessionOfTheOldProtocolWithoutAnAnswer) {
    NetconfClient client(server().socket(), {base_1_0});
    client.send(GetParam().bytes);
    EXPECT_EQ(client.connection().until_closed(), "");
}

// --- messages that are too long ---

// AddressSanitizer keeps freed memory for a while.
#ifdef YFW_SANITIZED
constexpr unsigned memory_factor = 2;
#else
constexpr unsigned memory_factor = 1;
#endif

class AnEndlessMessage : public NetconfProcessTest, public testing::WithParamInterface<std::string> {};

TEST_P(AnEndlessMessage, IsNotReadToItsEnd) {
    NetconfClient other(server().socket());
    NetconfClient sender(server().socket(), {GetParam()});
    const std::string mebibyte = (GetParam() == base_1_1 ? "\n#1048576\n" : "") + std::string(1 << 20, ' ');
    int taken = 0;
    while (taken < 200 && sender.connection().send(mebibyte, std::chrono::seconds(5)))
        taken++;
    EXPECT_GE(taken, 60);
    EXPECT_LT(taken, 80);
    EXPECT_TRUE(sender.connection().until_closed().has_value());
    EXPECT_LT(server().peak_memory(), memory_factor * (400u << 20));
    EXPECT_EQ(name(other), "r1.example.net");
}

INSTANTIATE_TEST_SUITE_P(In, AnEndlessMessage, testing::Values(base_1_0, base_1_1),
                         [](const auto &test) { return test.param == base_1_1 ? "Chunks" : "OldFraming"; });

TEST(AServerWithSmallerLimits, RefusesWhatIsBeyondThem) {
    const NetconfServer server({"--max-chunk", "1000", "--max-message", "3000"});
    const std::string space(995, ' ');
    const auto chunk = [](const std::string &text) {
        return "\n#" + std::to_string(text.size()) + "\n" + text;
    };
    NetconfClient good(server.socket());
    good.connection().send(chunk(request) + chunk(space) + chunk(space) + "\n##\n");
    EXPECT_EQ(good.receive().name, "rpc-reply");
    good.connection().send(chunk(request) + chunk(space) + chunk(space) + chunk(space) + chunk(space));
    EXPECT_TRUE(good.connection().until_closed().has_value());
    NetconfClient next(server.socket());
    next.connection().send("\n#1001\n");
    EXPECT_TRUE(next.connection().until_closed().has_value());
}

} // namespace
} // namespace yfw::test

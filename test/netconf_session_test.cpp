// Sessions: hello, messages in order, end.
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_server.h"
#include "support/eventually.h"

namespace yfw::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Pair;

// --- hello ---

class NetconfHello : public NetconfTest {};

TEST_F(NetconfHello, TellsWhatTheServerOffers) {
    const NetconfClient client(server().socket());
    EXPECT_EQ(client.hello().name, "hello");
    EXPECT_EQ(client.hello().ns, base_namespace);
    for (const char *offered :
         {"base:1.0", "base:1.1", "capability:writable-running:1.0", "capability:candidate:1.0",
          "capability:confirmed-commit:1.1", "capability:rollback-on-error:1.0", "capability:validate:1.1",
          "capability:xpath:1.0"})
        EXPECT_THAT(client.capabilities(), Contains(std::string("urn:ietf:params:netconf:") + offered));
    const std::string module = "http://openconfig.net/yang/lldp?module=openconfig-lldp&revision=";
    EXPECT_THAT(client.capabilities(), Contains(testing::StartsWith(module)));
}

TEST_F(NetconfHello, TellsNothingOfWhatIsNotOffered) {
    const NetconfClient client(server().socket());
    for (const char *missing : {"startup", "url", "partial-lock"})
        EXPECT_THAT(client.capabilities(),
                    testing::Not(Contains(testing::HasSubstr(std::string(":") + missing + ":"))));
}

TEST_F(NetconfHello, GivesEachSessionANumberOfItsOwn) {
    std::set<unsigned long> numbers;
    std::vector<std::unique_ptr<NetconfClient>> clients;
    for (int i = 0; i < 10; i++) {
        clients.push_back(std::make_unique<NetconfClient>(server().socket()));
        numbers.insert(std::stoul(clients.back()->session_id()));
    }
    EXPECT_EQ(numbers.size(), 10u);
    EXPECT_GT(*numbers.begin(), 0u);
}

struct VersionCase {
    const char *name;
    std::vector<std::string> capabilities;
};

class ASession : public NetconfHello, public testing::WithParamInterface<VersionCase> {};

TEST_P(ASession, IsServedInTheNewestVersionThatTheClientSpeaks) {
    NetconfClient client(server().socket(), GetParam().capabilities);
    EXPECT_EQ(client.rpc(get_config("running")).name, "rpc-reply");
    expect_ok(client.rpc("<close-session/>"));
}

INSTANTIATE_TEST_SUITE_P(Of, ASession,
                         testing::Values(VersionCase{"Base10", {base_1_0}}, VersionCase{"Base11", {base_1_1}},
                                         VersionCase{"Both", {base_1_0, base_1_1}},
                                         VersionCase{"BothWithWhiteSpaceAndUnknownOnes",
                                                     {"\n " + base_1_0 + "\n", base_1_1, "urn:example:other"}}),
                         [](const auto &test) { return test.param.name; });

TEST_F(NetconfHello, MayNameABaseVersionWithParameters) {
    NetconfClient client(server().socket(), {base_1_0 + "?x=y"});
    expect_ok(client.rpc("<discard-changes/>"));
}

TEST_F(NetconfHello, MayComeTogetherWithTheFirstRequests) {
    Connection connection(server().socket());
    connection.send(with_end_of_message(hello_message({base_1_1})) +
                    in_one_chunk(rpc_message(get_config("running"), "1")) +
                    in_one_chunk(rpc_message("<close-session/>", "2")));
    const std::optional<std::string> all = connection.until_closed();
    ASSERT_TRUE(all.has_value());
    EXPECT_THAT(*all, testing::HasSubstr("message-id=\"1\""));
    EXPECT_THAT(*all, testing::HasSubstr("message-id=\"2\""));
}

// GoogleTest copies each case several times in every run of the program, so long ones are not kept as text.
struct HelloCase {
    const char *name;
    std::string bytes;
    size_t spaces = 0; // that follow
};

class AWrongHello : public NetconfHello, public testing::WithParamInterface<HelloCase> {};

TEST_P(AWrongHello, ClosesItsSessionAndNoOther) {
    NetconfClient other(server().socket());
    Connection connection(server().socket());
    connection.send(GetParam().bytes + std::string(GetParam().spaces, ' '));
    EXPECT_TRUE(connection.until_closed().has_value());
    EXPECT_EQ(name(other), "r1.example.net");
    NetconfClient next(server().socket());
    EXPECT_EQ(name(next), "r1.example.net");
}

INSTANTIATE_TEST_SUITE_P(
    Being, AWrongHello,
    testing::Values(
        HelloCase{"WithASessionId",
                  with_end_of_message(hello_message({base_1_0}, "<session-id>4</session-id>"))},
        HelloCase{"WithTwoListsOfCapabilities",
                  with_end_of_message(hello_message({base_1_0}, "<capabilities><capability>" + base_1_0 +
                                                                    "</capability></capabilities>"))},
        HelloCase{"WithoutABaseVersion", with_end_of_message(hello_message({"urn:example:other"}))},
        HelloCase{"WithoutCapabilities",
                  with_end_of_message("<hello xmlns=\"" + base_namespace + "\"></hello>")},
        HelloCase{"InAnotherNamespace", with_end_of_message("<hello xmlns=\"urn:example:other\"><capabilities>"
                                                            "<capability>" +
                                                            base_1_0 + "</capability></capabilities></hello>")},
        HelloCase{"ARequest", with_end_of_message(rpc_message("<get/>"))},
        HelloCase{"NoXml", with_end_of_message("hello")}, HelloCase{"Empty", with_end_of_message("")},
        HelloCase{"WithADocumentType", with_end_of_message("<!DOCTYPE hello>" + hello_message({base_1_0}))},
        HelloCase{"ChunkedFromTheStart", in_one_chunk(hello_message({base_1_1})), size_t{70} << 20}),
    [](const auto &test) { return test.param.name; });

TEST_F(NetconfHello, IsAwaitedForHalfAMinute) {
    Connection silent(server().socket()), half(server().socket());
    half.send(hello_message({base_1_0}).substr(0, 40));
    const std::chrono::seconds limit(45);
    EXPECT_TRUE(silent.until_closed(limit).has_value());
    EXPECT_TRUE(half.until_closed(limit).has_value());
    NetconfClient next(server().socket());
    EXPECT_EQ(name(next), "r1.example.net");
}

class AnImpatientServer : public NetconfTest {
protected:
    AnImpatientServer() : NetconfTest({"--hello-timeout", "1"}) {}
};

TEST_F(AnImpatientServer, ClosesWhoDoesNotSayHelloInTimeAndNobodyElse) {
    NetconfClient idle(server().socket());
    const std::string hello = with_end_of_message(hello_message({base_1_0}));
    Connection silent(server().socket()), half(server().socket()), nearly(server().socket());
    half.send(hello.substr(0, hello.size() / 2));
    nearly.send(hello.substr(0, hello.size() - 1));
    const std::chrono::seconds limit(10);
    for (Connection *each : {&silent, &half, &nearly})
        EXPECT_TRUE(each->until_closed(limit).has_value());
    EXPECT_EQ(name(idle), "r1.example.net");
    NetconfClient next(server().socket());
    EXPECT_EQ(name(next), "r1.example.net");
}

// A byte of a slow hello does not restart the timeout.
TEST_F(AnImpatientServer, DoesNotWaitLongerForAHelloThatComesByteByByte) {
    Connection slow(server().socket());
    const std::string hello = hello_message({base_1_0}, std::string(1000, ' '));
    size_t sent = 0;
    EXPECT_TRUE(eventually(
        [&] {
            slow.send(hello.substr(sent++ % hello.size(), 1));
            return slow.until_closed(std::chrono::milliseconds(0)).has_value();
        },
        std::chrono::seconds(10)));
    NetconfClient next(server().socket());
    EXPECT_EQ(name(next), "r1.example.net");
}

// --- messages ---

class NetconfMessage : public NetconfTest {};

TEST_F(NetconfMessage, IsAnsweredWithAllAttributesOfItsRpc) {
    NetconfClient client(server().socket());
    for (const char *operation : {"<get/>", "<nonsense/>", "<close-session/>"}) {
        client.send("<rpc message-id=\"x &lt;&amp;&quot; y\" xmlns=\"" + base_namespace +
                    "\" xmlns:ex=\"urn:example\" ex:user-id=\"fred\" other=\"\">" + operation + "</rpc>");
        const Xml reply = client.receive();
        EXPECT_EQ(reply.name, "rpc-reply");
        EXPECT_EQ(reply.ns, base_namespace);
        EXPECT_THAT(reply.attributes, testing::IsSupersetOf({Pair("message-id", "x <&\" y"),
                                                             Pair("user-id", "fred"), Pair("other", "")}));
        EXPECT_THAT(reply.printed, testing::HasSubstr("urn:example"));
    }
}

TEST_F(NetconfMessage, IsRefusedWithoutAMessageIdAndTheSessionGoesOn) {
    NetconfClient client(server().socket());
    client.send("<rpc xmlns=\"" + base_namespace + "\" other=\"1\"><get/></rpc>");
    const Xml reply = client.receive();
    const Xml error = expect_error(reply, "rpc", "missing-attribute");
    EXPECT_EQ(error_info(error, "bad-attribute"), "message-id");
    EXPECT_EQ(error_info(error, "bad-element"), "rpc");
    EXPECT_EQ(name(client), "r1.example.net");
}

TEST_F(NetconfMessage, IsRefusedWithAMessageIdOfAnotherProtocol) {
    NetconfClient client(server().socket());
    client.send("<rpc xmlns=\"" + base_namespace + "\" xmlns:z=\"urn:z\" z:message-id=\"1\"><get/></rpc>");
    const Xml reply = client.receive();
    EXPECT_EQ(error_info(expect_error(reply, "rpc", "missing-attribute"), "bad-attribute"), "message-id");
}

TEST_F(NetconfMessage, MayHaveAPrefixForTheProtocol) {
    NetconfClient client(server().socket());
    client.send("<nc:rpc xmlns:nc=\"" + base_namespace +
                "\" nc:message-id=\"9\" message-id=\"9\"><nc:get-config><nc:source><nc:running/></nc:source>"
                "</nc:get-config></nc:rpc>");
    const Xml reply = client.receive();
    EXPECT_NE(reply.child("data"), nullptr) << reply.printed;
}

struct OperationCase {
    const char *name;
    std::string operations;
    std::vector<std::string> tags;
};

class AnRpcThatIsRefused : public NetconfMessage, public testing::WithParamInterface<OperationCase> {};

TEST_P(AnRpcThatIsRefused, GetsItsTagAndTheSessionGoesOn) {
    NetconfClient client(server().socket());
    EXPECT_THAT(GetParam().tags, Contains(error_tag(client.rpc(GetParam().operations))));
    EXPECT_EQ(name(client), "r1.example.net");
}

INSTANTIATE_TEST_SUITE_P(
    With, AnRpcThatIsRefused,
    testing::Values(
        OperationCase{"NoOperation", "", {"missing-element"}},
        OperationCase{"TextAlone", "text", {"missing-element", "malformed-message"}},
        OperationCase{"TwoOperations", "<get/><get/>", {"unknown-element", "bad-element", "malformed-message"}},
        OperationCase{"AnUnknownOperation", "<nonsense/>", {"operation-not-supported", "unknown-element"}},
        OperationCase{"AnOperationOfAnUnknownNamespace",
                      "<get xmlns=\"urn:example\"/>",
                      {"operation-not-supported", "unknown-namespace"}},
        OperationCase{"GetConfigWithoutASource", "<get-config/>", {"missing-element"}},
        OperationCase{"GetConfigWithAnEmptySource", "<get-config><source/></get-config>", {"missing-element"}},
        OperationCase{"GetConfigOfAnUnknownDatastore",
                      get_config("nonsense"),
                      {"invalid-value", "unknown-element", "bad-element"}},
        OperationCase{"GetWithAnUnknownParameter", "<get><nonsense/></get>", {"unknown-element"}},
        OperationCase{"LockWithAnUnknownParameter",
                      "<lock><target><running/></target><nonsense/></lock>",
                      {"unknown-element"}},
        OperationCase{"UnlockWithAnUnknownParameter",
                      "<unlock><target><running/></target><nonsense/></unlock>",
                      {"unknown-element"}},
        OperationCase{"DiscardChangesWithAnUnknownParameter",
                      "<discard-changes><nonsense/></discard-changes>",
                      {"unknown-element"}},
        OperationCase{"DeleteConfigWithAnUnknownParameter",
                      "<delete-config><target><running/></target><nonsense/></delete-config>",
                      {"unknown-element"}},
        OperationCase{"KillSessionWithAnUnknownParameter",
                      "<kill-session><session-id>4294967295</session-id><nonsense/></kill-session>",
                      {"unknown-element"}},
        OperationCase{"CloseSessionWithAnUnknownParameter",
                      "<close-session><nonsense/></close-session>",
                      {"unknown-element"}},
        OperationCase{"LockWithoutATarget", "<lock/>", {"missing-element"}},
        OperationCase{"KillSessionWithoutASession", "<kill-session/>", {"missing-element"}},
        OperationCase{"KillSessionOfNoNumber",
                      "<kill-session><session-id>x</session-id></kill-session>",
                      {"invalid-value"}}),
    [](const auto &test) { return test.param.name; });

TEST_F(NetconfMessage, IsAnsweredInTheOrderOfTheRequests) {
    NetconfClient client(server().socket());
    std::string stream;
    for (int i = 0; i < 200; i++)
        stream +=
            in_one_chunk(rpc_message(i % 5 == 0   ? "<get/>"
                                     : i % 5 == 1 ? "<nonsense/>"
                                     : i % 5 == 2 ? edit_config("candidate", name_edit("n" + std::to_string(i)))
                                     : i % 5 == 3 ? get_config("candidate")
                                                  : "<discard-changes/>",
                                     "m" + std::to_string(i)));
    ASSERT_TRUE(client.connection().send(stream));
    for (int i = 0; i < 200; i++) {
        const Xml reply = client.receive();
        ASSERT_EQ(reply.attributes.at("message-id"), "m" + std::to_string(i));
        if (i % 5 == 3) {
            EXPECT_THAT(reply.printed, testing::HasSubstr("n" + std::to_string(i - 1) + "<"));
        }
    }
}

// --- ends ---

class NetconfEnd : public NetconfTest {};

TEST_F(NetconfEnd, ComesAfterTheReplyToCloseSessionAndRequestsAfterItAreIgnored) {
    NetconfClient client(server().socket());
    client.send(rpc_message("<close-session/>", "7"));
    client.connection().send(in_one_chunk(rpc_message(edit_config("running", name_edit("late")), "8")));
    expect_ok(client.receive());
    EXPECT_EQ(client.connection().until_closed(), "");
    NetconfClient next(server().socket());
    EXPECT_EQ(name(next), "r1.example.net");
}

TEST_F(NetconfEnd, ComesToAnotherSessionByKillSession) {
    NetconfClient killer(server().socket()), victim(server().socket());
    expect_ok(victim.rpc(lock("running")));
    expect_ok(killer.rpc("<kill-session><session-id>" + victim.session_id() + "</session-id></kill-session>"));
    EXPECT_TRUE(victim.connection().until_closed().has_value());
    EXPECT_TRUE(eventually([&] { return error_tag(killer.rpc(lock("running"))).empty(); }));
}

TEST_F(NetconfEnd, IsRefusedForTheOwnSessionAndForOnesThatAreNot) {
    NetconfClient client(server().socket());
    for (const std::string &id : {client.session_id(), std::string("0"), std::string("4294967295"),
                                  std::string("4294967297"), std::string("-1"), std::string()})
        EXPECT_EQ(error_tag(client.rpc("<kill-session><session-id>" + id + "</session-id></kill-session>")),
                  "invalid-value")
            << id;
    EXPECT_EQ(name(client), "r1.example.net");
}

TEST_F(NetconfEnd, OfAClientThatVanishesAtOnceIsNoticedByNobody) {
    for (int i = 0; i < 50; i++)
        const Connection vanishing(server().socket());
    NetconfClient next(server().socket());
    EXPECT_EQ(name(next), "r1.example.net");
}

TEST_F(NetconfEnd, OfAClientThatVanishesBeforeItsRepliesIsNoticedByNobody) {
    for (int i = 0; i < 50; i++) {
        NetconfClient vanishing(server().socket());
        vanishing.send(rpc_message("<get/>"));
    }
    NetconfClient next(server().socket());
    EXPECT_EQ(name(next), "r1.example.net");
}

// Requests from before the end of the stream are still answered.
TEST_F(NetconfEnd, ComesAfterTheLastReplyWhenTheClientSendsNoMore) {
    NetconfClient client(server().socket());
    client.send(rpc_message("<get/>", "1"));
    client.connection().finish_sending();
    EXPECT_EQ(client.receive().attributes.at("message-id"), "1");
    EXPECT_TRUE(client.connection().until_closed().has_value());
}

// Including replies that wait for the client to read.
TEST_F(NetconfEnd, ComesAfterAllRepliesThatAreReadLate) {
    constexpr int count = 30; // more than fits into the socket's buffer
    NetconfClient client(server().socket()), witness(server().socket());
    for (int i = 0; i < count; i++)
        client.send(rpc_message("<get/>", std::to_string(i)));
    const std::string asked = "<get><filter type=\"xpath\" xmlns:m=\"urn:ietf:params:xml:ns:yang:"
                              "ietf-netconf-monitoring\" select=\"/m:netconf-state/m:sessions/m:session"
                              "[m:session-id='" +
                              client.session_id() + "']/m:in-rpcs\"/></get>";
    ASSERT_TRUE(eventually([&] {
        const Xml reply = witness.rpc(asked);
        return reply.text_at("data/netconf-state/sessions/session/in-rpcs") == std::to_string(count);
    }));
    client.connection().finish_sending();
    name(witness); // the server has seen the end
    for (int i = 0; i < count; i++)
        EXPECT_EQ(client.receive().attributes.at("message-id"), std::to_string(i));
    EXPECT_TRUE(client.connection().until_closed().has_value());
}

} // namespace
} // namespace yfw::test

// What an operator can set and see: limits of sessions, where clients come from, and the log.
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_events.h"
#include "netconf_server.h"
#include "support/eventually.h"
#include "support/files.h"

namespace yfw::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// --- idle sessions ---

class AnIdleTimeout : public NetconfTest {
protected:
    AnIdleTimeout() : NetconfTest({"--idle-timeout", "1"}) {}
};

TEST_F(AnIdleTimeout, EndsASessionThatSendsNothing) {
    NetconfClient watcher(server().socket());
    expect_ok(watcher.rpc(create_subscription()));
    NetconfClient idle(server().socket());
    expect_ok(idle.rpc(lock("running")));
    EXPECT_EQ(idle.connection().until_closed(), "");
    const Xml end = next_event(watcher, session_end, [&](const Xml &event) {
        return event.text_at("session-id") == idle.session_id();
    });
    EXPECT_EQ(end.text_at("termination-reason"), "timeout");
    expect_ok(watcher.rpc(lock("running")));
}

TEST_F(AnIdleTimeout, LeavesSubscribersAlone) {
    NetconfClient subscriber(server().socket()), idle(server().socket());
    expect_ok(subscriber.rpc(create_subscription()));
    EXPECT_TRUE(idle.connection().until_closed().has_value());
    expect_ok(subscriber.rpc(lock("running")));
}

TEST_F(AnIdleTimeout, StartsAnewWithEachRequest) {
    NetconfClient busy(server().socket());
    EXPECT_FALSE(eventually([&] { return busy.rpc(get_config("running")).child("data") == nullptr; },
                            std::chrono::seconds(3)));
}

// --- how many sessions ---

TEST(ALimitOfSessions, TurnsNewOnesAwayUntilOneEnds) {
    const NetconfServer server({"--max-sessions", "2"});
    const auto greets = [&] {
        Connection connection(server.socket());
        return connection.until_closed(std::chrono::milliseconds(500)) != std::optional<std::string>("");
    };
    ASSERT_TRUE(eventually(greets)); // the session that waited for the server has ended
    auto first = std::make_unique<NetconfClient>(server.socket());
    NetconfClient second(server.socket());
    EXPECT_FALSE(greets());
    expect_ok(second.rpc(lock("running")));
    first.reset();
    EXPECT_TRUE(eventually(greets));
}

// --- where clients come from ---

class ASource : public NetconfTest {
protected:
    // Opens a session that sends this first, and returns its id.
    std::string session_after(const std::string &line) {
        expect_ok(watcher.rpc(create_subscription()));
        connection.receive_to("]]>]]>");
        connection.send(line + with_end_of_message(hello_message({base_1_0})));
        start = next_event(watcher, session_start);
        return start.text_at("session-id");
    }
    std::string host_of(const std::string &session) {
        const Xml reply = watcher.rpc("<get><filter type=\"xpath\" xmlns:m=\"urn:ietf:params:xml:ns:yang:"
                                      "ietf-netconf-monitoring\" select=\"/m:netconf-state/m:sessions/"
                                      "m:session[m:session-id='" +
                                      session + "']\"/></get>");
        EXPECT_EQ(reply.text_at("data/netconf-state/sessions/session/session-id"), session) << reply.printed;
        return reply.text_at("data/netconf-state/sessions/session/source-host");
    }
    NetconfClient watcher{server().socket()};
    Connection connection{server().socket()};
    Xml start;
};

TEST_F(ASource, IsShownAmongTheSessionsAndInTheirEvents) {
    EXPECT_EQ(host_of(session_after("yfw-source 192.0.2.7\n")), "192.0.2.7");
    EXPECT_EQ(start.text_at("source-host"), "192.0.2.7");
}

TEST_F(ASource, MayBeOfTheNewerProtocol) {
    EXPECT_EQ(host_of(session_after("yfw-source 2001:db8::7\n")), "2001:db8::7");
}

TEST_F(ASource, IsUnknownWhereNobodyTellsIt) {
    EXPECT_EQ(host_of(session_after("")), "");
    EXPECT_EQ(start.child("source-host"), nullptr);
}

TEST_F(ASource, IsAnAddress) {
    EXPECT_EQ(host_of(session_after("yfw-source <evil/>\n")), "");
}

// --- the log ---

class TheLog : public NetconfProcessTest {
protected:
    std::vector<std::string> lines() { return lines_of(server().process().errors()); }
    bool has_line_with(const std::string &start, const std::string &end) {
        return eventually([&] {
            const std::vector<std::string> all = lines();
            return std::any_of(all.begin(), all.end(), [&](const std::string &line) {
                return line.starts_with("yfw: " + start) && line.find(end) != std::string::npos;
            });
        });
    }
};

TEST_F(TheLog, HasALineForWhatASessionDoes) {
    NetconfClient client(server().socket());
    const std::string session = "session " + client.session_id() + " of " + own_user();
    EXPECT_TRUE(has_line_with(session, "begins"));
    expect_ok(client.rpc(edit_config("running", name_edit("new"))));
    EXPECT_TRUE(has_line_with(session, "changes the running configuration: merge /lldp/config/system-name"));
    EXPECT_TRUE(has_line_with(session, "<edit-config> is done"));
    expect_ok(client.rpc(edit_config("candidate", name_edit("newer"))));
    expect_ok(client.rpc("<commit/>"));
    EXPECT_TRUE(has_line_with(session, "<commit> is done"));
    expect_ok(client.rpc("<close-session/>"));
    EXPECT_TRUE(has_line_with(session, "ends: closed"));
}

TEST_F(TheLog, SaysWhyARequestIsRefusedInOneLine) {
    NetconfClient client(server().socket());
    client.rpc(edit_config("running", config_edit(leaf_edit("hello-timer", "a\nyfw: forged"))));
    EXPECT_TRUE(has_line_with("session ", "<edit-config> is refused: invalid-value /lldp/config/hello-timer"));
    EXPECT_THAT(lines(), Not(Contains(StartsWith("yfw: forged"))));
    EXPECT_THAT(lines(), Each(StartsWith("yfw: ")));
}

// A name of one line can be looked for in the others.
TEST_F(TheLog, ShowsLettersAndEscapesTheRestAlikeInAllLines) {
    NetconfClient client(server().socket());
    const std::string name = "h\xc3\xa9\xe2\x80\xae"; // with a right-to-left override
    const std::string shown = "[name='h\xc3\xa9\\u202e']";
    expect_ok(client.rpc(edit_config("running", interface_edit(name, "true"))));
    EXPECT_TRUE(has_line_with("session ",
                              "changes the running configuration: merge /lldp/interfaces/interface" + shown));
    client.rpc(edit_config("running", interface_edit(name, "true", "create")));
    EXPECT_TRUE(has_line_with("session ", "is refused: data-exists /lldp/interfaces/interface" + shown));
    client.rpc(edit_config("running", interface_edit(name, "h\xc3\xa9\xe2\x80\xae")));
    EXPECT_TRUE(has_line_with("session ", "interface" + shown + "/config/enabled: \"h\xc3\xa9\\u202e\""));
}

// The text around the cut is whole letters.
TEST_F(TheLog, CutsLongLinesBetweenLetters) {
    NetconfClient client(server().socket());
    std::string name;
    for (int i = 0; i < 1500; i++)
        name += "\xc3\xa9";
    for (const char *shift : {"", "x"})
        client.rpc(edit_config("running", interface_edit(shift + name, "true", "delete")));
    EXPECT_TRUE(has_line_with("session ", "..."));
    EXPECT_THAT(lines(), Each(Not(HasSubstr("\\xc3"))));
}

TEST_F(TheLog, DoesNotMentionReads) {
    NetconfClient client(server().socket());
    client.rpc(get_config("running"));
    client.rpc(lock("candidate"));
    EXPECT_TRUE(has_line_with("session ", "<lock> is done"));
    EXPECT_THAT(lines(), Each(Not(HasSubstr("get-config"))));
}

} // namespace
} // namespace yfw::test

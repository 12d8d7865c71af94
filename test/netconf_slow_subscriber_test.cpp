// A subscriber that reads nothing while many events happen.
#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_events.h"
#include "netconf_server.h"

namespace yfw::test {
namespace {

using std::chrono::seconds;

constexpr int interfaces_of_an_edit = 20;

// An edit of interfaces with long names, so that its event is long: an edit of many leaves takes the server
// longer.
std::string long_edit(int number) {
    std::string interfaces;
    for (int i = 0; i < interfaces_of_an_edit; i++) {
        const std::string name = std::string(2000, 'x') + std::to_string(i);
        interfaces += "<interface><name>" + name + "</name><config><name>" + name + "</name><enabled>" +
                      (number % 2 == 0 ? "true" : "false") + "</enabled></config></interface>";
    }
    return edit_config("running", lldp("<interfaces>" + interfaces + "</interfaces>"));
}

class ASubscriberThatReadsNothing : public NetconfProcessTest {
protected:
    bool is_there(const NetconfClient &session) {
        const Xml reply = client.rpc(
            "<get><filter type=\"xpath\" xmlns:m=\"urn:ietf:params:xml:ns:yang:"
            "ietf-netconf-monitoring\" select=\"/m:netconf-state/m:sessions/m:session[m:session-id='" +
            session.session_id() + "']\"/></get>");
        return reply.at("data/netconf-state/sessions/session") != nullptr;
    }
    NetconfClient client{server().socket()}, greedy{server().socket()}, reader{server().socket()};
};

// The queue is bounded: the session must be closed before a hundred megabytes are queued.
TEST_F(ASubscriberThatReadsNothing, IsClosedAndNobodyElseNotices) {
    constexpr size_t enough = 100u << 20;
    const std::string filter = subtree("<netconf-config-change xmlns=\"" + event_namespace + "\"/>");
    for (NetconfClient *each : {&greedy, &reader})
        expect_ok(each->rpc(create_subscription(filter)));
    expect_ok(client.rpc(long_edit(0)));
    const size_t before = server().peak_memory();
    size_t told = next_event(reader, config_change).printed.size();
    ASSERT_GT(told, 10000u);
    int edits = 1;
    for (; told < enough && is_there(greedy); edits++) {
        const auto start = std::chrono::steady_clock::now();
        expect_ok(client.rpc(long_edit(edits)));
        EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(5));
        const Xml change = next_event(reader, config_change);
        EXPECT_GE(targets_of(change).size(), size_t{interfaces_of_an_edit});
        told += change.printed.size();
    }
    EXPECT_FALSE(is_there(greedy)) << told << " bytes of events";
    EXPECT_TRUE(greedy.connection().until_closed().has_value());
    EXPECT_LT(server().peak_memory() - before, enough + kept_by_sanitizer);
    EXPECT_EQ(name(reader), "r1.example.net");
}

TEST_F(ASubscriberThatReadsNothing, GetsEverythingWhenItReadsAtLast) {
    const std::string filter = subtree("<netconf-config-change xmlns=\"" + event_namespace + "\"/>");
    expect_ok(greedy.rpc(create_subscription(filter)));
    for (int i = 0; i < 20; i++)
        expect_ok(client.rpc(edit_config("running", name_edit("n" + std::to_string(i)))));
    for (int i = 0; i < 20; i++)
        EXPECT_THAT(targets_of(event_of(greedy.notification().value())),
                    testing::ElementsAre("/lldp/config/system-name"));
    EXPECT_EQ(name(greedy), "n19");
}

} // namespace
} // namespace yfw::test

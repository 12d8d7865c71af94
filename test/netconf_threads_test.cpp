// Many clients at once. ThreadSanitizer finds data races; without it, the tests only check that every request
// is answered.
#include <exception>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "netconf_events.h"
#include "netconf_server.h"

namespace yfw::test {
namespace {

constexpr int rounds = 12;

// What one client does while the others do other things.
using Work = std::function<void(NetconfClient &client, int round)>;

class ManyClients : public NetconfTest {
protected:
    // Runs all work concurrently, each in its own session, for `rounds` rounds.
    void at_once(const std::vector<Work> &all) {
        std::vector<std::thread> threads;
        for (const Work &work : all)
            threads.emplace_back([this, work] { repeat(work); });
        for (std::thread &each : threads)
            each.join();
    }

    // An exception must not leave the thread.
    void repeat(const Work &work) {
        try {
            NetconfClient client(server().socket());
            for (int round = 0; round < rounds; round++)
                work(client, round);
        } catch (const std::exception &error) {
            ADD_FAILURE() << error.what();
        }
    }

    Work kills_a_session() {
        return [this](NetconfClient &client, int) {
            NetconfClient victim(server().socket());
            expect_ok(client.rpc("<kill-session><session-id>" + victim.session_id() +
                                 "</session-id></kill-session>"));
            EXPECT_TRUE(victim.connection().until_closed().has_value());
        };
    }

    // Subscribes, and disconnects without closing the session.
    Work subscribes() {
        return [this](NetconfClient &, int) {
            NetconfClient subscriber(server().socket());
            expect_ok(subscriber.rpc(create_subscription(start_time(long_ago))));
            next_event(subscriber, session_start);
        };
    }
};

// Other sessions may hold a lock, have edited the candidate, or have an unconfirmed commit.
void expect_ok_or_in_use(const Xml &reply) {
    static const std::set<std::string> taken{"", "lock-denied", "in-use", "operation-failed", "invalid-value"};
    EXPECT_TRUE(taken.contains(error_tag(reply))) << reply.printed;
}

void reads(NetconfClient &client, int round) {
    const Xml reply = client.rpc(round % 2 == 0 ? "<get/>" : get_config("candidate"));
    EXPECT_NE(reply.child("data"), nullptr) << reply.printed;
}

void edits(NetconfClient &client, int round) {
    expect_ok_or_in_use(client.rpc(edit_config("running", name_edit("name-" + std::to_string(round)))));
}

void locks(NetconfClient &client, int round) {
    const std::string datastore = round % 2 == 0 ? "running" : "candidate";
    const Xml reply = client.rpc(lock(datastore));
    expect_ok_or_in_use(reply);
    if (error_tag(reply).empty())
        expect_ok(client.rpc(unlock(datastore)));
}

void commits_to_be_confirmed(NetconfClient &client, int round) {
    expect_ok_or_in_use(client.rpc(edit_config("candidate", name_edit("new-" + std::to_string(round)))));
    expect_ok_or_in_use(client.rpc("<commit><confirmed/><confirm-timeout>1</confirm-timeout></commit>"));
    expect_ok_or_in_use(client.rpc(round % 3 == 0   ? "<cancel-commit/>"
                                   : round % 3 == 1 ? "<commit/>"
                                                    : "<discard-changes/>"));
}

TEST_F(ManyClients, AreAllAnsweredWhateverTheOthersDo) {
    at_once({reads, reads, edits, edits, locks, commits_to_be_confirmed, kills_a_session(), subscribes()});
    NetconfClient last(server().socket());
    EXPECT_FALSE(name(last).empty());
}

TEST_F(ManyClients, AreDroppedWhenTheServerEnds) {
    NetconfClient idle(server().socket()), subscriber(server().socket()), busy(server().socket());
    expect_ok(subscriber.rpc(create_subscription()));
    for (int i = 0; i < rounds; i++)
        busy.send(rpc_message("<get/>"));
    server().stop();
    for (NetconfClient *each : {&idle, &subscriber, &busy})
        EXPECT_TRUE(each->connection().until_closed().has_value());
}

} // namespace
} // namespace yfw::test

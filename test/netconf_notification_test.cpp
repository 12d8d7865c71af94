// Subscriptions: what is refused, what a filter passes, what is replayed, and when they end.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_events.h"
#include "netconf_server.h"
#include "support/eventually.h"

namespace yfw::test {
namespace {

using std::chrono::seconds;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using Strings = std::vector<std::string>;

const std::string date_and_time =
    "^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}(\\.[0-9]+)?(Z|[+-][0-9]{2}:[0-9]{2})$";
const std::string original = "r1.example.net";

class NetconfNotification : public NetconfTest {
protected:
    void subscribe(const std::string &content = "") { expect_ok(subscriber.rpc(create_subscription(content))); }
    void edit(const std::string &leaf, const std::string &value) {
        expect_ok(client.rpc(
            edit_config("running", lldp("<config><" + leaf + ">" + value + "</" + leaf + "></config>"))));
    }
    void edit_name(const std::string &value) { edit("system-name", value); }
    void kill_session(const NetconfClient &victim) {
        expect_ok(
            client.rpc("<kill-session><session-id>" + victim.session_id() + "</session-id></kill-session>"));
    }

    NetconfClient subscriber{server().socket()}, client{server().socket()};
};

// --- what is offered ---

TEST_F(NetconfNotification, IsOfferedInTheHello) {
    for (const char *offered : {"notification:1.0", "interleave:1.0"})
        EXPECT_THAT(client.capabilities(),
                    Contains(std::string("urn:ietf:params:netconf:capability:") + offered));
}

class TheStreams : public NetconfNotification, public testing::WithParamInterface<std::string> {};

TEST_P(TheStreams, AreToldAsData) {
    const Xml reply = client.rpc("<get>" + GetParam() + "</get>");
    const Xml *streams = reply.at("data/netconf/streams");
    ASSERT_NE(streams, nullptr) << reply.printed;
    EXPECT_EQ(reply.at("data/netconf")->ns, stream_namespace);
    ASSERT_EQ(streams->children.size(), 1u);
    EXPECT_EQ(streams->text_at("stream/name"), "NETCONF");
    EXPECT_NE(streams->text_at("stream/description"), "");
    EXPECT_EQ(streams->text_at("stream/replaySupport"), "true");
    EXPECT_THAT(streams->text_at("stream/replayLogCreationTime"), testing::ContainsRegex(date_and_time));
}

INSTANTIATE_TEST_SUITE_P(
    By, TheStreams,
    testing::Values("", subtree("<netconf xmlns=\"" + stream_namespace + "\"/>"),
                    subtree("<netconf xmlns=\"" + stream_namespace +
                            "\"><streams><stream><name>NETCONF</name>"
                            "</stream></streams></netconf>"),
                    "<filter type=\"xpath\" xmlns:s=\"" + stream_namespace +
                        "\" select=\"/s:netconf/s:streams/s:stream[s:name='NETCONF']\"/>"));

// --- what is refused ---

struct SubscriptionCase {
    const char *name;
    std::string content;
    std::string tag;
    std::string bad_element{};
};

class AWrongSubscription : public NetconfNotification, public testing::WithParamInterface<SubscriptionCase> {};

TEST_P(AWrongSubscription, IsRefusedAndARightOneIsTakenThen) {
    const Xml reply = subscriber.rpc(create_subscription(GetParam().content));
    EXPECT_EQ(error_tag(reply), GetParam().tag) << reply.printed;
    if (!GetParam().bad_element.empty() && reply.child("rpc-error") != nullptr) {
        EXPECT_EQ(error_info(*reply.child("rpc-error"), "bad-element"), GetParam().bad_element);
    }
    subscribe();
    edit_name("new");
    next_event(subscriber, config_change);
}

std::string filter_by_xpath(const std::string &expression) {
    return "<filter type=\"xpath\" xmlns:ncn=\"" + event_namespace + "\" select=\"" + expression + "\"/>";
}

std::string many_elements() {
    std::string all;
    for (int i = 0; i < 10000; i++)
        all += "<a/>";
    return all;
}

const std::string next_year = time_from_now(std::chrono::hours(24 * 365));
const std::string started = start_time(long_ago);

INSTANTIATE_TEST_SUITE_P(
    With, AWrongSubscription,
    testing::Values(
        SubscriptionCase{"AnUnknownStream", "<stream>nonsense</stream>", "invalid-value"},
        SubscriptionCase{"AnUnknownParameter", "<nonsense/>", "unknown-element", "nonsense"},
        SubscriptionCase{"AParameterOfAnotherNamespace", "<stream xmlns=\"urn:example\">NETCONF</stream>",
                         "unknown-namespace", "stream"},
        SubscriptionCase{"AStopWithoutAStart", stop_time(next_year), "missing-element", "startTime"},
        SubscriptionCase{"AStartInTheFuture", start_time(next_year), "bad-element", "startTime"},
        SubscriptionCase{"AStartInTheFarFuture", start_time("9999-12-31T23:59:59Z"), "bad-element",
                         "startTime"},
        SubscriptionCase{"AStopBeforeTheStart", started + stop_time("1999-12-31T23:59:59Z"), "bad-element",
                         "stopTime"},
        SubscriptionCase{"AStartThatIsAWord", start_time("yesterday"), "invalid-value"},
        SubscriptionCase{"AStartThatIsADate", start_time("2024-01-01"), "invalid-value"},
        SubscriptionCase{"AStartWithoutAZone", start_time("2024-01-01T00:00:00"), "invalid-value"},
        SubscriptionCase{"AStartInAMonthThatIsNot", start_time("2024-13-01T00:00:00Z"), "invalid-value"},
        SubscriptionCase{"AStartThatIsEmpty", start_time(""), "invalid-value"},
        SubscriptionCase{"AStopThatIsAWord", started + stop_time("tomorrow"), "invalid-value"},
        SubscriptionCase{"AFilterOfAnUnknownType", "<filter type=\"nonsense\"/>", "bad-attribute"},
        SubscriptionCase{"AnXPathFilterWithoutSelect", "<filter type=\"xpath\"/>", "missing-attribute"},
        SubscriptionCase{"AnXPathFilterThatIsNoExpression", filter_by_xpath("/ncn:x[["), "invalid-value"},
        SubscriptionCase{"AnXPathFilterOfAnUndeclaredPrefix", filter_by_xpath("/x:y"), "invalid-value"},
        SubscriptionCase{"AnXPathFilterThatTakesTooLongForEachEvent",
                         filter_by_xpath("//*[count(//*[count(//*[count(//*)>0])>0])>0]"), "resource-denied"},
        SubscriptionCase{"ASubtreeFilterThatIsTooLong",
                         subtree(std::string(20000, ' ') + "<a/>" + many_elements()), "too-big"},
        SubscriptionCase{"AnXPathFilterThatIsANumber", filter_by_xpath("count(/*)"), "invalid-value"}),
    [](const auto &test) { return test.param.name; });

TEST_F(NetconfNotification, IsSubscribedOnceInASession) {
    subscribe();
    expect_error(subscriber.rpc(create_subscription()), "protocol", "operation-failed");
    edit_name("new");
    next_event(subscriber, config_change);
}

// --- what is sent ---

TEST_F(NetconfNotification, HasItsTimeAndItsEvent) {
    subscribe("<stream>NETCONF</stream>");
    edit_name("new");
    const std::optional<Xml> notification = subscriber.notification();
    ASSERT_TRUE(notification.has_value());
    EXPECT_THAT(notification->text_at("eventTime"), testing::ContainsRegex(date_and_time));
    EXPECT_EQ(notification->children.front().name, "eventTime");
    EXPECT_EQ(event_of(*notification).ns, event_namespace);
}

class InBothFramings : public NetconfNotification, public testing::WithParamInterface<std::string> {};

TEST_P(InBothFramings, NotificationsCome) {
    NetconfClient other(server().socket(), {GetParam()});
    expect_ok(other.rpc(create_subscription(started)));
    next_event(other, "replayComplete");
    edit_name("new");
    next_event(other, config_change);
    EXPECT_EQ(name(other), "new");
}

INSTANTIATE_TEST_SUITE_P(Of, InBothFramings, testing::Values(base_1_0, base_1_1),
                         [](const auto &test) { return test.param == base_1_1 ? "Chunks" : "EndOfMessage"; });

TEST_F(NetconfNotification, ComesInTheOrderOfTheChanges) {
    const Strings leaves{"system-name", "system-description", "hello-timer"};
    subscribe();
    Strings edited, told, times;
    for (size_t i = 0; i < 30; i++) {
        edit(leaves[i % 3], std::to_string(10 + i));
        edited.push_back("/lldp/config/" + leaves[i % 3]);
    }
    while (told.size() < edited.size()) {
        const std::optional<Xml> notification = subscriber.notification();
        ASSERT_TRUE(notification.has_value());
        times.push_back(notification->text_at("eventTime"));
        for (const std::string &each : targets_of(event_of(*notification)))
            told.push_back(each);
    }
    EXPECT_EQ(told, edited);
    EXPECT_TRUE(std::is_sorted(times.begin(), times.end()));
}

TEST_F(NetconfNotification, ComesToEverySubscriber) {
    std::vector<std::unique_ptr<NetconfClient>> subscribers;
    for (int i = 0; i < 20; i++) {
        subscribers.push_back(std::make_unique<NetconfClient>(server().socket()));
        expect_ok(subscribers.back()->rpc(create_subscription()));
    }
    edit_name("new");
    for (const auto &each : subscribers)
        EXPECT_EQ(next_event(*each, config_change).text_at("changed-by/session-id"), client.session_id());
}

TEST_F(NetconfNotification, ComesToNobodyWhoDidNotSubscribe) {
    subscribe();
    edit_name("new");
    next_event(subscriber, config_change);
    EXPECT_EQ(name(client), "new");
    EXPECT_FALSE(client.notification(std::chrono::milliseconds(0)).has_value());
}

TEST_F(NetconfNotification, LeavesItsSessionFreeForEveryOperation) {
    subscribe();
    expect_ok(subscriber.rpc(lock("candidate")));
    expect_ok(subscriber.rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(subscriber.rpc("<validate><source><candidate/></source></validate>"));
    expect_ok(subscriber.rpc("<commit/>"));
    expect_ok(subscriber.rpc(unlock("candidate")));
    EXPECT_EQ(name(subscriber), "new");
    EXPECT_EQ(error_tag(subscriber.rpc("<nonsense/>")), "operation-not-supported");
    next_event(subscriber, config_change);
    expect_ok(subscriber.rpc("<close-session/>"));
    EXPECT_TRUE(subscriber.connection().until_closed().has_value());
}

TEST_F(NetconfNotification, IsCountedWhereTheSessionsAre) {
    const std::string state = "urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring";
    const auto count = [&](const std::string &select) {
        const Xml reply = client.rpc("<get><filter type=\"xpath\" xmlns:m=\"" + state + "\" select=\"" +
                                     "/m:netconf-state/" + select + "/m:out-notifications\"/></get>");
        const Xml *data = reply.at("data/netconf-state");
        const std::string text = data == nullptr ? "" : data->text_at("sessions/session/out-notifications");
        return data == nullptr ? "" : text.empty() ? data->text_at("statistics/out-notifications") : text;
    };
    subscribe(subtree("<netconf-config-change xmlns=\"" + event_namespace + "\"/>"));
    for (int i = 0; i < 3; i++) {
        edit_name("n" + std::to_string(i));
        next_event(subscriber, config_change);
    }
    for (const std::string &place :
         {"m:sessions/m:session[m:session-id='" + subscriber.session_id() + "']", std::string("m:statistics")})
        EXPECT_TRUE(eventually([&] { return count(place) == "3"; })) << place << " has " << count(place);
    EXPECT_EQ(count("m:sessions/m:session[m:session-id='" + client.session_id() + "']"), "0");
}

// --- filters ---

struct FilterCase {
    const char *name;
    std::string filter;
    Strings names; // of the events sent for: a change, a new session, its kill, another session's close
};

class AFilter : public NetconfNotification, public testing::WithParamInterface<FilterCase> {
protected:
    void make_events() {
        edit_name("new");
        const NetconfClient killed(server().socket());
        kill_session(killed);
        NetconfClient closed(server().socket());
        expect_ok(closed.rpc("<close-session/>"));
    }
};

TEST_P(AFilter, LetsTheseEventsThrough) {
    subscribe(GetParam().filter);
    make_events();
    Strings names;
    while (names.size() < GetParam().names.size()) {
        const std::optional<Xml> notification = subscriber.notification();
        ASSERT_TRUE(notification.has_value()) << testing::PrintToString(names);
        names.push_back(event_of(*notification).name);
    }
    EXPECT_THAT(names, testing::UnorderedElementsAreArray(GetParam().names));
}

TEST_P(AFilter, LetsNoOthersThroughAndNotTheEndsOfAReplay) {
    NetconfClient watcher(server().socket());
    expect_ok(watcher.rpc(create_subscription()));
    make_events();
    next_event(watcher, session_end,
               [](const Xml &event) { return event.text_at("termination-reason") == "closed"; });
    subscribe(GetParam().filter + started + stop_time(time_from_now(seconds(1))));
    Strings wanted = GetParam().names;
    wanted.insert(wanted.end(), {"replayComplete", "notificationComplete"});
    EXPECT_THAT(names_of(events_to(subscriber, "notificationComplete")),
                testing::UnorderedElementsAreArray(wanted));
}

std::string event_filter(const std::string &name, const std::string &content = "") {
    return "<" + name + " xmlns=\"" + event_namespace + "\">" + content + "</" + name + ">";
}

const std::string killed_end = event_filter(session_end, "<termination-reason>killed</termination-reason>");

INSTANTIATE_TEST_SUITE_P(
    By, AFilter,
    testing::Values(
        FilterCase{"SubtreeOfAnEvent", subtree(event_filter(config_change)), {config_change}},
        FilterCase{"SubtreeOfTwoEvents",
                   subtree(event_filter(config_change) + killed_end),
                   {config_change, session_end}},
        FilterCase{"SubtreeInNetconfsOwnNamespace",
                   "<filter xmlns=\"" + base_namespace + "\">" + event_filter(config_change) + "</filter>",
                   {config_change}},
        FilterCase{"SubtreeOfAValue", subtree(killed_end), {session_end}},
        FilterCase{"SubtreeOfAnotherValue",
                   subtree(event_filter(session_end, "<termination-reason>timeout</termination-reason>")),
                   {}},
        FilterCase{"SubtreeOfNothing", subtree(""), {}},
        FilterCase{"SubtreeOfAnUnknownEvent", subtree("<nonsense xmlns=\"urn:example\"/>"), {}},
        FilterCase{"XPathOfAnEvent", filter_by_xpath("/ncn:netconf-config-change"), {config_change}},
        FilterCase{"XPathOfTwoEvents",
                   filter_by_xpath("/ncn:netconf-config-change | /ncn:netconf-session-end"
                                   "[ncn:termination-reason='killed']"),
                   {config_change, session_end}},
        FilterCase{"XPathOfAValue",
                   filter_by_xpath("/ncn:netconf-session-end[ncn:termination-reason='killed']"),
                   {session_end}},
        FilterCase{"XPathInNetconfsOwnNamespace",
                   "<filter xmlns=\"" + base_namespace + "\" type=\"xpath\" xmlns:ncn=\"" + event_namespace +
                       "\" select=\"/ncn:netconf-config-change\"/>",
                   {config_change}},
        FilterCase{
            "XPathThatMeansNothingForItsEvent",
            filter_by_xpath("/ncn:netconf-config-change[count('a')] | /ncn:netconf-session-end[ncn:killed-by]"),
            {session_end}},
        FilterCase{"XPathOfNothing", filter_by_xpath("/ncn:netconf-session-end[ncn:killed-by='0']"), {}}),
    [](const auto &test) { return test.param.name; });

// An event that would take too long to filter is sent rather than lost, and other sessions are not affected.
TEST_F(NetconfNotification, IsToldWhenItIsTooLongForItsFilter) {
    subscribe(filter_by_xpath("//*[//*[ncn:nonsense]]"));
    edit_name("short");
    std::string interfaces;
    for (int i = 0; i < 1000; i++)
        interfaces += "<interface><name>p" + std::to_string(i) +
                      "</name><config><enabled>false</enabled></config></interface>";
    expect_ok(client.rpc(edit_config("running", lldp("<interfaces>" + interfaces + "</interfaces>"))));
    const std::optional<Xml> first = subscriber.notification();
    ASSERT_TRUE(first.has_value());
    EXPECT_GE(targets_of(event_of(*first)).size(), 1000u);
}

TEST_F(NetconfNotification, OfADifferentFilterInEachSessionComesToThatSession) {
    NetconfClient second(server().socket());
    subscribe(subtree(event_filter(config_change)));
    expect_ok(second.rpc(create_subscription(subtree(event_filter(session_start)))));
    edit_name("new");
    const NetconfClient third(server().socket());
    EXPECT_EQ(event_of(subscriber.notification().value()).name, config_change);
    EXPECT_EQ(event_of(second.notification().value()).text_at("session-id"), third.session_id());
}

// --- replay ---

const std::string changes_alone = subtree(event_filter(config_change));

class AReplay : public NetconfNotification {
protected:
    // Makes two edits, the second at a later time than the first, and returns both times.
    Strings times_of_two_edits() {
        NetconfClient watcher(server().socket());
        expect_ok(watcher.rpc(create_subscription(changes_alone)));
        Strings times;
        const auto edit_once = [&] {
            edit_name("n" + std::to_string(edits_++));
            times.push_back(watcher.notification().value().text_at("eventTime"));
            return times.back() != times.front();
        };
        eventually(edit_once);
        return times;
    }

private:
    int edits_ = 0;
};

TEST_F(AReplay, ComesAfterTheReplyAndBeforeWhatIsLive) {
    edit_name("one");
    edit_name("two");
    subscriber.send(rpc_message(create_subscription(changes_alone + started)));
    expect_ok(subscriber.receive());
    EXPECT_THAT(names_of(events_to(subscriber, "replayComplete")),
                ElementsAre(config_change, config_change, "replayComplete"));
    edit("hello-timer", "40");
    EXPECT_THAT(targets_of(event_of(subscriber.notification().value())),
                ElementsAre("/lldp/config/hello-timer"));
}

TEST_F(AReplay, TellsWhatHappenedBeforeTheSessionBegan) {
    const NetconfClient gone(server().socket());
    kill_session(gone);
    NetconfClient later(server().socket());
    expect_ok(later.rpc(create_subscription(started)));
    const std::vector<Xml> events = events_to(later, "replayComplete");
    for (const std::string &name : {session_start, session_end}) {
        const std::vector<Xml> named = events_by(events, name);
        EXPECT_TRUE(std::any_of(named.begin(), named.end(), [&](const Xml &event) {
            return event.text_at("session-id") == gone.session_id();
        })) << name;
    }
    EXPECT_EQ(events.back().ns, stream_namespace);
}

TEST_F(AReplay, BeginsAtItsStart) {
    const Strings times = times_of_two_edits();
    ASSERT_NE(times.front(), times.back());
    subscribe(changes_alone + start_time(times.back()) + stop_time(time_from_now(seconds(1))));
    EXPECT_THAT(names_of(events_to(subscriber, "notificationComplete")),
                ElementsAre(config_change, "replayComplete", "notificationComplete"));
}

TEST_F(AReplay, TakesAStartInAnotherZone) {
    edit_name("new");
    subscribe(changes_alone + start_time("2000-01-01T05:30:00.5+05:30"));
    EXPECT_THAT(names_of(events_to(subscriber, "replayComplete")),
                ElementsAre(config_change, "replayComplete"));
}

struct FarTimeCase {
    const char *name;
    std::string start, stop;
    Strings names; // of the events up to the end of the replay
};

class AFarTime : public AReplay, public testing::WithParamInterface<FarTimeCase> {};

TEST_P(AFarTime, IsTakenAsItIsMeant) {
    edit_name("new");
    subscribe(changes_alone + start_time(GetParam().start) + stop_time(GetParam().stop));
    EXPECT_THAT(names_of(events_to(subscriber, GetParam().names.back())),
                testing::ElementsAreArray(GetParam().names));
}

const Strings one_change{config_change, "replayComplete"};

INSTANTIATE_TEST_SUITE_P(
    Of, AFarTime,
    testing::Values(FarTimeCase{"TheFirstYear", "0001-01-01T00:00:00Z", "2200-01-01T00:00:00Z", one_change},
                    FarTimeCase{"TheLastYear", long_ago, "9999-12-31T23:59:59.999Z", one_change},
                    FarTimeCase{"ACenturyFromNow", long_ago, "2300-01-01T00:00:00Z", one_change},
                    FarTimeCase{"ACenturyLongGone",
                                "1600-01-01T00:00:00Z",
                                "1600-01-01T00:00:01Z",
                                {"replayComplete", "notificationComplete"}}),
    [](const auto &test) { return test.param.name; });

TEST_F(AReplay, IsCompleteWhenNothingIsKept) {
    subscribe(changes_alone + started);
    EXPECT_THAT(names_of(events_to(subscriber, "replayComplete")), ElementsAre("replayComplete"));
}

TEST_F(AReplay, EndsAtAStopInThePastAtOnce) {
    edit_name("new");
    subscribe(changes_alone + started + stop_time("2000-01-02T00:00:00Z"));
    const std::vector<Xml> events = events_to(subscriber, "notificationComplete");
    EXPECT_THAT(names_of(events), ElementsAre("replayComplete", "notificationComplete"));
    EXPECT_EQ(events.back().ns, stream_namespace);
}

TEST_F(AReplay, IsNotAskedForWithoutAStart) {
    edit_name("new");
    subscribe(changes_alone);
    edit("hello-timer", "40");
    EXPECT_THAT(targets_of(event_of(subscriber.notification().value())),
                ElementsAre("/lldp/config/hello-timer"));
}

// --- ends ---

class AStop : public NetconfNotification {};

TEST_F(AStop, LetsLiveEventsComeUntilThen) {
    const auto stop = std::chrono::steady_clock::now() + seconds(3);
    subscribe(changes_alone + started + stop_time(time_from_now(seconds(3))));
    next_event(subscriber, "replayComplete");
    edit_name("new");
    EXPECT_THAT(names_of(events_to(subscriber, "notificationComplete")),
                ElementsAre(config_change, "notificationComplete"));
    EXPECT_GE(std::chrono::steady_clock::now(), stop - seconds(1)); // times may be rounded to seconds
}

TEST_F(AStop, EndsTheSubscriptionAndNotTheSession) {
    NetconfClient witness(server().socket());
    expect_ok(witness.rpc(create_subscription(changes_alone)));
    subscribe(changes_alone + started + stop_time("2000-01-02T00:00:00Z"));
    next_event(subscriber, "notificationComplete");
    edit_name("unheard");
    next_event(witness, config_change);
    EXPECT_EQ(name(subscriber), "unheard");
    EXPECT_FALSE(subscriber.notification(std::chrono::milliseconds(0)).has_value());
    subscribe(changes_alone);
    edit("hello-timer", "40");
    EXPECT_THAT(targets_of(event_of(subscriber.notification().value())),
                ElementsAre("/lldp/config/hello-timer"));
}

TEST_F(NetconfNotification, EndsWithItsSession) {
    edit_name("first"); // the store stays open from the first commit on
    const size_t before = server().descriptors();
    for (int i = 0; i < 20; i++) {
        NetconfClient vanishing(server().socket()), closing(server().socket());
        expect_ok(vanishing.rpc(create_subscription(started)));
        expect_ok(closing.rpc(create_subscription(started + stop_time(next_year))));
        expect_ok(closing.rpc("<close-session/>"));
    }
    edit_name("new");
    EXPECT_TRUE(eventually([&] { return server().descriptors() <= before; })) << server().descriptors();
    EXPECT_EQ(name(client), "new");
}

} // namespace
} // namespace yfw::test

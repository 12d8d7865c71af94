// The RPC Subscribe, without a transport.
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "frontends/gnmi/paths/path_text.h"
#include "frontends/gnmi/subscriptions/coalescing.h"
#include "frontends/gnmi/subscriptions/stream.h"
#include "gnmi_fixture.h"
#include "yang/edit.h"

namespace yfw::gnmi::test {
namespace {

using namespace std::chrono_literals;
using List = ::gnmi::SubscriptionList;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const std::string eth1 = "/lldp/interfaces/interface[name=eth1]";
const std::string neighbor = eth1 + "/neighbors/neighbor[id=r2.example.net#eth1]";

// "/a/b = 1" and "- /a" for the updates and deletes of a message, with the prefix before each path; "sync".
std::vector<std::string> lines_of(const ::gnmi::SubscribeResponse &response) {
    if (response.sync_response())
        return {"sync"};
    std::vector<std::string> lines;
    const ::gnmi::Path &prefix = response.update().prefix();
    for (const ::gnmi::Path &path : response.update().delete_())
        lines.push_back("- " + to_text(prefix, path));
    for (const ::gnmi::Update &update : response.update().update())
        lines.push_back(to_text(prefix, update.path()) + " = " + written(update.val()) +
                        (update.duplicates() > 0 ? " x" + std::to_string(update.duplicates()) : ""));
    return lines;
}

// A client that takes what it is sent.
class Client {
public:
    Client(ServedDevice &device, Publisher &publisher, const Caller &caller, WaitingLimits limits = {})
        : stream_(
              device.target(), publisher, caller, {}, [this] { wake(); }, limits) {}

    void send(const ::gnmi::SubscribeRequest &request) { stream_.receive(request); }
    void send(const List &list) {
        ::gnmi::SubscribeRequest request;
        *request.mutable_subscribe() = list;
        send(request);
    }
    void poll() {
        ::gnmi::SubscribeRequest request;
        request.mutable_poll();
        send(request);
    }

    // Everything that there is now.
    std::vector<std::string> take() {
        std::vector<std::string> lines;
        while (const SharedMessage message = stream_.take()) {
            last_ = message->message();
            for (std::string &line : lines_of(last_))
                lines.push_back(std::move(line));
        }
        return lines;
    }

    // Waits until there is something.
    std::vector<std::string> wait_for_lines(std::chrono::milliseconds limit = 20s) {
        const auto end = std::chrono::steady_clock::now() + limit;
        for (;;) {
            std::vector<std::string> lines = take();
            std::unique_lock<std::mutex> lock(mutex_);
            if (!lines.empty() || !woken_.wait_until(lock, end, [this] { return is_woken_; }))
                return lines;
            is_woken_ = false;
        }
    }

    const ::gnmi::SubscribeResponse &last() const { return last_; }
    Stream &stream() { return stream_; }

private:
    void wake() {
        const std::lock_guard<std::mutex> guard(mutex_);
        is_woken_ = true;
        woken_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable woken_;
    bool is_woken_ = false;
    ::gnmi::SubscribeResponse last_;
    Stream stream_;
};

struct Item {
    std::string path;
    ::gnmi::SubscriptionMode mode = ::gnmi::ON_CHANGE;
    std::chrono::nanoseconds sample{0};
    bool suppress_redundant = false;
    std::chrono::nanoseconds heartbeat{0};
};

List list(List::Mode mode, const std::vector<Item> &items, ::gnmi::Encoding encoding = ::gnmi::PROTO) {
    List made;
    made.set_mode(mode);
    made.set_encoding(encoding);
    for (const Item &item : items) {
        ::gnmi::Subscription &subscription = *made.add_subscription();
        *subscription.mutable_path() = path(item.path);
        subscription.set_mode(item.mode);
        subscription.set_sample_interval(static_cast<uint64_t>(item.sample.count()));
        subscription.set_suppress_redundant(item.suppress_redundant);
        subscription.set_heartbeat_interval(static_cast<uint64_t>(item.heartbeat.count()));
    }
    return made;
}

class ASubscription : public testing::Test {
protected:
    // A commit that sets leaves of /lldp/config, given as JSON members.
    void configure(const std::string &members) {
        const yang::EditNode edit = yang::parse_edit(
            schemas(), R"({"openconfig-lldp:lldp":{"config":{)" + members + "}}}", yang::Operation::merge);
        device_.service().datastores().edit(device_.caller(), device::Datastore::running, edit, false);
    }

    // What the device knows of r2 is of r9 from now on.
    void rename_neighbor() {
        const auto entry = [](const std::string &name) {
            return "<device-id>" + name + "</device-id>\n            <lldp-neighbor>\n" +
                   "              <receiving-interface-name>eth1</receiving-interface-name>\n" +
                   "              <device-id>" + name + "</device-id>";
        };
        device_.change_state(entry("r2.example.net"), entry("r9.example.net"));
    }

    static constexpr const char *without_name = R"("@system-name":{"ietf-netconf:operation":"remove"})";

    ServedDevice device_;
    Publisher publisher_{device_.target(), [](const std::string &) {}};
    Client client_{device_, publisher_, device_.caller()};
};

// ---- once

TEST_F(ASubscription, OnceEndsWithTheValuesAndASync) {
    client_.send(list(List::ONCE, {{"/lldp/config"}}));
    EXPECT_THAT(client_.take(),
                ElementsAre("/lldp/config/enabled = true", "/lldp/config/system-name = 'r1.example.net'",
                            "/lldp/config/system-description = 'Router r1 software 1.0'", "sync"));
    EXPECT_TRUE(client_.stream().is_over());
}

TEST_F(ASubscription, OnceHasOneMessageForEachEntryWithItsPathAsPrefix) {
    client_.send(list(List::ONCE, {{eth1 + "/neighbors/neighbor/state/system-name"}}));
    const SharedMessage message = client_.stream().take();
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(to_text(message->message().update().prefix()), neighbor);
    EXPECT_EQ(to_text(message->message().update().update(0).path()), "/state/system-name");
}

TEST_F(ASubscription, OnceInJsonHasOneUpdateForEachLeaf) {
    client_.send(list(List::ONCE, {{eth1 + "/state/counters/frame-in"}}, ::gnmi::JSON));
    EXPECT_THAT(client_.take(), ElementsAre(eth1 + "/state/counters/frame-in = json 20", "sync"));
}

TEST_F(ASubscription, OnceInJsonIetfHasOneUpdateForEachLeaf) {
    client_.send(list(List::ONCE, {{eth1 + "/state/counters/frame-in"}}, ::gnmi::JSON_IETF));
    EXPECT_THAT(client_.take(), ElementsAre(eth1 + "/state/counters/frame-in = ietf \"20\"", "sync"));
}

TEST_F(ASubscription, OnceOfDataThatIsNotThereIsNoError) {
    client_.send(list(List::ONCE, {{"/lldp/interfaces/interface[name=eth9]"}}));
    EXPECT_THAT(client_.take(), ElementsAre("sync"));
}

TEST_F(ASubscription, OnceWithUpdatesOnlyHasNoValues) {
    List wanted = list(List::ONCE, {{"/lldp"}});
    wanted.set_updates_only(true);
    client_.send(wanted);
    EXPECT_THAT(client_.take(), ElementsAre("sync"));
    EXPECT_TRUE(client_.stream().is_over());
}

TEST_F(ASubscription, ReturnsTheTarget) {
    List wanted = list(List::ONCE, {{"/config/enabled"}});
    *wanted.mutable_prefix() = path_of_target("r1", "/lldp");
    client_.send(wanted);
    const SharedMessage message = client_.stream().take();
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(message->message().update().prefix().target(), "r1");
}

TEST_F(ASubscription, HoldsEveryLeafOfAGet) {
    client_.send(list(List::ONCE, {{"/lldp"}}));
    const std::vector<std::string> lines = client_.take();
    EXPECT_THAT(lines, Contains(neighbor + "/state/ttl = 8u"));
    EXPECT_THAT(lines, Contains("/lldp/state/counters/frame-in = 79u"));
    EXPECT_THAT(lines, Contains(neighbor + "/capabilities/capability[name=ROUTER]/state/enabled = false"));
}

// ---- poll

TEST_F(ASubscription, ToBePolledAnswersEachPoll) {
    client_.send(list(List::POLL, {{"/lldp/config/system-name"}}));
    EXPECT_THAT(client_.take(), IsEmpty());
    client_.poll();
    EXPECT_THAT(client_.take(), ElementsAre("/lldp/config/system-name = 'r1.example.net'", "sync"));
    configure(R"("system-name":"x")");
    EXPECT_THAT(client_.take(), IsEmpty());
    client_.poll();
    client_.poll();
    EXPECT_THAT(client_.take(), ElementsAre("/lldp/config/system-name = 'x'", "sync",
                                            "/lldp/config/system-name = 'x'", "sync"));
    EXPECT_FALSE(client_.stream().is_over());
    client_.stream().receive_end();
    EXPECT_TRUE(client_.stream().is_over());
}

// ---- on change

TEST_F(ASubscription, OnChangeHasTheValuesASyncAndThenWhatChanges) {
    client_.send(list(List::STREAM, {{"/lldp/config/system-name"}}));
    EXPECT_THAT(client_.take(), ElementsAre("/lldp/config/system-name = 'r1.example.net'", "sync"));
    configure(R"("system-name":"x")");
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("/lldp/config/system-name = 'x'"));
    configure(R"("system-description":"y")");
    configure(R"("system-name":"z")");
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("/lldp/config/system-name = 'z'"));
}

// Collectors send these with every subscription; they mean something for samples only.
TEST_F(ASubscription, OnChangeIgnoresASampleIntervalAndSuppressRedundant) {
    client_.send(list(List::STREAM, {{"/lldp/config/system-name", ::gnmi::ON_CHANGE, 1ns, true}}));
    EXPECT_THAT(client_.take(), ElementsAre("/lldp/config/system-name = 'r1.example.net'", "sync"));
    configure(R"("system-name":"x")");
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("/lldp/config/system-name = 'x'"));
}

TEST_F(ASubscription, OnChangeTellsOfWhatIsDeleted) {
    client_.send(list(List::STREAM, {{"/lldp/config"}}));
    client_.take();
    configure(without_name);
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("- /lldp/config/system-name"));
}

TEST_F(ASubscription, OnChangeTellsOfADefaultThatComesBack) {
    configure(R"("enabled":false)");
    client_.send(list(List::STREAM, {{"/lldp/config"}}));
    client_.take();
    configure(R"("@enabled":{"ietf-netconf:operation":"remove"})");
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("/lldp/config/enabled = true"));
}

// The interface still has state, but what is not configured has no defaults.
TEST_F(ASubscription, OnChangeTellsOfNoDefaultOfAnInterfaceThatIsNotConfiguredAnyMore) {
    client_.send(list(List::STREAM, {{eth1}}));
    client_.take();
    const yang::EditNode edit = yang::parse_edit(
        schemas(),
        R"({"openconfig-lldp:lldp":{"interfaces":{"interface":[{"@":{"ietf-netconf:operation":"remove"},"name":"eth1"}]}}})",
        yang::Operation::merge);
    device_.service().datastores().edit(device_.caller(), device::Datastore::running, edit, false);
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("- " + eth1 + "/config"));
}

TEST_F(ASubscription, OnChangeTellsOfTheDefaultsOfAContainerThatIsEmptied) {
    client_.send(list(List::STREAM, {{"/lldp"}}));
    client_.take();
    const yang::EditNode edit = yang::parse_edit(
        schemas(), R"({"openconfig-lldp:lldp":{"config":{"@":{"ietf-netconf:operation":"remove"}}}})",
        yang::Operation::merge);
    device_.service().datastores().edit(device_.caller(), device::Datastore::running, edit, false);
    EXPECT_THAT(client_.wait_for_lines(),
                ElementsAre("- /lldp/config/system-name", "- /lldp/config/system-description",
                            "/lldp/config/enabled = true", "/lldp/state/enabled = false"));
    Client another(device_, publisher_, device_.caller());
    another.send(list(List::ONCE, {{"/lldp/config/enabled"}}));
    EXPECT_THAT(another.take(), ElementsAre("/lldp/config/enabled = true", "sync"));
}

TEST_F(ASubscription, OnChangeTellsOfANeighborThatChanges) {
    client_.send(list(List::STREAM, {{"/lldp/interfaces"}}));
    client_.take();
    device_.change_state("<port-description>eth1</port-description>",
                         "<port-description>new</port-description>");
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre(neighbor + "/state/port-description = 'new'"));
}

TEST_F(ASubscription, OnChangeTellsOfANeighborThatIsGoneByOnePath) {
    client_.send(list(List::STREAM, {{"/lldp/interfaces"}}));
    client_.take();
    rename_neighbor();
    const std::vector<std::string> lines = client_.wait_for_lines();
    ASSERT_THAT(lines, Not(IsEmpty()));
    EXPECT_EQ(lines.front(), "- " + neighbor);
    EXPECT_THAT(lines, Contains(eth1 + "/neighbors/neighbor[id=r9.example.net#eth1]/state/ttl = 8u"));
}

TEST_F(ASubscription, OnChangeTellsOfTheLastNeighborOfAnInterfaceByItsPath) {
    client_.send(list(List::STREAM, {{"/lldp/interfaces"}}));
    client_.take();
    const std::string rest = "</interface-name>\n            <device-id>r2.example.net";
    device_.change_state("<interface-name>eth1" + rest, "<interface-name>eth2" + rest);
    const std::vector<std::string> lines = client_.wait_for_lines();
    EXPECT_THAT(lines, Contains("- " + neighbor));
    EXPECT_THAT(lines,
                Contains("/lldp/interfaces/interface[name=eth2]/neighbors/neighbor[id=r2.example.net#eth1]"
                         "/state/ttl = 8u"));
}

TEST_F(ASubscription, OnChangeOfALeafTellsOfItWhenItsEntryIsGone) {
    client_.send(list(List::STREAM, {{neighbor + "/state/ttl"}}));
    EXPECT_THAT(client_.take(), ElementsAre(neighbor + "/state/ttl = 8u", "sync"));
    rename_neighbor();
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("- " + neighbor + "/state/ttl"));
}

TEST_F(ASubscription, OnChangeIsNotTroubledByAges) {
    client_.send(list(List::STREAM, {{"/lldp/interfaces"}}));
    client_.take();
    device_.change_state("<age>31</age>", "<age>32</age>");
    device_.change_state("<port-description>eth1</port-description>",
                         "<port-description>new</port-description>");
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre(neighbor + "/state/port-description = 'new'"));
}

TEST_F(ASubscription, OnChangeTellsTheAgeOfANewNeighborOnce) {
    client_.send(list(List::STREAM, {{"/lldp/interfaces"}}));
    client_.take();
    rename_neighbor();
    const std::string renamed = eth1 + "/neighbors/neighbor[id=r9.example.net#eth1]/state";
    EXPECT_THAT(client_.wait_for_lines(), Contains(renamed + "/age = 31u"));
    device_.change_state("<age>31</age>", "<age>32</age>");
    device_.change_state("<port-description>eth1</port-description>",
                         "<port-description>new</port-description>");
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre(renamed + "/port-description = 'new'"));
}

TEST_F(ASubscription, OnChangeOfAnAgeTellsOfIt) {
    client_.send(list(List::STREAM, {{neighbor + "/state/age"}}));
    client_.take();
    device_.change_state("<age>31</age>", "<age>32</age>");
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre(neighbor + "/state/age = 32u"));
}

TEST_F(ASubscription, OnChangeOfDataThatIsNotThereGetsItWhenItComes) {
    client_.send(list(List::STREAM, {{"/lldp/config/hello-timer"}}));
    EXPECT_THAT(client_.take(), ElementsAre("sync"));
    configure(R"("hello-timer":"9")");
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("/lldp/config/hello-timer = 9u"));
}

TEST_F(ASubscription, OnChangeWithUpdatesOnlyBeginsWithASync) {
    List wanted = list(List::STREAM, {{"/lldp/config"}});
    wanted.set_updates_only(true);
    client_.send(wanted);
    EXPECT_THAT(client_.take(), ElementsAre("sync"));
    configure(R"("system-name":"x")");
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("/lldp/config/system-name = 'x'"));
}

TEST_F(ASubscription, OnChangeSendsUnchangedValuesWithAHeartbeat) {
    client_.send(list(List::STREAM, {{"/lldp/config/enabled", ::gnmi::ON_CHANGE, 0ns, false, 1s}}));
    client_.take();
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("/lldp/config/enabled = true"));
}

TEST_F(ASubscription, HasTheTimeOfTheData) {
    client_.send(list(List::STREAM, {{"/lldp/config/system-name"}}));
    client_.take();
    const auto before = std::chrono::system_clock::now().time_since_epoch();
    configure(R"("system-name":"x")");
    client_.wait_for_lines();
    EXPECT_GE(std::chrono::nanoseconds(client_.last().update().timestamp()), before);
}

// ---- samples

TEST_F(ASubscription, ToSamplesGetsAllValuesEveryTime) {
    client_.send(list(List::STREAM, {{eth1 + "/state/counters/frame-in", ::gnmi::SAMPLE, 1s}}));
    const std::string value = eth1 + "/state/counters/frame-in = 20u";
    EXPECT_THAT(client_.take(), ElementsAre(value, "sync"));
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre(value));
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre(value));
}

TEST_F(ASubscription, ToSamplesIsNotTroubledByChangesBetween) {
    client_.send(list(List::STREAM, {{"/lldp/config/system-name", ::gnmi::SAMPLE, 2s}}));
    client_.take();
    configure(R"("system-name":"x")");
    EXPECT_THAT(client_.wait_for_lines(300ms), IsEmpty());
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("/lldp/config/system-name = 'x'"));
}

TEST_F(ASubscription, ToSamplesWithoutRedundantOnesGetsWhatHasChanged) {
    client_.send(list(List::STREAM, {{"/lldp/config", ::gnmi::SAMPLE, 1s, true}}));
    client_.take();
    EXPECT_THAT(client_.wait_for_lines(1500ms), IsEmpty());
    configure(R"("system-name":"x")");
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("/lldp/config/system-name = 'x'"));
}

TEST_F(ASubscription, ToSamplesWithoutRedundantOnesGetsThemWithTheHeartbeat) {
    client_.send(list(List::STREAM, {{"/lldp/config/enabled", ::gnmi::SAMPLE, 1s, true, 2s}}));
    client_.take();
    EXPECT_THAT(client_.wait_for_lines(1500ms), IsEmpty());
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("/lldp/config/enabled = true"));
}

TEST_F(ASubscription, ToSamplesTellsOfWhatIsGone) {
    client_.send(list(List::STREAM, {{"/lldp/config/system-name", ::gnmi::SAMPLE, 1s}}));
    client_.take();
    configure(without_name);
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre("- /lldp/config/system-name"));
    EXPECT_THAT(client_.wait_for_lines(1500ms), IsEmpty());
}

// ---- target-defined

TEST_F(ASubscription, DefinedByTheTargetTellsOfChangesButNotOfCounters) {
    client_.send(list(List::STREAM, {{eth1, ::gnmi::TARGET_DEFINED}}));
    const std::vector<std::string> first = client_.take();
    EXPECT_THAT(first, Contains(eth1 + "/state/counters/frame-in = 20u"));
    EXPECT_THAT(first, Contains(neighbor + "/state/age = 31u"));
    EXPECT_THAT(first, Contains(neighbor + "/state/ttl = 8u"));
    EXPECT_EQ(first.back(), "sync");
    device_.change_state("<age>31</age>", "<age>32</age>");
    device_.change_state("<port-description>eth1</port-description>",
                         "<port-description>new</port-description>");
    EXPECT_THAT(client_.wait_for_lines(), ElementsAre(neighbor + "/state/port-description = 'new'"));
}

// ---- sharing

TEST_F(ASubscription, CostsOneReadingForAllThatWantTheSame) {
    Client second(device_, publisher_, device_.caller());
    Client third(device_, publisher_, device_.caller());
    for (Client *each : {&client_, &second, &third}) {
        each->send(list(List::STREAM, {{"/lldp/config"}}));
        each->take();
    }
    const size_t before = publisher_.readings();
    EXPECT_EQ(before, 1u);
    configure(R"("system-name":"x")");
    for (Client *each : {&client_, &second, &third})
        EXPECT_THAT(each->wait_for_lines(), ElementsAre("/lldp/config/system-name = 'x'"));
    EXPECT_EQ(publisher_.readings(), before + 1);
}

TEST(AnAccessRule, HidesDataFromASubscriber) {
    ServedDevice device(R"(
        <nacm xmlns="urn:ietf:params:xml:ns:yang:ietf-netconf-acm">
          <groups><group><name>ops</name><user-name>bob</user-name></group></groups>
          <rule-list><name>bob</name><group>ops</group>
            <rule><name>r</name><module-name>openconfig-lldp</module-name>
              <path xmlns:l="http://openconfig.net/yang/lldp">/l:lldp/l:config/l:system-name</path>
              <access-operations>read</access-operations><action>deny</action></rule>
          </rule-list>
        </nacm>)");
    Publisher publisher(device.target(), [](const std::string &) {});
    Client bob(device, publisher, device.caller("bob"));
    Client alice(device, publisher, device.caller("alice"));
    for (Client *each : {&bob, &alice})
        each->send(list(List::STREAM, {{"/lldp/config"}}));
    EXPECT_THAT(bob.take(), Not(Contains(HasSubstr("system-name"))));
    EXPECT_THAT(alice.take(), Contains(HasSubstr("system-name")));
}

// ---- slow readers

TEST_F(ASubscription, ThatIsReadSlowlyGetsTheLastValueAndHowManyItStandsFor) {
    Client slow(device_, publisher_, device_.caller(), {1, 1 << 20});
    Client fast(device_, publisher_, device_.caller());
    for (Client *each : {&slow, &fast})
        each->send(list(List::STREAM, {{"/lldp/config/system-name"}}));
    slow.take();
    fast.take();
    for (int i = 1; i <= 4; i++) {
        configure(R"("system-name":"name )" + std::to_string(i) + "\"");
        fast.wait_for_lines();
    }
    const std::vector<std::string> lines = slow.wait_for_lines();
    ASSERT_THAT(lines, SizeIs(testing::AllOf(testing::Gt(0u), testing::Lt(4u))));
    EXPECT_THAT(lines.back(), testing::StartsWith("/lldp/config/system-name = 'name 4'"));
    size_t values = lines.size();
    for (const std::string &line : lines)
        if (const size_t duplicates = line.find("' x"); duplicates != std::string::npos)
            values += std::stoul(line.substr(duplicates + 3));
    EXPECT_EQ(values, 4u);
}

TEST_F(ASubscription, ThatIsNotReadAtAllEndsWithResourceExhausted) {
    Client slow(device_, publisher_, device_.caller(), {1, 1});
    slow.send(list(List::STREAM, {{"/lldp/config/system-name"}}));
    slow.take();
    configure(R"("system-name":"x")");
    slow.wait_for_lines(5s);
    ASSERT_TRUE(slow.stream().failure().has_value());
    EXPECT_EQ(slow.stream().failure()->code(), Code::resource_exhausted);
}

// ---- coalescing

SharedMessage message(const std::string &prefix, const std::vector<std::string> &removed,
                      const std::vector<std::pair<std::string, std::string>> &updates) {
    ::gnmi::SubscribeResponse response;
    *response.mutable_update()->mutable_prefix() = path(prefix);
    for (const std::string &each : removed)
        *response.mutable_update()->add_delete_() = path(each);
    for (const auto &[at, value] : updates) {
        ::gnmi::Update &update = *response.mutable_update()->add_update();
        *update.mutable_path() = path(at);
        update.mutable_val()->set_string_val(value);
    }
    return std::make_shared<const Prepared>(std::move(response));
}

struct Waiting {
    std::string name;
    std::vector<SharedMessage> messages;
    std::vector<std::string> coalesced;
};

class WaitingMessages : public testing::TestWithParam<Waiting> {};

TEST_P(WaitingMessages, AreCoalesced) {
    std::vector<std::string> lines;
    for (const SharedMessage &each : coalesced({GetParam().messages.begin(), GetParam().messages.end()}))
        for (const std::string &line : lines_of(each->message()))
            lines.push_back(line);
    EXPECT_EQ(lines, GetParam().coalesced);
}

INSTANTIATE_TEST_SUITE_P(
    Of, WaitingMessages,
    testing::Values(
        Waiting{
            "OneLeaf", {message("/a", {}, {{"/x", "1"}}), message("/a", {}, {{"/x", "2"}})}, {"/a/x = '2' x1"}},
        Waiting{"SeveralLeaves",
                {message("/a", {}, {{"/x", "1"}, {"/y", "1"}}), message("/b", {}, {{"/x", "1"}}),
                 message("/a", {}, {{"/y", "2"}})},
                {"/a/x = '1'", "/a/y = '2' x1", "/b/x = '1'"}},
        Waiting{"ALeafThatIsDeletedLater",
                {message("/a", {}, {{"/x", "1"}}), message("/a", {"/x"}, {})},
                {"- /a/x"}},
        Waiting{"ALeafThatComesBack",
                {message("/a", {"/x"}, {}), message("/a", {}, {{"/x", "1"}})},
                {"- /a/x", "/a/x = '1'"}},
        Waiting{"AnEntryThatIsDeletedLater",
                {message("/a[k=1]", {}, {{"/x", "1"}}), message("/a[k=2]", {}, {{"/x", "1"}}),
                 message("", {"/a[k=1]"}, {})},
                {"/a[k=2]/x = '1'", "- /a[k=1]"}},
        Waiting{"AnEntryThatComesBack",
                {message("/a[k=1]", {}, {{"/x", "1"}}), message("", {"/a[k=1]"}, {}),
                 message("/a[k=1]", {}, {{"/x", "2"}})},
                {"- /a[k=1]", "/a[k=1]/x = '2'"}},
        Waiting{"ASync", {sync_message(), message("/a", {}, {{"/x", "1"}})}, {"sync", "/a/x = '1'"}}),
    [](const auto &row) { return row.param.name; });

// ---- refusals

struct RefusedOrder {
    std::string name;
    List list;
    Code code;
    std::string because;
};

class ARefusedSubscription : public testing::TestWithParam<RefusedOrder> {
protected:
    ServedDevice device_;
    Publisher publisher_{device_.target(), [](const std::string &) {}};
    Client client_{device_, publisher_, device_.caller()};
};

TEST_P(ARefusedSubscription, SaysWhy) {
    const auto refusal = refusal_of_call([&] { client_.send(GetParam().list); });
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->code(), GetParam().code);
    EXPECT_THAT(refusal->what(), HasSubstr(GetParam().because));
}

List with_model(const std::string &name) {
    List made = list(List::ONCE, {{"/lldp"}});
    made.add_use_models()->set_name(name);
    return made;
}

List with_origin(const std::string &origin) {
    List made = list(List::ONCE, {{"/lldp"}});
    made.mutable_prefix()->set_origin(origin);
    return made;
}

RefusedOrder invalid(const std::string &name, const List &list, const std::string &because) {
    return {name, list, Code::invalid_argument, because};
}

INSTANTIATE_TEST_SUITE_P(
    That, ARefusedSubscription,
    testing::Values(
        invalid("IsEmpty", list(List::STREAM, {}), "holds no subscription"),
        invalid("NamesAnUnknownNode", list(List::STREAM, {{"/lldp/colour"}}), "unknown node \"colour\""),
        invalid("IsOfAnotherOrigin", with_origin("cli"), "the origin \"cli\" is not served"),
        invalid("IsOfAnUnknownMode", list(static_cast<List::Mode>(7), {{"/lldp"}}), "no mode 7"),
        invalid("HasASubscriptionOfAnUnknownMode",
                list(List::STREAM, {{"/lldp", static_cast<::gnmi::SubscriptionMode>(7)}}), "no mode 7"),
        invalid("SamplesTooOften", list(List::STREAM, {{"/lldp", ::gnmi::SAMPLE, 999999999ns}}),
                "every second"),
        invalid("HasAHeartbeatTooOften", list(List::STREAM, {{"/lldp", ::gnmi::ON_CHANGE, 0ns, false, 1ns}}),
                "every second"),
        invalid("SamplesWhatTheTargetDefines", list(List::STREAM, {{"/lldp", ::gnmi::TARGET_DEFINED, 10s}}),
                "has no sample interval"),
        invalid("NamesAModelThatIsNotServed", with_model("openconfig-interfaces"), "openconfig-interfaces"),
        RefusedOrder{"HasAnEncodingThatIsNotServed", list(List::ONCE, {{"/lldp"}}, ::gnmi::BYTES),
                     Code::unimplemented, "BYTES"}),
    [](const auto &row) { return row.param.name; });

TEST_F(ASubscription, IsWhatAStreamBeginsWith) {
    EXPECT_EQ(refusal_of_call([&] { client_.poll(); })->code(), Code::invalid_argument);
    EXPECT_EQ(refusal_of_call([&] { client_.send(::gnmi::SubscribeRequest()); })->code(),
              Code::invalid_argument);
    EXPECT_EQ(refusal_of_call([&] { client_.stream().receive_end(); })->code(), Code::invalid_argument);
}

TEST_F(ASubscription, IsGivenOnceForAStream) {
    client_.send(list(List::STREAM, {{"/lldp/config"}}));
    EXPECT_EQ(refusal_of_call([&] { client_.send(list(List::STREAM, {{"/lldp/state"}})); })->code(),
              Code::invalid_argument);
}

TEST_F(ASubscription, IsPolledOnlyInTheModePoll) {
    client_.send(list(List::STREAM, {{"/lldp/config"}}));
    EXPECT_EQ(refusal_of_call([&] { client_.poll(); })->code(), Code::invalid_argument);
}

} // namespace
} // namespace yfw::gnmi::test

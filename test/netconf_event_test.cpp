// The server's own events: configuration changes, sessions, confirmed commits.
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_events.h"
#include "netconf_server.h"

namespace yfw::test {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

const std::string system_name = "/lldp/config/system-name";
const std::string hello_timer = "/lldp/config/hello-timer";

// A server with one client that receives events and another that causes them.
class AnEvent : public NetconfTest {
protected:
    explicit AnEvent(std::vector<std::string> options = {}) : NetconfTest(std::move(options)) {
        expect_ok(subscriber.rpc(create_subscription()));
    }

    // Makes a visible edit and returns its event: events from before must arrive before it.
    Xml change_after_another_edit() {
        expect_ok(client->rpc(edit_config("running", config_edit(leaf_edit("system-description", "fence")))));
        return next_event(subscriber, config_change);
    }

    void expect_by(const NetconfClient &session, const Xml &parameters) {
        EXPECT_EQ(parameters.text_at("username"), own_user()) << parameters.printed;
        EXPECT_EQ(parameters.text_at("session-id"), session.session_id()) << parameters.printed;
    }

    NetconfClient subscriber{server().socket()};
    std::optional<NetconfClient> client{std::in_place, server().socket()};
};

// --- instance identifiers ---

TEST_F(AnEvent, NamesAnEntryOfALeafListByItsValue) {
    expect_ok(client->rpc(edit_config(
        "running",
        config_edit("<suppress-tlv-advertisement>types:PORT_DESCRIPTION</suppress-tlv-advertisement>"))));
    const Xml change = next_event(subscriber, config_change);
    EXPECT_THAT(change.printed,
                testing::AllOf(testing::HasSubstr("xmlns:openconfig-lldp-types="),
                               testing::HasSubstr("suppress-tlv-advertisement[.='openconfig-lldp-types:"
                                                  "PORT_DESCRIPTION']")));
}

struct QuoteCase {
    const char *name;
    std::string key;
    std::string literal;
};

class AQuote : public AnEvent, public testing::WithParamInterface<QuoteCase> {};

TEST_P(AQuote, StaysInsideAPath) {
    const Xml reply = client->rpc(edit_config("running", interface_edit(GetParam().key, "", "delete")));
    const Xml error = expect_error(reply, "application", "data-missing");
    EXPECT_EQ(error.text_at("error-path"),
              "/oc-lldp:lldp/oc-lldp:interfaces/oc-lldp:interface[oc-lldp:name=" + GetParam().literal + "]");
}

INSTANTIATE_TEST_SUITE_P(Of, AQuote,
                         testing::Values(QuoteCase{"OneKind", "it's/[a]", "\"it's/[a]\""},
                                         QuoteCase{"TheOtherKind", "a \"b\"/[c]", "'a \"b\"/[c]'"},
                                         QuoteCase{"BothKinds", "it's \"b\"", "concat('it',\"'\",'s \"b\"')"}),
                         [](const auto &test) { return test.param.name; });

// --- changes of the configuration ---

struct ChangeCase {
    const char *name;
    std::string operation;
    std::vector<Edited> edits;
};

class AChange : public AnEvent, public testing::WithParamInterface<ChangeCase> {};

TEST_P(AChange, IsToldWithWhoMadeItAndWhatWasEdited) {
    expect_ok(client->rpc(GetParam().operation));
    const Xml change = next_event(subscriber, config_change);
    EXPECT_EQ(change.ns, event_namespace);
    const Xml *by = change.child("changed-by");
    ASSERT_NE(by, nullptr) << change.printed;
    expect_by(*client, *by);
    EXPECT_EQ(by->child("server"), nullptr);
    EXPECT_THAT(change.text_at("datastore"), "running");
    EXPECT_THAT(edits_of(change), testing::UnorderedElementsAreArray(GetParam().edits)) << change.printed;
}

std::string running(const std::string &edit, const std::string &options = "") {
    return edit_config("running", edit, options);
}

INSTANTIATE_TEST_SUITE_P(
    Of, AChange,
    testing::Values(
        ChangeCase{"ALeafMerged", running(name_edit("new")), {{system_name, "merge"}}},
        ChangeCase{
            "ALeafAdded", running(config_edit(leaf_edit("hello-timer", "40"))), {{hello_timer, "merge"}}},
        ChangeCase{"ALeafCreated",
                   running(config_edit(leaf_edit("hello-timer", "40", "create"))),
                   {{hello_timer, "create"}}},
        ChangeCase{"ALeafReplaced",
                   running(config_edit(leaf_edit("system-name", "new", "replace"))),
                   {{system_name, "replace"}}},
        ChangeCase{"ALeafDeleted",
                   running(config_edit(leaf_edit("system-name", "", "delete"))),
                   {{system_name, "delete"}}},
        ChangeCase{"ALeafRemoved",
                   running(config_edit(leaf_edit("system-name", "", "remove"))),
                   {{system_name, "remove"}}},
        ChangeCase{
            "TwoLeaves",
            running(config_edit(leaf_edit("system-name", "new") + leaf_edit("hello-timer", "40", "create"))),
            {{system_name, "merge"}, {hello_timer, "create"}}},
        ChangeCase{
            "AContainerReplaced",
            running(config_edit(leaf_edit("enabled", "true") + leaf_edit("system-name", "new"), "replace")),
            {{"/lldp/config", "replace"}}},
        ChangeCase{"AnInterfaceDeleted",
                   running(interface_edit("eth2", "", "delete")),
                   {{"/lldp/interfaces/interface[name='eth2']", "delete"}}},
        ChangeCase{
            "ALeafOfAnInterface",
            running(lldp("<interfaces><interface><name>eth2</name><config><enabled>false</enabled></config>"
                         "</interface></interfaces>")),
            {{"/lldp/interfaces/interface[name='eth2']/config/enabled", "merge"}}},
        ChangeCase{"AllReplacedByDefault",
                   running(config_edit(leaf_edit("enabled", "true") + leaf_edit("system-name", "new")),
                           "<default-operation>replace</default-operation>"),
                   {{"/lldp", "replace"}}},
        ChangeCase{
            "WhatIsMarkedWhenTheDefaultIsNone",
            running(config_edit(leaf_edit("system-name", "new", "merge") + leaf_edit("enabled", "false")),
                    "<default-operation>none</default-operation>"),
            {{system_name, "merge"}}},
        ChangeCase{
            "AnEditOfTheNewerOperation", edit_data("running", name_edit("new")), {{system_name, "merge"}}},
        ChangeCase{"ACopyOfAConfigurationInTheRequest",
                   "<copy-config><target><running/></target><source><config>" +
                       config_edit(leaf_edit("enabled", "true") + leaf_edit("system-name", "new")) +
                       "</config></source></copy-config>",
                   {{"/lldp", "replace"}}}),
    [](const auto &test) { return test.param.name; });

struct QuietCase {
    const char *name;
    std::string operation;
    bool is_refused = false;
};

class WhatChangesNothing : public AnEvent, public testing::WithParamInterface<QuietCase> {};

TEST_P(WhatChangesNothing, IsNotTold) {
    EXPECT_EQ(!error_tag(client->rpc(GetParam().operation)).empty(), GetParam().is_refused);
    EXPECT_THAT(targets_of(change_after_another_edit()), ElementsAre("/lldp/config/system-description"));
}

INSTANTIATE_TEST_SUITE_P(
    Being, WhatChangesNothing,
    testing::Values(
        QuietCase{"TheSameValueMerged", running(name_edit("r1.example.net"))},
        QuietCase{"TheSameValueReplaced",
                  running(config_edit(leaf_edit("system-name", "r1.example.net", "replace")))},
        QuietCase{"ALeafRemovedThatIsNot", running(config_edit(leaf_edit("hello-timer", "", "remove")))},
        QuietCase{"AnEmptyConfiguration", running("")},
        QuietCase{"NoneByDefault", running(name_edit("new"), "<default-operation>none</default-operation>")},
        QuietCase{"ATest", running(name_edit("new"), "<test-option>test-only</test-option>")},
        QuietCase{"ACommitOfTheSame", "<commit/>"},
        QuietCase{"ACopyOfTheSame", "<copy-config><target><running/></target><source><candidate/></source>"
                                    "</copy-config>"},
        QuietCase{"AnEditOfTheCandidate", edit_config("candidate", name_edit("new"))},
        QuietCase{"AnEditThatIsRefused", running(config_edit(leaf_edit("enabled", "true", "create"))), true},
        QuietCase{"ALock", lock("running")}, QuietCase{"ARead", "<get/>"}),
    [](const auto &test) { return test.param.name; });

TEST_F(AnEvent, OfACommitNamesWhatWasEditedInTheCandidate) {
    expect_ok(client->rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client->rpc(edit_config("candidate", config_edit(leaf_edit("hello-timer", "40")))));
    expect_ok(client->rpc("<commit/>"));
    const Xml change = next_event(subscriber, config_change);
    EXPECT_THAT(targets_of(change), UnorderedElementsAre(system_name, hello_timer)) << change.printed;
    expect_by(*client, change.at("changed-by") != nullptr ? *change.at("changed-by") : change);
    EXPECT_THAT(targets_of(change_after_another_edit()), ElementsAre("/lldp/config/system-description"));
}

TEST_F(AnEvent, OfACommitIsOfWhoCommitsNotOfWhoEdited) {
    NetconfClient editor(server().socket());
    expect_ok(editor.rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client->rpc("<commit/>"));
    EXPECT_EQ(next_event(subscriber, config_change).text_at("changed-by/session-id"), client->session_id());
}

TEST_F(AnEvent, OfACopyOfTheCandidateTellsIt) {
    expect_ok(client->rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(
        client->rpc("<copy-config><target><running/></target><source><candidate/></source></copy-config>"));
    const Xml change = next_event(subscriber, config_change);
    EXPECT_EQ(change.text_at("changed-by/session-id"), client->session_id());
    EXPECT_THAT(targets_of(change), testing::Not(testing::IsEmpty())) << change.printed;
}

TEST_F(AnEvent, OfAnOwnChangeIsToldToo) {
    expect_ok(subscriber.rpc(running(name_edit("new"))));
    EXPECT_EQ(next_event(subscriber, config_change).text_at("changed-by/session-id"), subscriber.session_id());
}

// --- sessions ---

class ASessionsEvent : public AnEvent {
protected:
    Xml end_of(const std::string &session) {
        return next_event(subscriber, session_end,
                          [&](const Xml &event) { return event.text_at("session-id") == session; });
    }
    NetconfClient victim{server().socket()};
};

TEST_F(ASessionsEvent, IsToldWhenItStarts) {
    const NetconfClient next(server().socket());
    const Xml start = next_event(subscriber, session_start, [&](const Xml &event) {
        return event.text_at("session-id") == next.session_id();
    });
    EXPECT_EQ(start.ns, event_namespace);
    expect_by(next, start);
}

TEST_F(ASessionsEvent, IsToldWhenItCloses) {
    expect_ok(victim.rpc("<close-session/>"));
    const Xml end = end_of(victim.session_id());
    EXPECT_EQ(end.ns, event_namespace);
    expect_by(victim, end);
    EXPECT_EQ(end.text_at("termination-reason"), "closed");
    EXPECT_EQ(end.child("killed-by"), nullptr);
}

TEST_F(ASessionsEvent, IsToldWhenItIsKilledAndByWhom) {
    expect_ok(client->rpc("<kill-session><session-id>" + victim.session_id() + "</session-id></kill-session>"));
    const Xml end = end_of(victim.session_id());
    expect_by(victim, end);
    EXPECT_EQ(end.text_at("termination-reason"), "killed");
    EXPECT_EQ(end.text_at("killed-by"), client->session_id());
}

TEST_F(ASessionsEvent, IsToldWhenTheClientVanishes) {
    const std::string session = client->session_id();
    client.reset();
    const Xml end = end_of(session);
    EXPECT_EQ(end.text_at("termination-reason"), "dropped");
    EXPECT_EQ(end.child("killed-by"), nullptr);
}

TEST_F(ASessionsEvent, IsToldWhenTheClientSendsNoMoreAndReadsItsReply) {
    victim.send(rpc_message("<get/>"));
    victim.connection().finish_sending();
    EXPECT_NE(victim.receive().child("data"), nullptr);
    EXPECT_EQ(end_of(victim.session_id()).text_at("termination-reason"), "dropped");
}

// The client did not close the session.
TEST_F(ASessionsEvent, IsToldWhenAMessageIsMalformed) {
    victim.send("<rpc");
    EXPECT_EQ(end_of(victim.session_id()).text_at("termination-reason"), "other");
}

TEST_F(ASessionsEvent, IsToldWhenTheFramingBreaks) {
    victim.connection().send("garbage");
    EXPECT_THAT(end_of(victim.session_id()).text_at("termination-reason"), AnyOf("dropped", "other"));
}

// A connection that has not sent its hello yet, and the id of its session.
struct Guest {
    explicit Guest(const std::filesystem::path &socket) : connection(socket) {
        const std::string hello = connection.receive_to("</hello>");
        session = parse_xml(hello).text_at("session-id");
    }
    Connection connection;
    std::string session;
};

TEST_F(ASessionsEvent, IsToldWhenItsHelloIsBad) {
    Guest guest(server().socket());
    guest.connection.send(with_end_of_message(hello_message({"urn:example:other"})));
    EXPECT_EQ(end_of(guest.session).text_at("termination-reason"), "bad-hello");
}

class AnImpatientServersEvent : public AnEvent {
protected:
    AnImpatientServersEvent() : AnEvent({"--hello-timeout", "1"}) {}
};

TEST_F(AnImpatientServersEvent, IsToldWhenNoHelloComes) {
    const Guest silent(server().socket());
    const Xml end = next_event(subscriber, session_end,
                               [&](const Xml &event) { return event.text_at("session-id") == silent.session; });
    EXPECT_THAT(end.text_at("termination-reason"), AnyOf("timeout", "dropped"));
}

// --- confirmed commits ---

std::string confirmed(int timeout, const std::string &more = "") {
    return "<commit><confirmed/><confirm-timeout>" + std::to_string(timeout) + "</confirm-timeout>" + more +
           "</commit>";
}

class AConfirmedCommitsEvent : public AnEvent {
protected:
    void SetUp() override {
        expect_ok(client->rpc(edit_config("candidate", name_edit("new"))));
        expect_ok(client->rpc(confirmed(300)));
        expect_event("start", "300");
        ASSERT_EQ(name(*client), "new");
    }

    // Expects the next event to be of this kind, with the session that caused it.
    void expect_event(const std::string &kind, const std::string &timeout = "") {
        const Xml event = next_event(subscriber, confirmed_commit);
        EXPECT_EQ(event.ns, event_namespace);
        EXPECT_EQ(event.text_at("confirm-event"), kind) << event.printed;
        EXPECT_EQ(event.text_at("timeout"), timeout) << event.printed;
        EXPECT_EQ(event.text_at("username"), own_user()) << event.printed;
        EXPECT_EQ(event.text_at("session-id"), session) << event.printed;
    }

    std::string session = client->session_id();
};

TEST_F(AConfirmedCommitsEvent, IsToldWhenItIsConfirmed) {
    expect_ok(client->rpc("<commit/>"));
    expect_event("complete");
}

TEST_F(AConfirmedCommitsEvent, IsToldWhenItIsGivenMoreTime) {
    expect_ok(client->rpc(confirmed(200)));
    expect_event("extend", "200");
}

TEST_F(AConfirmedCommitsEvent, IsToldWhenItIsCancelled) {
    expect_ok(client->rpc("<cancel-commit/>"));
    expect_event("cancel");
    EXPECT_EQ(name(subscriber), "r1.example.net");
}

TEST_F(AConfirmedCommitsEvent, IsToldWhenItsSessionCloses) {
    expect_ok(client->rpc("<close-session/>"));
    expect_event("cancel");
}

TEST_F(AConfirmedCommitsEvent, IsToldWhenItsSessionVanishes) {
    client.reset();
    expect_event("cancel");
}

class ATimeoutsEvent : public AnEvent {
protected:
    // The next two events: the timeout, and the server's change of the configuration.
    std::vector<Xml> events_of_timeout() {
        expect_ok(client->rpc(edit_config("candidate", name_edit("new"))));
        expect_ok(client->rpc(confirmed(1)));
        next_event(subscriber, confirmed_commit);
        std::vector<Xml> events;
        const auto is_all = [&](const Xml &event) {
            if (event.name == confirmed_commit ||
                (event.name == config_change && event.at("changed-by/server") != nullptr))
                events.push_back(event);
            return events.size() == 2;
        };
        while (events.size() < 2) {
            const std::optional<Xml> notification = subscriber.notification();
            if (!notification.has_value() || is_all(event_of(*notification)))
                break;
        }
        return events;
    }
};

TEST_F(ATimeoutsEvent, IsTheServersChange) {
    const std::vector<Xml> events = events_of_timeout();
    const std::vector<Xml> changes = events_by(events, config_change),
                           ends = events_by(events, confirmed_commit);
    ASSERT_EQ(changes.size(), 1u);
    ASSERT_EQ(ends.size(), 1u);
    EXPECT_EQ(changes[0].at("changed-by/username"), nullptr) << changes[0].printed;
    EXPECT_EQ(changes[0].at("changed-by/session-id"), nullptr) << changes[0].printed;
    EXPECT_EQ(changes[0].text_at("datastore"), "running");
    EXPECT_EQ(ends[0].text_at("confirm-event"), "timeout");
    EXPECT_EQ(ends[0].child("session-id"), nullptr) << ends[0].printed;
    EXPECT_EQ(name(*client), "r1.example.net");
}

// --- the format ---

TEST_F(AnEvent, IsAsItsModuleSays) {
    ly_ctx *created = nullptr;
    ASSERT_EQ(ly_ctx_new(YFW_MODELS_DIR, LY_CTX_DISABLE_SEARCHDIR_CWD, &created), LY_SUCCESS);
    const Context context(created);
    ly_ctx_set_searchdir(created, YFW_STANDARD_MODELS_DIR);
    for (const char *module : {"ietf-netconf-notifications", "openconfig-lldp"})
        ASSERT_NE(ly_ctx_load_module(created, module, nullptr, nullptr), nullptr) << ly_errmsg(created);
    expect_ok(client->rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client->rpc(confirmed(300)));
    client.reset();
    std::vector<std::string> left{config_change, confirmed_commit, session_end};
    while (!left.empty()) {
        const std::optional<Xml> notification = subscriber.notification();
        ASSERT_TRUE(notification.has_value()) << testing::PrintToString(left);
        ly_in *input = nullptr;
        ASSERT_EQ(ly_in_new_memory(notification->printed.c_str(), &input), LY_SUCCESS);
        lyd_node *envelope = nullptr, *event = nullptr;
        const LY_ERR result =
            lyd_parse_op(created, nullptr, input, LYD_XML, LYD_TYPE_NOTIF_NETCONF, &envelope, &event);
        ly_in_free(input, 0);
        const Tree first(envelope), second(event);
        ASSERT_EQ(result, LY_SUCCESS) << ly_errmsg(created) << " in " << notification->printed;
        std::erase(left, event->schema->name);
    }
}

} // namespace
} // namespace yfw::test

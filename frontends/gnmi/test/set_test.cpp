// The RPC Set.
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "base/interruption.h"
#include "frontends/gnmi/operations/set_operation.h"
#include "gnmi_fixture.h"

namespace yfw::gnmi::test {
namespace {

using testing::HasSubstr;
using testing::Not;

// ---- requests

::gnmi::TypedValue json(const std::string &text) {
    ::gnmi::TypedValue value;
    value.set_json_val(text);
    return value;
}

::gnmi::TypedValue ietf(const std::string &text) {
    ::gnmi::TypedValue value;
    value.set_json_ietf_val(text);
    return value;
}

::gnmi::TypedValue string(const std::string &text) {
    ::gnmi::TypedValue value;
    value.set_string_val(text);
    return value;
}

::gnmi::TypedValue boolean(bool is) {
    ::gnmi::TypedValue value;
    value.set_bool_val(is);
    return value;
}

::gnmi::TypedValue number(uint64_t is) {
    ::gnmi::TypedValue value;
    value.set_uint_val(is);
    return value;
}

::gnmi::TypedValue strings(const std::vector<std::string> &texts) {
    ::gnmi::TypedValue value;
    value.mutable_leaflist_val();
    for (const std::string &text : texts)
        *value.mutable_leaflist_val()->add_element() = string(text);
    return value;
}

// A request that is written down operation by operation.
class Request {
public:
    Request &&remove(const std::string &at) && {
        *request_.add_delete_() = path(at);
        return std::move(*this);
    }
    Request &&replacing(const std::string &at, const ::gnmi::TypedValue &value) && {
        return std::move(*this).put(*request_.add_replace(), at, value);
    }
    Request &&updating(const std::string &at, const ::gnmi::TypedValue &value) && {
        return std::move(*this).put(*request_.add_update(), at, value);
    }
    Request &&uniting(const std::string &at, const ::gnmi::TypedValue &value) && {
        return std::move(*this).put(*request_.add_union_replace(), at, value);
    }

    operator ::gnmi::SetRequest() const { return request_; }

private:
    Request &&put(::gnmi::Update &update, const std::string &at, const ::gnmi::TypedValue &value) && {
        *update.mutable_path() = path(at);
        *update.mutable_val() = value;
        return std::move(*this);
    }

    ::gnmi::SetRequest request_;
};

// ---- what a request makes of the configuration

const std::string top = "{\"openconfig-lldp:lldp\":";
const std::string r1_config = R"("config":{"enabled":true,"system-name":"r1.example.net",)"
                              R"("system-description":"Router r1 software 1.0"})";
const std::string r1_interfaces =
    R"("interfaces":{"interface":[{"name":"eth1","config":{"name":"eth1","enabled":true}},)"
    R"({"name":"eth2","config":{"name":"eth2","enabled":true}},)"
    R"({"name":"eth3","config":{"name":"eth3","enabled":true}}]})";

struct Change {
    std::string name;
    ::gnmi::SetRequest request;
    std::string config;     // the member of /lldp afterwards
    std::string interfaces; // likewise
};

class ASet : public testing::TestWithParam<Change> {
protected:
    ServedDevice device_;
};

TEST_P(ASet, ChangesTheConfiguration) {
    const size_t commits = device_.service().device().history().size();
    const auto refusal = refusal_of_call([&] { set(device_.target(), device_.caller(), GetParam().request); });
    EXPECT_FALSE(refusal.has_value()) << refusal->what();
    std::string members = GetParam().config;
    if (!GetParam().interfaces.empty())
        members += (members.empty() ? "" : ",") + GetParam().interfaces;
    EXPECT_EQ(device_.configuration(), members.empty() ? "{}" : top + "{" + members + "}}");
    EXPECT_LE(device_.service().device().history().size(), commits + 2) << "the first commit, and one";
}

const std::string eth1 = "/lldp/interfaces/interface[name=eth1]";
const std::string tlvs = "/lldp/config/suppress-tlv-advertisement";

std::string named(const std::string &name) {
    return R"("config":{"enabled":true,"system-name":")" + name +
           R"(","system-description":"Router r1 software 1.0"})";
}

std::string timed(const std::string &seconds) {
    return R"("config":{"enabled":true,"hello-timer":")" + seconds +
           R"(","system-name":"r1.example.net","system-description":"Router r1 software 1.0"})";
}

std::string suppressing(const std::string &values) {
    return R"("config":{"enabled":true,"suppress-tlv-advertisement":[)" + values +
           R"(],"system-name":"r1.example.net","system-description":"Router r1 software 1.0"})";
}

const std::string name_tlv = "\"openconfig-lldp-types:SYSTEM_NAME\"";
const std::string description_tlv = "\"openconfig-lldp-types:SYSTEM_DESCRIPTION\"";

std::string eth1_disabled() {
    std::string text = r1_interfaces;
    return text.replace(text.find("true"), 4, "false");
}

std::string without_eth1() {
    std::string text = r1_interfaces;
    const size_t at = text.find('[') + 1;
    return text.erase(at, text.find("{\"name\":\"eth2\"") - at);
}

INSTANTIATE_TEST_SUITE_P(
    That, ASet,
    testing::Values(
        Change{"IsEmpty", Request(), r1_config, r1_interfaces},
        // update
        Change{"UpdatesALeafByAString", Request().updating("/lldp/config/system-name", string("x")), named("x"),
               r1_interfaces},
        Change{"UpdatesALeafByANumber", Request().updating("/lldp/config/hello-timer", number(30)), timed("30"),
               r1_interfaces},
        Change{"UpdatesALeafByABoolean", Request().updating(eth1 + "/config/enabled", boolean(false)),
               r1_config, eth1_disabled()},
        Change{"UpdatesALeafByJson", Request().updating("/lldp/config/system-name", json("\"x\"")), named("x"),
               r1_interfaces},
        Change{"UpdatesALeafByJsonWithoutQuotes",
               Request().updating("/lldp/config/system-name", json("a name")), named("a name"), r1_interfaces},
        Change{"UpdatesANumberOf64BitsByJson", Request().updating("/lldp/config/hello-timer", json("30")),
               timed("30"), r1_interfaces},
        Change{"UpdatesANumberOf64BitsByJsonIetf",
               Request().updating("/lldp/config/hello-timer", ietf("\"30\"")), timed("30"), r1_interfaces},
        Change{"UpdatesAContainerByJson", Request().updating("/lldp/config", json(R"({"system-name":"x"})")),
               named("x"), r1_interfaces},
        Change{"UpdatesAContainerByJsonIetf",
               Request().updating("/lldp/config", ietf(R"({"openconfig-lldp:system-name":"x"})")), named("x"),
               r1_interfaces},
        Change{"UpdatesTheTopByJson",
               Request().updating("", json(R"({"lldp":{"config":{"system-name":"x","hello-timer":7}}})")),
               R"("config":{"enabled":true,"hello-timer":"7","system-name":"x",)"
               R"("system-description":"Router r1 software 1.0"})",
               r1_interfaces},
        Change{"UpdatesTheTopByJsonIetf",
               Request().updating("", ietf(R"({"openconfig-lldp:lldp":{"config":{"system-name":"x"}}})")),
               named("x"), r1_interfaces},
        Change{"UpdatesAnEntry", Request().updating(eth1, json(R"({"config":{"enabled":false}})")), r1_config,
               eth1_disabled()},
        Change{"UpdatesAnEntryWithItsKeyInTheValue",
               Request().updating(eth1, json(R"({"name":"eth1","config":{"enabled":false}})")), r1_config,
               eth1_disabled()},
        Change{"UpdatesAnEntryWithItsKeyInConfig",
               Request().updating(eth1, json(R"({"config":{"name":"eth1","enabled":false}})")), r1_config,
               eth1_disabled()},
        Change{"UpdatesEntriesByJson",
               Request().updating("/lldp/interfaces",
                                  json(R"({"interface":[{"name":"eth1","config":{"enabled":false}}]})")),
               r1_config, eth1_disabled()},
        Change{"UpdatesALeafListByStrings", Request().updating(tlvs, strings({"SYSTEM_NAME"})),
               suppressing(name_tlv), r1_interfaces},
        Change{"UpdatesALeafListByJson", Request().updating(tlvs, json(R"(["SYSTEM_NAME"])")),
               suppressing(name_tlv), r1_interfaces},
        Change{
            "UpdatesALeafListTwice",
            Request().updating(tlvs, strings({"SYSTEM_NAME"})).updating(tlvs, strings({"SYSTEM_DESCRIPTION"})),
            suppressing(name_tlv + "," + description_tlv), r1_interfaces},
        Change{"UpdatesALeafTwice",
               Request()
                   .updating("/lldp/config/system-name", string("x"))
                   .updating("/lldp/config/system-name", string("y")),
               named("y"), r1_interfaces},
        Change{"UpdatesAContainerAndALeafOfIt",
               Request()
                   .updating("/lldp/config/hello-timer", number(30))
                   .updating("/lldp/config", json(R"({"system-name":"r1.example.net"})")),
               timed("30"), r1_interfaces},
        Change{"SetsWhatIsThere", Request().updating("/lldp/config/system-name", string("r1.example.net")),
               r1_config, r1_interfaces},
        // replace
        Change{"ReplacesALeaf", Request().replacing("/lldp/config/system-name", string("x")), named("x"),
               r1_interfaces},
        Change{"ReplacesAContainer", Request().replacing("/lldp/config", json(R"({"system-name":"x"})")),
               R"("config":{"system-name":"x"})", r1_interfaces},
        Change{"ReplacesAContainerByNothing", Request().replacing("/lldp/config", json("{}")), "",
               r1_interfaces},
        Change{
            "ReplacesALeafListByStrings",
            Request().updating(tlvs, strings({"SYSTEM_NAME"})).replacing(tlvs, strings({"SYSTEM_DESCRIPTION"})),
            suppressing(description_tlv + "," + name_tlv), r1_interfaces},
        Change{"ReplacesTheTop",
               Request().replacing("", ietf(R"({"openconfig-lldp:lldp":{"config":{"enabled":true}}})")),
               R"("config":{"enabled":true})", ""},
        Change{"ReplacesAnEntry", Request().replacing(eth1, json(R"({"config":{"enabled":false}})")), r1_config,
               eth1_disabled()},
        Change{"ReplacesAContainerAndUpdatesALeafOfIt",
               Request()
                   .replacing("/lldp/config", json(R"({"system-name":"x"})"))
                   .updating("/lldp/config/hello-timer", number(9)),
               R"("config":{"hello-timer":"9","system-name":"x"})", r1_interfaces},
        // delete
        Change{"DeletesALeaf", Request().remove("/lldp/config/system-name"),
               R"("config":{"enabled":true,"system-description":"Router r1 software 1.0"})", r1_interfaces},
        Change{"DeletesAnEntry", Request().remove(eth1), r1_config, without_eth1()},
        Change{"DeletesAllEntries", Request().remove("/lldp/interfaces/interface[name=*]"), r1_config, ""},
        Change{"DeletesAContainer", Request().remove("/lldp/config"), "", r1_interfaces},
        Change{"DeletesEverything", Request().remove(""), "", ""},
        Change{"DeletesByAWildcardInANamePassingStateOver", Request().remove("/lldp/*/system-name"),
               R"("config":{"enabled":true,"system-description":"Router r1 software 1.0"})", r1_interfaces},
        Change{"DeletesWhatIsNotThere", Request().remove("/lldp/config/hello-timer"), r1_config, r1_interfaces},
        Change{"DeletesAnEntryThatIsNotThere", Request().remove("/lldp/interfaces/interface[name=eth9]"),
               r1_config, r1_interfaces},
        Change{"DeletesTheSameTwice", Request().remove("/lldp/config").remove("/lldp/config/system-name"), "",
               r1_interfaces},
        // in one transaction
        Change{"DeletesBeforeItUpdates",
               Request().updating("/lldp/config/system-name", string("x")).remove("/lldp/config"),
               R"("config":{"system-name":"x"})", r1_interfaces},
        Change{"DeletesBeforeItReplaces",
               Request().replacing(eth1, json(R"({"config":{"enabled":false}})")).remove("/lldp/interfaces"),
               r1_config,
               R"("interfaces":{"interface":[{"name":"eth1","config":{"name":"eth1","enabled":false}}]})"},
        Change{"ReplacesBeforeItUpdates",
               Request()
                   .updating("/lldp/config/system-name", string("x"))
                   .replacing("/lldp/config/system-name", string("y")),
               named("x"), r1_interfaces},
        // union_replace
        Change{"UnitesTwoValuesOfOneContainer",
               Request()
                   .uniting("/lldp/config", json(R"({"system-name":"x"})"))
                   .uniting("/lldp/config", json(R"({"hello-timer":9})")),
               R"("config":{"hello-timer":"9","system-name":"x"})", r1_interfaces},
        Change{"UnitesTheWhole",
               Request()
                   .uniting("/lldp", json(R"({"config":{"system-name":"x"}})"))
                   .uniting(eth1, json(R"({"config":{"enabled":false}})")),
               R"("config":{"system-name":"x"})",
               R"("interfaces":{"interface":[{"name":"eth1","config":{"name":"eth1","enabled":false}}]})"}),
    [](const auto &row) { return row.param.name; });

TEST(ASetThatReplacesALeafList, KeepsNoOtherValue) {
    ServedDevice device;
    set(device.target(), device.caller(), Request().updating(tlvs, strings({"SYSTEM_NAME"})));
    set(device.target(), device.caller(), Request().replacing(tlvs, json(R"(["SYSTEM_DESCRIPTION"])")));
    EXPECT_THAT(device.configuration(), HasSubstr(suppressing(description_tlv)));
    set(device.target(), device.caller(), Request().remove(tlvs));
    EXPECT_THAT(device.configuration(), Not(HasSubstr("suppress")));
}

// ---- the response

TEST(TheResponse, NamesEveryOperationAndTheTime) {
    ServedDevice device;
    ::gnmi::SetRequest request = Request()
                                     .remove("/config/system-name")
                                     .replacing("/config/system-description", string("x"))
                                     .updating("/config/hello-timer", number(9));
    *request.mutable_prefix() = path_of_target("r1", "/lldp");
    const auto before = std::chrono::system_clock::now().time_since_epoch();
    const ::gnmi::SetResponse response = set(device.target(), device.caller(), request);
    EXPECT_GE(std::chrono::nanoseconds(response.timestamp()), before);
    EXPECT_EQ(response.prefix().target(), "r1");
    ASSERT_EQ(response.response_size(), 3);
    EXPECT_EQ(response.response(0).op(), ::gnmi::UpdateResult::DELETE);
    EXPECT_EQ(response.response(0).path().elem(1).name(), "system-name");
    EXPECT_EQ(response.response(1).op(), ::gnmi::UpdateResult::REPLACE);
    EXPECT_EQ(response.response(2).op(), ::gnmi::UpdateResult::UPDATE);
    EXPECT_THAT(device.configuration(), HasSubstr(R"("hello-timer":"9","system-description":"x")"));
}

TEST(ASetsCommit, HasTheUsersName) {
    ServedDevice device;
    set(device.target(), device.caller("bob"), Request().updating("/lldp/config/system-name", string("x")));
    EXPECT_EQ(device.service().device().history().front().who, "bob");
}

// ---- refusals

struct RefusedChange {
    std::string name;
    ::gnmi::SetRequest request;
    Code code;
    std::string because;
};

class ARefusedSet : public testing::TestWithParam<RefusedChange> {
protected:
    ServedDevice device_;
};

TEST_P(ARefusedSet, SaysWhyAndChangesNothing) {
    const auto refusal = refusal_of_call([&] { set(device_.target(), device_.caller(), GetParam().request); });
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->code(), GetParam().code) << refusal->what();
    EXPECT_THAT(refusal->what(), HasSubstr(GetParam().because));
    EXPECT_EQ(device_.configuration(), top + "{" + r1_config + "," + r1_interfaces + "}}");
    EXPECT_TRUE(device_.service().device().history().empty());
}

RefusedChange invalid(const std::string &name, Request &&request, const std::string &because) {
    return {name, std::move(request), Code::invalid_argument, because};
}

::gnmi::TypedValue ascii() {
    ::gnmi::TypedValue value;
    value.set_ascii_val("x");
    return value;
}

INSTANTIATE_TEST_SUITE_P(
    That, ARefusedSet,
    testing::Values(
        invalid("FailsInItsSecondOperation",
                Request()
                    .updating("/lldp/config/system-name", string("x"))
                    .updating("/lldp/config/colour", string("red")),
                "update /lldp/config/colour: unknown node \"colour\""),
        invalid("HasAValueOfAnotherType", Request().updating("/lldp/config/enabled", string("true")),
                "update /lldp/config/enabled: the value has another type than the leaf"),
        invalid("HasAValueThatIsNotAllowed", Request().updating("/lldp/config/chassis-id-type", string("x")),
                "update /lldp/config/chassis-id-type: \"x\" is not allowed"),
        invalid("HasAJsonValueThatIsNotAllowed",
                Request().replacing("/lldp/config", json(R"({"chassis-id-type":"x"})")),
                "replace /lldp/config at /lldp/config/chassis-id-type: \"x\" is not allowed"),
        invalid("HasAnUnknownMember", Request().updating("/lldp/config", json(R"({"colour":"red"})")),
                "unknown node \"colour\""),
        invalid("HasJsonThatIsNone", Request().updating("/lldp/config", json("{")), "update /lldp/config"),
        invalid("HasANumberInWords", Request().updating("/lldp/config/hello-timer", json("thirty")),
                "\"thirty\" is not allowed"),
        invalid("HasABooleanInWords", Request().updating("/lldp/config/enabled", json("yes")),
                "must be written as true or false"),
        invalid("HasAStringWithoutItsEnd", Request().updating("/lldp/config/system-name", json("\"x")),
                "update /lldp/config/system-name"),
        invalid("HasAnAnnotation",
                Request().updating("/lldp/config", json(R"({"@enabled":{"ietf-netconf:operation":"delete"}})")),
                "annotations"),
        invalid("ReplacesAnEntryByNothing", Request().replacing(eth1, json("{}")),
                "the value of an entry cannot be {}"),
        invalid("ReplacesALeafByNull", Request().replacing("/lldp/config/enabled", json("null")),
                "the value cannot be null"),
        invalid("HasNoValue", Request().updating("/lldp/config/enabled", {}), "has no value"),
        invalid("HasAScalarForAContainer", Request().updating("/lldp/config", string("x")),
                "anything but a leaf"),
        invalid("HasAWildcardInAnUpdate",
                Request().updating("/lldp/interfaces/interface[name=*]/config/enabled", boolean(false)),
                "wildcards are not allowed here"),
        invalid("HasAWildcardInAReplace", Request().replacing("/lldp/*/enabled", boolean(false)),
                "wildcards are not allowed here"),
        invalid("LacksAKey", Request().updating("/lldp/interfaces/interface/config/enabled", boolean(false)),
                "the key \"name\" of \"interface\" is missing"),
        invalid("HasAnotherKeyInTheValue", Request().updating(eth1, json(R"({"name":"eth2"})")),
                "the key \"name\" has another value than in the path"),
        invalid("HasAnotherNameInTheValueThanItsKey",
                Request().updating(eth1, json(R"({"config":{"name":"eth2"}})")),
                "update " + eth1 +
                    ": \"name\" of /lldp/interfaces/interface[name='eth1'] differs from the key "
                    "\"name\""),
        invalid("HasAnEntryWithAnotherNameThanItsKey",
                Request().replacing("/lldp/interfaces",
                                    json(R"({"interface":[{"name":"eth1","config":{"name":"eth2"}}]})")),
                "differs from the key \"name\""),
        invalid("GivesAnEntryAnotherName", Request().updating(eth1 + "/config/name", string("eth2")),
                "differs from the key \"name\""),
        invalid("GivesANewEntryAnotherName",
                Request().updating("/lldp/interfaces/interface[name=new]/config", json(R"({"name":"eth2"})")),
                "differs from the key \"name\""),
        invalid("HasJsonThatIsNotUtf8", Request().updating("/lldp/config/hello-timer", ietf("\xff")),
                "update /lldp/config/hello-timer: the value is not UTF-8"),
        invalid("HasAWordInJsonThatIsNotUtf8", Request().updating("/lldp/config/system-name", json("a\x94")),
                "update /lldp/config/system-name: the value is not UTF-8"),
        invalid("HasAContainerThatIsNotUtf8",
                Request().replacing("/lldp/config", json("{\"system-name\":\"\x94\"}")),
                "replace /lldp/config: the value is not UTF-8"),
        invalid("HasAValueOfALeafListTwice", Request().updating(tlvs, json(R"(["SYSTEM_NAME","SYSTEM_NAME"])")),
                "is repeated"),
        invalid("HasAValueOfALeafListTwiceInTwoForms",
                Request().updating(tlvs, ietf(R"(["SYSTEM_NAME","openconfig-lldp-types:SYSTEM_NAME"])")),
                "is repeated"),
        invalid("HasAValueOfALeafListTwiceInAContainer",
                Request().replacing("/lldp/config",
                                    json(R"({"suppress-tlv-advertisement":["SYSTEM_NAME","SYSTEM_NAME"]})")),
                "is repeated"),
        invalid("HasAScalarOfALeafListTwice", Request().updating(tlvs, strings({"SYSTEM_NAME", "SYSTEM_NAME"})),
                "is repeated"),
        invalid("UpdatesState", Request().updating("/lldp/state/enabled", boolean(true)), "is state"),
        invalid("DeletesState", Request().remove("/lldp/state"), "delete /lldp/state: is state"),
        invalid("DeletesAKey", Request().remove(eth1 + "/name"), "a key cannot be deleted"),
        invalid("DeletesAnUnknownNode", Request().remove("/lldp/colour"), "unknown node \"colour\""),
        invalid("UnitesBesideAnotherOperation",
                Request().uniting("/lldp/config", json("{}")).remove("/lldp/config"), "union_replace"),
        RefusedChange{"HasAValueOfAnotherForm", Request().updating("/lldp/config/system-name", ascii()),
                      Code::unimplemented, "values of this form are not supported"}),
    [](const auto &row) { return row.param.name; });

TEST(AValueThatTheDeviceRefuses, IsNamedWithItsOperation) {
    ServedDevice device;
    const auto refusal = refusal_of_call([&] {
        set(device.target(), device.caller(),
            Request()
                .updating("/lldp/config/system-name", string("x"))
                .updating("/lldp/config/hello-timer", number(100000)));
    });
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->code(), Code::invalid_argument) << refusal->what();
    EXPECT_THAT(refusal->what(), HasSubstr("update /lldp/config/hello-timer"));
    EXPECT_THAT(device.configuration(), HasSubstr("r1.example.net"));
}

TEST(ADeviceThatCannotBeRead, IsNotTheFaultOfASet) {
    ServedDevice device;
    device.remove_files();
    const auto refusal = refusal_of_call([&] {
        set(device.target(), device.caller(),
            Request().updating("/lldp/config/system-name", string("new")).remove("/lldp/config/enabled"));
    });
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->code(), Code::unavailable) << refusal->what();
    EXPECT_THAT(refusal->what(), Not(HasSubstr("/lldp/config")));
}

// ---- interruptions

TEST(ASetThatIsInterrupted, ChangesNothingAtAnyStep) {
    ServedDevice device;
    const std::string before = device.configuration();
    const ::gnmi::SetRequest request = Request()
                                           .remove(eth1)
                                           .replacing("/lldp/config", json(R"({"system-name":"x"})"))
                                           .updating("/lldp/config/hello-timer", number(9));
    int step = 0;
    for (bool is_interrupted = true; is_interrupted; step++) {
        ASSERT_LT(step, 1000);
        int asked = 0;
        const Interruptible interruptible([&] { return asked++ == step; });
        try {
            set(device.target(), device.caller(), request);
            is_interrupted = false;
        } catch (const Interrupted &) {
            EXPECT_EQ(device.configuration(), before) << "interrupted at step " << step;
        }
    }
    EXPECT_GT(step, 8) << "of parsing, combining, applying and mapping";
    EXPECT_THAT(device.configuration(), HasSubstr(R"("config":{"hello-timer":"9","system-name":"x"})"));
    EXPECT_THAT(device.service().device().history(), testing::SizeIs(2)) << "the first commit, and one";
}

// ---- who may

TEST(AReader, MayNotSet) {
    ServedDevice device;
    Caller caller = device.caller();
    caller.may_write = false;
    const auto refusal = refusal_of_call(
        [&] { set(device.target(), caller, Request().updating("/lldp/config/system-name", string("x"))); });
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->code(), Code::permission_denied);
}

TEST(AccessRules, RefuseWhatAUserMayNotWrite) {
    ServedDevice device(R"(
        <nacm xmlns="urn:ietf:params:xml:ns:yang:ietf-netconf-acm">
          <write-default>permit</write-default>
          <groups><group><name>ops</name><user-name>bob</user-name></group></groups>
          <rule-list><name>bob</name><group>ops</group>
            <rule><name>r</name><module-name>openconfig-lldp</module-name>
              <path xmlns:l="http://openconfig.net/yang/lldp">/l:lldp/l:config/l:system-name</path>
              <access-operations>update</access-operations><action>deny</action></rule>
          </rule-list>
        </nacm>)");
    const auto code = [&](const std::string &user) {
        const auto refusal = refusal_of_call([&] {
            set(device.target(), device.caller(user),
                Request().updating("/lldp/config/system-name", string("by " + user)));
        });
        return refusal.has_value() ? std::optional(refusal->code()) : std::nullopt;
    };
    EXPECT_EQ(code("bob"), Code::permission_denied);
    EXPECT_EQ(code("alice"), std::nullopt);
    EXPECT_THAT(device.configuration(), HasSubstr("by alice"));
}

TEST(ALockOfAnotherProtocol, RefusesASetAndNamesItsHolder) {
    ServedDevice device;
    Caller session = device.caller("carol");
    session.session = 7;
    device.service().datastores().lock(session, device::Datastore::running);
    const auto refusal = refusal_of_call([&] {
        set(device.target(), device.caller(), Request().updating("/lldp/config/system-name", string("x")));
    });
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->code(), Code::failed_precondition);
    EXPECT_THAT(refusal->what(), HasSubstr("locked by session 7 of carol"));
}

// ---- confirmed commits

class AConfirmedCommit : public testing::Test {
protected:
    using Fill = std::function<void(gnmi_ext::Commit &)>;

    // The code that a request with this extension ends with; nothing when it succeeds.
    std::optional<Code> act(const std::string &id, const Fill &fill, ::gnmi::SetRequest request = {}) {
        gnmi_ext::Commit &commit = *request.add_extension()->mutable_commit();
        commit.set_id(id);
        fill(commit);
        return plain(request);
    }

    std::optional<Code> plain(const ::gnmi::SetRequest &request) {
        const auto refusal = refusal_of_call([&] { set(device_.target(), device_.caller(), request); });
        return refusal.has_value() ? std::optional(refusal->code()) : std::nullopt;
    }

    std::optional<Code> start(const std::string &id, int64_t seconds = 0) {
        return act(
            id,
            [&](gnmi_ext::Commit &commit) {
                commit.mutable_commit();
                if (seconds != 0)
                    commit.mutable_commit()->mutable_rollback_duration()->set_seconds(seconds);
            },
            Request().updating("/lldp/config/system-name", string("x")));
    }

    static void confirm(gnmi_ext::Commit &commit) { commit.mutable_confirm(); }
    static void cancel(gnmi_ext::Commit &commit) { commit.mutable_cancel(); }
    static Fill last(int64_t seconds) {
        return [seconds](gnmi_ext::Commit &commit) {
            commit.mutable_set_rollback_duration()->mutable_rollback_duration()->set_seconds(seconds);
        };
    }

    bool is_set() { return device_.configuration().find("\"system-name\":\"x\"") != std::string::npos; }
    std::chrono::seconds left() {
        return std::chrono::round<std::chrono::seconds>(device_.service().datastores().deadline().value() -
                                                        std::chrono::steady_clock::now());
    }
    bool is_pending() { return device_.service().datastores().deadline().has_value(); }

    ServedDevice device_;
};

TEST_F(AConfirmedCommit, IsKeptWhenItIsConfirmed) {
    ASSERT_EQ(start("a"), std::nullopt);
    EXPECT_TRUE(is_set());
    EXPECT_TRUE(is_pending());
    EXPECT_EQ(act("a", confirm), std::nullopt);
    EXPECT_FALSE(is_pending());
    EXPECT_TRUE(is_set());
}

TEST_F(AConfirmedCommit, IsRolledBackWhenItIsCancelled) {
    ASSERT_EQ(start("a"), std::nullopt);
    EXPECT_EQ(act("a", cancel), std::nullopt);
    EXPECT_FALSE(is_pending());
    EXPECT_FALSE(is_set());
}

TEST_F(AConfirmedCommit, HasTenMinutesUnlessItSaysOtherwise) {
    ASSERT_EQ(start("a"), std::nullopt);
    EXPECT_EQ(left(), std::chrono::seconds(600));
    EXPECT_EQ(act("a", cancel), std::nullopt);
    ASSERT_EQ(start("b", 77), std::nullopt);
    EXPECT_EQ(left(), std::chrono::seconds(77));
}

TEST_F(AConfirmedCommit, CanBeGivenAnotherTime) {
    ASSERT_EQ(start("a"), std::nullopt);
    EXPECT_EQ(act("a", last(1000)), std::nullopt);
    EXPECT_EQ(left(), std::chrono::seconds(1000));
    EXPECT_TRUE(is_set());
}

TEST_F(AConfirmedCommit, RefusesOtherSetsMeanwhile) {
    ASSERT_EQ(start("a"), std::nullopt);
    EXPECT_EQ(start("b"), Code::failed_precondition);
    EXPECT_EQ(start("a"), Code::failed_precondition);
    EXPECT_EQ(plain(Request().updating("/lldp/config/system-name", string("y"))), Code::failed_precondition);
    EXPECT_TRUE(is_set());
}

TEST_F(AConfirmedCommit, IsKnownByItsId) {
    ASSERT_EQ(start("a"), std::nullopt);
    for (const Fill &action : {Fill(confirm), Fill(cancel), last(60)})
        EXPECT_EQ(act("b", action), Code::invalid_argument);
    EXPECT_TRUE(is_pending());
}

TEST_F(AConfirmedCommit, HasToBeThereForTheOtherActions) {
    for (const Fill &action : {Fill(confirm), Fill(cancel), last(60)})
        EXPECT_EQ(act("a", action), Code::failed_precondition);
}

TEST_F(AConfirmedCommit, NeedsAnIdAnActionAndATimeAboveZero) {
    EXPECT_EQ(start(""), Code::invalid_argument);
    EXPECT_EQ(act("a", [](gnmi_ext::Commit &) {}), Code::invalid_argument);
    EXPECT_EQ(start("a", -1), Code::invalid_argument);
    ASSERT_EQ(start("a"), std::nullopt);
    EXPECT_EQ(act("a", last(0)), Code::invalid_argument);
    EXPECT_EQ(act("a", confirm, Request().remove("/lldp/config")), Code::invalid_argument);
    EXPECT_TRUE(is_pending());
}

TEST_F(AConfirmedCommit, NeedsATimeThatIsADuration) {
    const auto start_for = [this](int64_t seconds, int32_t nanos) {
        return act(
            "a",
            [&](gnmi_ext::Commit &commit) {
                google::protobuf::Duration &time = *commit.mutable_commit()->mutable_rollback_duration();
                time.set_seconds(seconds);
                time.set_nanos(nanos);
            },
            Request().updating("/lldp/config/system-name", string("x")));
    };
    EXPECT_EQ(start_for(1, -5), Code::invalid_argument);
    EXPECT_EQ(start_for(-1, 5), Code::invalid_argument);
    EXPECT_EQ(start_for(1, 1'000'000'000), Code::invalid_argument);
    EXPECT_EQ(start_for(int64_t{1} << 62, 0), Code::invalid_argument);
    EXPECT_FALSE(is_pending());
    ASSERT_EQ(start_for(60, 999'999'999), std::nullopt);
    EXPECT_EQ(left(), std::chrono::seconds(61));
    EXPECT_EQ(act("a", last(int64_t{1} << 62)), Code::invalid_argument);
}

TEST_F(AConfirmedCommit, LeavesNothingWhenItIsRefused) {
    EXPECT_EQ(act(
                  "a", [](gnmi_ext::Commit &commit) { commit.mutable_commit(); },
                  Request().updating("/lldp/config/colour", string("x"))),
              Code::invalid_argument);
    EXPECT_FALSE(is_pending());
    EXPECT_EQ(start("a"), std::nullopt);
}

TEST_F(AConfirmedCommit, IsTheSameForOtherProtocols) {
    ASSERT_EQ(start("a"), std::nullopt);
    Caller session = device_.caller("carol");
    session.session = 7;
    EXPECT_THROW(device_.service().datastores().lock(session, device::Datastore::running), Error);
    device_.service().datastores().commit(session, std::nullopt, "a");
    EXPECT_FALSE(is_pending());
    EXPECT_TRUE(is_set());
}

} // namespace
} // namespace yfw::gnmi::test

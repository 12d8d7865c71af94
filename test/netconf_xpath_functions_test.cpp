// YANG's XPath functions (RFC 7950 section 10) in filters.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_events.h"
#include "netconf_rules.h"
#include "netconf_server.h"

namespace yfw::test {
namespace {

std::string xpath(const std::string &expression) {
    std::string text;
    for (const char c : expression)
        text += c == '"' ? "&quot;" : std::string(1, c);
    return "<filter type=\"xpath\" xmlns:oc=\"http://openconfig.net/yang/lldp\" "
           "xmlns:types=\"http://openconfig.net/yang/lldp/types\" "
           "xmlns:acm=\"urn:ietf:params:xml:ns:yang:ietf-netconf-acm\" select=\"" +
           text + "\"/>";
}

struct FunctionCase {
    const char *name;
    std::string condition; // of /oc:lldp
    bool holds;
};

std::string name_of(const testing::TestParamInfo<FunctionCase> &test) {
    return test.param.name;
}

class AFunction : public NetconfTest, public testing::WithParamInterface<FunctionCase> {};

TEST_P(AFunction, IsEvaluatedAsYangDefinesIt) {
    NetconfClient client(server().socket());
    const Xml reply =
        client.rpc("<get>" + xpath("/oc:lldp[" + GetParam().condition + "]/oc:config/oc:enabled") + "</get>");
    ASSERT_NE(reply.child("data"), nullptr) << reply.printed;
    EXPECT_EQ(reply.at("data/lldp/config/enabled") != nullptr, GetParam().holds) << reply.printed;
}

const std::string eth1 = "oc:interfaces/oc:interface[oc:name='eth1']";
const std::string capability = "//oc:capability/oc:name[.='types:ROUTER' or contains(.,':ROUTER')]";

INSTANTIATE_TEST_SUITE_P(Current, AFunction,
                         testing::Values(FunctionCase{"SeesTheRoot", "current()/oc:lldp/oc:config", true},
                                         FunctionCase{"IsTheRoot", "count(current()/*) = count(/*)", true},
                                         FunctionCase{"IsNotTheContextNode", "current()/oc:config", false}),
                         name_of);

INSTANTIATE_TEST_SUITE_P(
    ReMatch, AFunction,
    testing::Values(FunctionCase{"Matches", "re-match(oc:config/oc:system-name, 'r\\d\\.[a-z.]+')", true},
                    FunctionCase{"MatchesWholeTextsOnly", "re-match(oc:config/oc:system-name, 'r\\d')", false},
                    FunctionCase{"TakesTheExpressionFromTheData",
                                 "re-match(oc:config/oc:system-name, string(oc:config/oc:system-name))", true}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    Deref, AFunction,
    testing::Values(FunctionCase{"OfAKeyIsTheLeafBehindIt",
                                 "deref(" + eth1 + "/oc:name)/../oc:enabled = 'true'", true},
                    FunctionCase{"OfAKeyIsOneLeaf", "count(deref(" + eth1 + "/oc:name)) = 1", true},
                    FunctionCase{"OfSeveralIsThatOfTheFirst",
                                 "deref(oc:interfaces/oc:interface/oc:name) = 'eth1' and "
                                 "count(deref(oc:interfaces/oc:interface/oc:name)) = 1",
                                 true},
                    FunctionCase{"OfAnotherLeafIsNothing", "count(deref(oc:config/oc:enabled)) = 0", true},
                    FunctionCase{"OfAContainerIsNothing", "deref(oc:config)", false},
                    FunctionCase{"OfTheRootIsNothing", "deref(/)", false},
                    FunctionCase{"OfNothingIsNothing", "deref(oc:nothing)", false}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    DerivedFrom, AFunction,
    testing::Values(
        FunctionCase{"ItsBase", "derived-from(//oc:capability/oc:name, 'types:LLDP_SYSTEM_CAPABILITY')", true},
        FunctionCase{"ItsBaseWithoutAPrefix", "derived-from(//oc:capability/oc:name, 'LLDP_SYSTEM_CAPABILITY')",
                     true},
        FunctionCase{"Itself", "derived-from(//oc:capability/oc:name, 'types:ROUTER')", false},
        FunctionCase{"ItselfOrIts", "derived-from-or-self(//oc:capability/oc:name, 'types:ROUTER')", true},
        FunctionCase{"ItsBaseOrSelf",
                     "derived-from-or-self(//oc:capability/oc:name, 'types:LLDP_SYSTEM_CAPABILITY')", true},
        FunctionCase{"AnIdentityOfAnotherModule",
                     "derived-from(//oc:capability/oc:name, 'oc:LLDP_SYSTEM_CAPABILITY')", false},
        FunctionCase{"AnIdentityThatIsNot", "derived-from(//oc:capability/oc:name, 'types:NOTHING')", false},
        FunctionCase{"OfALeafOfAnotherType",
                     "derived-from(oc:config/oc:enabled, 'types:LLDP_SYSTEM_CAPABILITY')", false},
        FunctionCase{"OfTheRoot", "derived-from(/, 'types:LLDP_SYSTEM_CAPABILITY')", false}),
    name_of);

INSTANTIATE_TEST_SUITE_P(
    EnumValue, AFunction,
    testing::Values(FunctionCase{"IsANumber", "enum-value(oc:state/oc:chassis-id-type) >= 0", true},
                    FunctionCase{"OfAnotherLeafIsNone", "string(enum-value(oc:config/oc:enabled)) = 'NaN'",
                                 true},
                    FunctionCase{"OfTheRootIsNone", "string(enum-value(/)) = 'NaN'", true},
                    FunctionCase{"OfNothingIsNone", "string(enum-value(oc:nothing)) = 'NaN'", true}),
    name_of);

INSTANTIATE_TEST_SUITE_P(BitIsSet, AFunction,
                         testing::Values(FunctionCase{"OfALeafOfAnotherTypeIsFalse",
                                                      "bit-is-set(oc:config/oc:enabled, 'true')", false},
                                         FunctionCase{"OfTheRootIsFalse", "bit-is-set(/, 'x')", false}),
                         name_of);

// --- bits: the operations of an access rule, in a union ---

class BitsOfARule : private WithRules, public NetconfTest {
protected:
    BitsOfARule()
        : WithRules(rules_for("*", data_rule("/oc:lldp", "create update", "deny") +
                                       data_rule("/oc:lldp", "*", "permit"))),
          NetconfTest({"--nacm", rules_.path(), "--recovery-user", own_user()}) {}
};

TEST_F(BitsOfARule, AreSetOrNot) {
    NetconfClient client(server().socket());
    const auto rules_with = [&](const std::string &bit) {
        const Xml reply = client.rpc(
            "<get>" +
            xpath("/acm:nacm/acm:rule-list/acm:rule[bit-is-set(acm:access-operations, '" + bit + "')]") +
            "</get>");
        const Xml *list = reply.at("data/nacm/rule-list");
        return list != nullptr ? list->texts("rule").size() : 0U;
    };
    EXPECT_EQ(rules_with("create"), 1U);
    EXPECT_EQ(rules_with("delete"), 0U);
    EXPECT_EQ(rules_with("nonsense"), 0U);
}

// --- refused ---

class AWrongCall : public NetconfTest, public testing::WithParamInterface<FunctionCase> {};

TEST_P(AWrongCall, IsRefused) {
    NetconfClient client(server().socket());
    for (const std::string &operation :
         {"<get>" + xpath("/oc:lldp[" + GetParam().condition + "]") + "</get>",
          get_config("running", xpath("/oc:lldp[" + GetParam().condition + "]"))})
        EXPECT_EQ(error_tag(client.rpc(operation)), "invalid-value") << operation;
    EXPECT_EQ(name(client), "r1.example.net");
}

INSTANTIATE_TEST_SUITE_P(Being, AWrongCall,
                         testing::Values(FunctionCase{"DerefOfAText", "deref('x')", false},
                                         FunctionCase{"DerefOfTwo", "deref(., .)", false},
                                         FunctionCase{"EnumValueOfANumber", "enum-value(1)", false},
                                         FunctionCase{"BitIsSetOfOne", "bit-is-set(.)", false},
                                         FunctionCase{"CurrentOfOne", "current(.)", false},
                                         FunctionCase{"DerivedFromAText", "derived-from('x', 'y')", false},
                                         FunctionCase{"DerivedFromAnUndeclaredPrefix",
                                                      "derived-from(., 'nonsense:x')", false},
                                         FunctionCase{"ReMatchOfNoPattern", "re-match('a', '(')", false},
                                         FunctionCase{"ReMatchOfOne", "re-match('a')", false}),
                         name_of);

TEST(AFunctionThatTakesForEver, IsRefused) {
    const NetconfServer server;
    NetconfClient client(server.socket());
    const Xml reply =
        client.rpc("<get>" + xpath("//*[re-match('" + std::string(200, 'a') + "', '(a*)*b')]") + "</get>");
    EXPECT_EQ(error_tag(reply), "resource-denied");
}

} // namespace
} // namespace yfw::test

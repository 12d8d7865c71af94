// A filter selects what it names, and nothing else.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_server.h"
#include "support/child_process.h"

namespace yfw::test {
namespace {

std::string interface_of(const std::string &name, const std::string &content = "") {
    return "<interface><name>" + name + "</name>" + content + "</interface>";
}

// eth1, and others that do not exist.
std::string interfaces_up_to(int count) {
    std::string entries = interface_of("eth1");
    for (int i = 1; i < count; i++)
        entries += interface_of("other" + std::to_string(i));
    return entries;
}

std::string interfaces(const std::string &content) {
    return lldp("<interfaces>" + content + "</interfaces>");
}

std::string settings_of(const std::string &name) {
    return "<config><name>" + name + "</name><enabled>true</enabled></config>";
}

std::string all_of(const std::string &name) {
    return interface_of(name, settings_of(name));
}

const std::string all_interfaces = all_of("eth1") + all_of("eth2") + all_of("eth3");
const std::string global = "<config><enabled>true</enabled><system-name>r1.example.net</system-name>"
                           "<system-description>Router r1 software 1.0</system-description></config>";
const std::string whole = lldp(global + "<interfaces>" + all_interfaces + "</interfaces>");

struct FilterCase {
    const char *name;
    std::string filter;
    std::string selected; // a document, or nothing
};

std::string name_of(const testing::TestParamInfo<FilterCase> &test) {
    return test.param.name;
}

class NetconfFilter : public NetconfTest {
protected:
    std::string text_of(const std::string &document) const {
        return document.empty() ? "" : openconfig(document);
    }
    NetconfClient client{server().socket()};
};

// --- of the configuration ---

class AFilterOfTheConfiguration : public NetconfFilter, public testing::WithParamInterface<FilterCase> {};

TEST_P(AFilterOfTheConfiguration, SelectsExactlyThis) {
    for (const char *datastore : {"running", "candidate"})
        EXPECT_EQ(openconfig_of(client.rpc(get_config(datastore, GetParam().filter))),
                  text_of(GetParam().selected));
}

INSTANTIATE_TEST_SUITE_P(
    Subtree, AFilterOfTheConfiguration,
    testing::Values(
        FilterCase{"ThatIsNone", "", whole}, FilterCase{"WithoutContent", subtree(""), ""},
        FilterCase{"WithoutAType", "<filter>" + lldp("<config/>") + "</filter>", lldp(global)},
        FilterCase{"OfATopNode", subtree(lldp("")), whole},
        FilterCase{"OfAContainer", subtree(lldp("<interfaces/>")), interfaces(all_interfaces)},
        FilterCase{"OfTwoContainers", subtree(lldp("<config/><interfaces/>")), whole},
        FilterCase{"OfALeaf", subtree(lldp("<config><system-name/></config>")),
                   lldp("<config><system-name>r1.example.net</system-name></config>")},
        FilterCase{"OfWhatIsBelowALeaf",
                   subtree(lldp("<config><system-name><nonsense/></system-name></config>")), ""},
        FilterCase{
            "OfALeafBesideWhatIsBelowAnother",
            subtree(lldp("<config><enabled/><system-name><nonsense>x</nonsense></system-name></config>")),
            lldp("<config><enabled>true</enabled></config>")},
        FilterCase{"OfTheKeysOfAll", subtree(interfaces("<interface><name/></interface>")),
                   interfaces(interface_of("eth1") + interface_of("eth2") + interface_of("eth3"))},
        FilterCase{"OfALeafOfAllEntries",
                   subtree(interfaces("<interface><config><enabled/></config></interface>")),
                   interfaces(interface_of("eth1", "<config><enabled>true</enabled></config>") +
                              interface_of("eth2", "<config><enabled>true</enabled></config>") +
                              interface_of("eth3", "<config><enabled>true</enabled></config>"))},
        FilterCase{"OfOneEntry", subtree(interfaces(interface_of("eth1"))), interfaces(all_of("eth1"))},
        FilterCase{"OfOneEntryWithSpaceAroundTheKey", subtree(interfaces(interface_of("\n  eth1 "))),
                   interfaces(all_of("eth1"))},
        FilterCase{"OfTwoEntries", subtree(interfaces(interface_of("eth1") + interface_of("eth3"))),
                   interfaces(all_of("eth1") + all_of("eth3"))},
        FilterCase{"OfAHundredEntriesOfWhichTwoAre",
                   subtree(interfaces(interfaces_up_to(100) + interface_of("eth3"))),
                   interfaces(all_of("eth1") + all_of("eth3"))},
        FilterCase{
            "OfALeafOfAHundredEntries",
            subtree(interfaces(interfaces_up_to(100) + interface_of("eth3", "<config><enabled/></config>"))),
            interfaces(all_of("eth1") + interface_of("eth3", "<config><enabled>true</enabled></config>"))},
        FilterCase{"OfAContainerTwice",
                   subtree(lldp("<interfaces/><interfaces>" + interface_of("eth3") + "</interfaces>")),
                   interfaces(all_interfaces)},
        FilterCase{"OfAContainersPartsOfDifferentEntries",
                   subtree(interfaces("<interface><config><enabled/></config><config><name>eth2</name></config>"
                                      "</interface>")),
                   interfaces(interface_of("eth1", "<config><enabled>true</enabled></config>") +
                              all_of("eth2") +
                              interface_of("eth3", "<config><enabled>true</enabled></config>"))},
        FilterCase{"OfAKeyBesideContentOfOneEntry",
                   subtree(interfaces("<interface><name/><config><name>eth3</name></config></interface>")),
                   interfaces(interface_of("eth1") + interface_of("eth2") + all_of("eth3"))},
        FilterCase{"OfAKeyTwice", subtree(interfaces("<interface><name/><name>eth3</name></interface>")),
                   interfaces(interface_of("eth3"))},
        FilterCase{"OfContentBesideAnUnknownLeaf",
                   subtree(lldp("<config><enabled>true</enabled><nonsense/></config>")),
                   lldp("<config><enabled>true</enabled></config>")},
        FilterCase{"OfAnEntryBesideAnUnknownLeaf",
                   subtree(interfaces("<interface><name>eth1</name><nonsense/></interface>")),
                   interfaces(interface_of("eth1"))},
        FilterCase{"OfAnEntryBesideContentThatDoesNotMatch",
                   subtree(interfaces("<interface><name>eth1</name><config><enabled>false</enabled></config>"
                                      "</interface>")),
                   interfaces(interface_of("eth1"))},
        FilterCase{"OfALeafOfOneEntry",
                   subtree(interfaces(interface_of("eth2", "<config><enabled/></config>"))),
                   interfaces(interface_of("eth2", "<config><enabled>true</enabled></config>"))},
        FilterCase{
            "OfDifferentPartsOfTwoEntries",
            subtree(interfaces(interface_of("eth1", "<config><enabled/></config>") + interface_of("eth2"))),
            interfaces(interface_of("eth1", "<config><enabled>true</enabled></config>") + all_of("eth2"))},
        FilterCase{"OfContentThatIsNoKey",
                   subtree(interfaces("<interface><config><name>eth2</name></config></interface>")),
                   interfaces(all_of("eth2"))},
        FilterCase{"OfContentThatIsNoKeyAndALeafBesideIt",
                   subtree(interfaces("<interface><config><name>eth2</name><enabled/></config></interface>")),
                   interfaces(all_of("eth2"))},
        FilterCase{"OfContentOfTheDevice",
                   subtree(lldp("<config><system-name>r1.example.net</system-name>"
                                "</config>")),
                   lldp(global)},
        FilterCase{"OfContentThatDoesNotMatch",
                   subtree(lldp("<config><system-name>other</system-name></config>")), ""},
        FilterCase{"OfContentOfWhichOnePartDoesNotMatch",
                   subtree(lldp("<config><system-name>r1.example.net</system-name><enabled>false</enabled>"
                                "</config>")),
                   ""},
        FilterCase{"OfContentThatDoesNotMatchBesideAContainer",
                   subtree(lldp("<config><system-name>other</system-name></config><interfaces/>")),
                   interfaces(all_interfaces)},
        FilterCase{"OfAnEntryThatIsNot", subtree(interfaces(interface_of("eth9"))), ""},
        FilterCase{"OfAnUnknownLeaf", subtree(lldp("<config><nonsense/></config>")), ""},
        FilterCase{"OfAnUnknownTopNode", subtree("<nonsense xmlns=\"http://openconfig.net/yang/lldp\"/>"), ""},
        FilterCase{"OfAnUnknownNamespace", subtree("<lldp xmlns=\"urn:example:nonsense\"/>"), ""},
        FilterCase{"OfAnUnknownNamespaceBesideAKnownOne",
                   subtree("<lldp xmlns=\"urn:example:nonsense\"/>" + lldp("<config/>")), lldp(global)},
        FilterCase{"OfAnyNamespace", subtree("<lldp xmlns=\"\"><config/></lldp>"), lldp(global)},
        FilterCase{"OfAnyNamespaceTwice",
                   subtree("<lldp xmlns=\"\"><interfaces>" + interface_of("eth1") + interface_of("eth2") +
                           "</interfaces></lldp>"),
                   interfaces(all_of("eth1") + all_of("eth2"))},
        FilterCase{"WithAnAttributeThatNothingHas",
                   subtree(interfaces("<interface xmlns:ex=\"urn:example\" ex:color=\"red\"/>")), ""},
        FilterCase{"OfState", subtree(lldp("<state/>")), ""},
        FilterCase{"OfSeveralTopNodesThatAreTheSame",
                   subtree(lldp("<config/>") + interfaces(interface_of("eth1"))),
                   lldp(global + "<interfaces>" + all_of("eth1") + "</interfaces>")},
        FilterCase{"OfThePartAndTheWhole", subtree(lldp("<config><enabled/></config><config/>")), lldp(global)},
        FilterCase{
            "OfAnEntryAndItsPart",
            subtree(interfaces(interface_of("eth1", "<config><enabled/></config>") + interface_of("eth1"))),
            interfaces(all_of("eth1"))}),
    name_of);

TEST_F(NetconfFilter, OfANameWithSpaceAroundItSelectsTheEntryThatHasIt) {
    expect_ok(client.rpc(edit_config("running", interface_edit(" eth1 ", "false"))));
    const std::string both = openconfig_of(client.rpc(get_config(
        "running",
        subtree(interfaces("<interface><name> eth1 </name><config><enabled/></config></interface>")))));
    EXPECT_EQ(both, text_of(interfaces(interface_of(" eth1 ", "<config><enabled>false</enabled></config>") +
                                       interface_of("eth1", "<config><enabled>true</enabled></config>"))));
    EXPECT_EQ(openconfig_of(client.rpc(get_config("running", subtree(interfaces(interface_of("eth1")))))),
              text_of(interfaces(all_of("eth1"))));
}

std::string xpath(const std::string &expression) {
    return "<filter type=\"xpath\" xmlns:oc=\"http://openconfig.net/yang/lldp\" select=\"" + expression +
           "\"/>";
}

INSTANTIATE_TEST_SUITE_P(
    XPath, AFilterOfTheConfiguration,
    testing::Values(
        FilterCase{"OfATopNode", xpath("/oc:lldp"), whole}, FilterCase{"OfAll", xpath("/*"), whole},
        FilterCase{"OfALeaf", xpath("/oc:lldp/oc:config/oc:system-name"),
                   lldp("<config><system-name>r1.example.net</system-name></config>")},
        FilterCase{"OfOneEntry", xpath("/oc:lldp/oc:interfaces/oc:interface[oc:name='eth2']"),
                   interfaces(all_of("eth2"))},
        FilterCase{"OfALeafOfAllEntries", xpath("/oc:lldp/oc:interfaces/oc:interface/oc:config/oc:enabled"),
                   interfaces(interface_of("eth1", "<config><enabled>true</enabled></config>") +
                              interface_of("eth2", "<config><enabled>true</enabled></config>") +
                              interface_of("eth3", "<config><enabled>true</enabled></config>"))},
        FilterCase{"OfAUnion", xpath("/oc:lldp/oc:config | //oc:interface[oc:name='eth1']"),
                   lldp(global + "<interfaces>" + all_of("eth1") + "</interfaces>")},
        FilterCase{"OfADescendant", xpath("//oc:interface[oc:config/oc:name='eth3']"),
                   interfaces(all_of("eth3"))},
        FilterCase{"OfAComparison", xpath("/oc:lldp[oc:config/oc:enabled='true']/oc:config"), lldp(global)},
        FilterCase{"OfNothing", xpath("/oc:lldp/oc:interfaces/oc:interface[oc:name='eth9']"), ""},
        FilterCase{"OfTwoValuesOfOneKey",
                   xpath("/oc:lldp/oc:interfaces/oc:interface[oc:name='eth1'][oc:name='eth2']"), ""},
        FilterCase{"OfTheRoot", xpath("/"), whole},
        FilterCase{"OfAnyNodeOfANamespace", xpath("/oc:*/oc:interfaces/oc:interface[oc:name='eth2']"),
                   interfaces(all_of("eth2"))},
        FilterCase{"WithoutPrefixes", xpath("/lldp/interfaces/interface[name='eth2']"),
                   interfaces(all_of("eth2"))},
        FilterCase{"WithAndInAPredicate", xpath("/oc:lldp/oc:config[oc:enabled and oc:system-name]"),
                   lldp(global)},
        FilterCase{"WithOrInAPredicate",
                   xpath("/oc:lldp/oc:interfaces/oc:interface[oc:name='eth1' or oc:name='eth3']"),
                   interfaces(all_of("eth1") + all_of("eth3"))},
        FilterCase{"WithAPosition", xpath("/oc:lldp/oc:interfaces/oc:interface[2]"),
                   interfaces(all_of("eth2"))},
        FilterCase{"OfTheText", xpath("/oc:lldp/oc:config/oc:system-name/text()"),
                   lldp("<config><system-name>r1.example.net</system-name></config>")},
        FilterCase{"ThatGoesUpAgain",
                   xpath("/oc:lldp/oc:interfaces/oc:interface[oc:name='eth1']/../../oc:config"), lldp(global)},
        FilterCase{"ThatComparesWithAnotherPlace",
                   xpath("/oc:lldp/oc:config[oc:system-name = /oc:lldp/oc:config/oc:system-name]"),
                   lldp(global)},
        FilterCase{"WithARemainderOfZero", xpath("/oc:lldp[1 mod 0]"), ""},
        FilterCase{"WithARemainderOfAHalf", xpath("/oc:lldp[1 mod 0.5]"), ""},
        FilterCase{"WithTheSmallestRemainder", xpath("/oc:lldp[-9223372036854775808 mod -1]"), ""},
        FilterCase{"OfState", xpath("/oc:lldp/oc:state"), ""}),
    name_of);

// --- of configuration and state ---

class AFilterOfEverything : public NetconfFilter, public testing::WithParamInterface<FilterCase> {};

TEST_P(AFilterOfEverything, SelectsExactlyThis) {
    EXPECT_EQ(openconfig_of(client.rpc("<get>" + GetParam().filter + "</get>")), text_of(GetParam().selected));
}

std::string neighbor(const std::string &interface, const std::string &id, const std::string &leaf) {
    return interface_of(interface, "<neighbors><neighbor><id>" + id + "</id><state>" + leaf +
                                       "</state></neighbor></neighbors>");
}

INSTANTIATE_TEST_SUITE_P(
    Being, AFilterOfEverything,
    testing::Values(
        FilterCase{"OfALeafOfState", subtree(lldp("<state><chassis-id/></state>")),
                   lldp("<state><chassis-id>5a:75:19:78:f3:ec</chassis-id></state>")},
        FilterCase{"OfConfigurationAlone", subtree(lldp("<config/>")), lldp(global)},
        FilterCase{
            "OfACounterOfOneInterface",
            subtree(interfaces(interface_of("eth1", "<state><counters><frame-in/></counters></state>"))),
            interfaces(interface_of("eth1", "<state><counters><frame-in>20</frame-in></counters></state>"))},
        FilterCase{"OfALeafOfANeighbor",
                   subtree(interfaces(interface_of("eth2", "<neighbors><neighbor><state><ttl/></state>"
                                                           "</neighbor></neighbors>"))),
                   interfaces(neighbor("eth2", "r3.example.net#eth1", "<ttl>8</ttl>"))},
        FilterCase{"OfNeighborsOnAnInterfaceThatIsNot",
                   subtree(interfaces(interface_of("eth9", "<neighbors/>"))), ""},
        FilterCase{"OfALeafOfANeighborByXPath",
                   xpath("//oc:interface[oc:name='eth2']/oc:neighbors/oc:neighbor/oc:state/oc:ttl"),
                   interfaces(neighbor("eth2", "r3.example.net#eth1", "<ttl>8</ttl>"))},
        FilterCase{"OfNothing", subtree(""), ""}),
    name_of);

// The top nodes of all modules are below one root.
TEST_F(NetconfFilter, ByXPathSeesTheTopNodesOfAllModules) {
    const auto selects = [this](const std::string &expression) {
        const Xml reply = client.rpc("<get>" + xpath(expression) + "</get>");
        return reply.at("data/lldp") != nullptr;
    };
    EXPECT_TRUE(selects("/*[1]"));
    EXPECT_FALSE(selects("/*[2]"));
    EXPECT_TRUE(selects("/oc:lldp[/netconf-state]"));
    EXPECT_FALSE(selects("/oc:lldp[not(/netconf-state)]"));
    EXPECT_TRUE(selects("/oc:lldp[count(/*) = 5]"));
}

TEST_F(NetconfFilter, OfTheWholeDeviceSelectsWhatTheCommandLineReads) {
    const Outcome outcome =
        run_yfw({.arguments = {"get", "/lldp", "--format", "xml", "--device", server().device().string()}});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(openconfig_of(client.rpc("<get>" + subtree(lldp("")) + "</get>")), openconfig(outcome.output));
}

TEST_F(NetconfFilter, OfAValueOfANeighborSelectsThatNeighborsState) {
    const std::string filter = interfaces("<interface><neighbors><neighbor><state><system-name>r2.example.net"
                                          "</system-name></state></neighbor></neighbors></interface>");
    const Tree tree =
        parse_answer(modules(), Format::xml, openconfig_of(client.rpc("<get>" + subtree(filter) + "</get>")));
    EXPECT_THAT(values_at(tree.get(), "//openconfig-lldp:neighbor/state/system-name"),
                testing::AllOf(testing::Not(testing::IsEmpty()), testing::Each("r2.example.net")));
    EXPECT_THAT(values_at(tree.get(), "//openconfig-lldp:neighbor/capabilities/capability/name"),
                testing::IsEmpty());
}

// --- refused ---

std::string nested_predicates(size_t levels) {
    std::string expression = "/oc:lldp";
    for (size_t i = 0; i < levels; i++)
        expression += "[oc:config";
    return expression + std::string(levels, ']');
}

// Compares the text of all data with itself, many times.
std::string whole_text_many_times(size_t times) {
    std::string texts = "/";
    for (size_t i = 1; i < times; i++)
        texts += ",/";
    return "/oc:lldp[contains(concat(" + texts + "),concat(" + texts + "))]";
}

class AWrongFilter : public NetconfFilter, public testing::WithParamInterface<FilterCase> {};

TEST_P(AWrongFilter, IsRefusedInBothOperations) {
    for (const std::string &operation :
         {"<get>" + GetParam().filter + "</get>", get_config("running", GetParam().filter)})
        EXPECT_EQ(error_tag(client.rpc(operation)), GetParam().selected) << operation;
    EXPECT_EQ(name(client), "r1.example.net");
}

INSTANTIATE_TEST_SUITE_P(
    Being, AWrongFilter,
    testing::Values(
        FilterCase{"OfAnUnknownType", "<filter type=\"nonsense\"/>", "bad-attribute"},
        FilterCase{"XPathWithoutSelect", "<filter type=\"xpath\"/>", "missing-attribute"},
        FilterCase{"XPathWithContent", "<filter type=\"xpath\" select=\"/*\"><a/></filter>", "bad-element"},
        FilterCase{"XPathWithText", "<filter type=\"xpath\" select=\"/*\">a</filter>", "bad-element"},
        FilterCase{"SubtreeWithText", "<filter>a</filter>", "bad-element"},
        FilterCase{"SubtreeWithSelect", "<filter select=\"/*\"/>", "bad-attribute"},
        FilterCase{"OfTwoTypes",
                   "<filter type=\"subtree\" nc:type=\"xpath\" select=\"/*\" "
                   "xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\"/>",
                   "bad-attribute"},
        FilterCase{"XPathThatIsNoExpression", xpath("/oc:lldp[["), "invalid-value"},
        FilterCase{"XPathOfNothing", xpath(""), "invalid-value"},
        FilterCase{"XPathThatIsANumber", xpath("count(/oc:lldp)"), "invalid-value"},
        FilterCase{"XPathThatIsAString", xpath("string(/oc:lldp)"), "invalid-value"},
        FilterCase{"XPathOfAnUndeclaredPrefix", xpath("/nonsense:lldp"), "invalid-value"},
        FilterCase{"XPathOfEnumValue", xpath("enum-value(/)"), "invalid-value"},
        FilterCase{"XPathOfBitIsSet", xpath("bit-is-set(/,'x')"), "invalid-value"},
        FilterCase{"XPathOfTooManyLevels", xpath(nested_predicates(900)), "resource-denied"},
        FilterCase{"XPathOfAHugeText", xpath(whole_text_many_times(2000)), "resource-denied"},
        FilterCase{"XPathOfAnUnknownFunction", xpath("/oc:lldp[nonsense()]"), "invalid-value"}),
    name_of);

} // namespace
} // namespace yfw::test

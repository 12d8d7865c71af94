// The operations that name a datastore (RFC 8526).
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_server.h"

namespace yfw::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using Paths = std::set<std::string>;

const std::string original = "r1.example.net";

const std::string in_running = "<datastore>ds:running</datastore>";

std::string subtree_filter(const std::string &content) {
    return "<subtree-filter>" + content + "</subtree-filter>";
}

std::string xpath_filter(const std::string &expression) {
    return "<xpath-filter>" + expression + "</xpath-filter>";
}

class NetconfNmda : public NetconfTest {
protected:
    Xml data_of(const std::string &operation) {
        const Xml reply = client.rpc(operation);
        const Xml *data = reply.child("data");
        if (data == nullptr)
            throw std::runtime_error("no <data>: " + reply.printed);
        EXPECT_EQ(data->ns, nmda_namespace);
        return *data;
    }
    std::string configuration(const std::string &name, const std::string &more = "") {
        return openconfig_of(client.rpc(get_data(name, more)));
    }
    NetconfClient client{server().socket()}, other{server().socket()};
};

TEST_F(NetconfNmda, IsOfferedInTheHelloAndTheLibrary) {
    EXPECT_THAT(client.capabilities(),
                Contains(testing::StartsWith(nmda_namespace + "?module=ietf-netconf-nmda&revision=")));
    const Xml reply =
        client.rpc("<get>" +
                   subtree("<yang-library xmlns=\"urn:ietf:params:xml:ns:yang:ietf-yang-library\">"
                           "<datastore><name/></datastore></yang-library>") +
                   "</get>");
    const Xml *library = reply.at("data/yang-library");
    ASSERT_NE(library, nullptr) << reply.printed;
    std::vector<std::string> names;
    for (const Xml &each : library->children)
        names.push_back(each.text_at("name").substr(each.text_at("name").find(':') + 1));
    EXPECT_THAT(names, testing::UnorderedElementsAre("running", "candidate", "operational"));
}

// --- get-data ---

TEST_F(NetconfNmda, ReadsConfigurationsAsTheOlderOperationDoes) {
    expect_ok(client.rpc(edit_config("candidate", name_edit("new"))));
    for (const char *name : {"running", "candidate"})
        EXPECT_EQ(configuration(name), everything(client, name)) << name;
    EXPECT_NE(configuration("running"), configuration("candidate"));
}

TEST_F(NetconfNmda, ReadsConfigurationAndStateAsOperational) {
    const std::string filter = lldp("");
    EXPECT_EQ(configuration("operational", subtree_filter(filter)),
              openconfig_of(client.rpc("<get>" + subtree(filter) + "</get>")));
}

TEST_F(NetconfNmda, ReadsTheServersOwnStateAsOperationalAlone) {
    const auto names = [this](const std::string &name) {
        std::vector<std::string> found;
        for (const Xml &each : data_of(get_data(name)).children)
            found.push_back(each.name);
        return found;
    };
    EXPECT_THAT(names("operational"), testing::IsSupersetOf({"lldp", "netconf-state", "yang-library"}));
    EXPECT_THAT(names("running"), testing::ElementsAre("lldp"));
}

TEST_F(NetconfNmda, ReadsOfOperationalWhatIsInUseAndNotTheCandidate) {
    expect_ok(client.rpc(edit_config("candidate", name_edit("new"))));
    const std::string names = configuration("operational", xpath_filter("/oc:lldp/oc:config/oc:system-name"));
    EXPECT_EQ(names, openconfig(name_edit(original)));
}

struct FilterCase {
    const char *name;
    std::string filter;
    std::string selected; // a document, or nothing
};

class AFilterOfData : public NetconfNmda, public testing::WithParamInterface<FilterCase> {};

TEST_P(AFilterOfData, SelectsExactlyThis) {
    for (const char *name : {"running", "candidate"})
        EXPECT_EQ(configuration(name, GetParam().filter),
                  GetParam().selected.empty() ? "" : openconfig(GetParam().selected));
}

std::string entry(const std::string &name, const std::string &content) {
    return lldp("<interfaces><interface><name>" + name + "</name>" + content + "</interface></interfaces>");
}

INSTANTIATE_TEST_SUITE_P(
    Being, AFilterOfData,
    testing::Values(
        FilterCase{"ASubtreeOfALeaf", subtree_filter(lldp("<config><system-name/></config>")),
                   name_edit(original)},
        FilterCase{"ASubtreeOfAnEntry", subtree_filter(entry("eth2", "<config><enabled/></config>")),
                   entry("eth2", "<config><enabled>true</enabled></config>")},
        FilterCase{"ASubtreeOfNothing", subtree_filter(""), ""},
        FilterCase{"ASubtreeOfState", subtree_filter(lldp("<state/>")), ""},
        FilterCase{"AnXPathOfALeaf", xpath_filter("/oc:lldp/oc:config/oc:system-name"), name_edit(original)},
        FilterCase{"AnXPathOfAnEntry",
                   xpath_filter("/oc:lldp/oc:interfaces/oc:interface[oc:name='eth2']/oc:config/oc:enabled"),
                   entry("eth2", "<config><enabled>true</enabled></config>")},
        FilterCase{"AnXPathOfNothing", xpath_filter("/oc:lldp/oc:interfaces/oc:interface[oc:name='x']"), ""},
        FilterCase{"AnXPathOfState", xpath_filter("/oc:lldp/oc:state"), ""}),
    [](const auto &test) { return test.param.name; });

// --- only configuration, only state ---

class TheConfigFilter : public NetconfNmda {
protected:
    std::string selected(const std::string &config, const std::string &xpath) {
        const std::string text = configuration("operational", "<config-filter>" + config + "</config-filter>" +
                                                                  subtree_filter(lldp("")));
        return as_text(parse_answer(modules(), Format::xml, text).get(), xpath);
    }
};

TEST_F(TheConfigFilter, LeavesTheConfigurationWhenItIsTrue) {
    EXPECT_EQ(configuration("operational", "<config-filter>true</config-filter>" + subtree_filter(lldp(""))),
              everything(client));
}

TEST_F(TheConfigFilter, LeavesTheStateAndTheKeysToItWhenItIsFalse) {
    EXPECT_EQ(selected("false", "//openconfig-lldp:config"), "");
    EXPECT_NE(selected("false", "/openconfig-lldp:lldp/state/chassis-id"), "");
    EXPECT_NE(selected("false", "//openconfig-lldp:interface[name='eth1']/neighbors/neighbor"), "");
}

TEST_F(TheConfigFilter, LeavesNothingOfAConfigurationWhenItIsFalse) {
    EXPECT_EQ(configuration("running", "<config-filter>false</config-filter>"), "");
    EXPECT_EQ(configuration("running", "<config-filter>true</config-filter>"), everything(client));
}

// --- depth ---

void add_paths(const Xml &element, const std::string &path, Paths &paths) {
    paths.insert(path + element.name);
    for (const Xml &child : element.children)
        add_paths(child, path + element.name + "/", paths);
}

struct DepthCase {
    const char *name;
    std::string filter;
    std::string depth;
    Paths paths;
};

class TheDepth : public NetconfNmda, public testing::WithParamInterface<DepthCase> {};

// An entry on the last level may or may not show its key.
TEST_P(TheDepth, LeavesThisManyLevels) {
    const std::string key = "lldp/interfaces/interface/name";
    Paths found;
    for (const Xml &top :
         data_of(get_data("running", GetParam().filter + "<max-depth>" + GetParam().depth + "</max-depth>"))
             .children)
        add_paths(top, "", found);
    if (GetParam().paths.count(key) == 0)
        found.erase(key);
    EXPECT_EQ(found, GetParam().paths);
}

Paths operator+(Paths paths, const Paths &more) {
    paths.insert(more.begin(), more.end());
    return paths;
}

const Paths one{"lldp"};
const Paths two = one + Paths{"lldp/config", "lldp/interfaces"};
const Paths leaves{"lldp/config/enabled", "lldp/config/system-name", "lldp/config/system-description"};
const Paths three = two + leaves + Paths{"lldp/interfaces/interface"};
const Paths four = three + Paths{"lldp/interfaces/interface/name", "lldp/interfaces/interface/config"};
const Paths all =
    four + Paths{"lldp/interfaces/interface/config/name", "lldp/interfaces/interface/config/enabled"};
const Paths config{"lldp", "lldp/config"};

INSTANTIATE_TEST_SUITE_P(
    Of, TheDepth,
    testing::Values(DepthCase{"One", "", "1", one}, DepthCase{"Two", "", "2", two},
                    DepthCase{"Three", "", "3", three}, DepthCase{"Four", "", "4", four},
                    DepthCase{"Five", "", "5", all}, DepthCase{"TheMost", "", "65535", all},
                    DepthCase{"Unbounded", "", "unbounded", all},
                    DepthCase{"OneBelowAnXPath", xpath_filter("/oc:lldp/oc:config"), "1", config},
                    DepthCase{"TwoBelowAnXPath", xpath_filter("/oc:lldp/oc:config"), "2", config + leaves},
                    DepthCase{"OneOfALeaf", xpath_filter("/oc:lldp/oc:config/oc:enabled"), "1",
                              config + Paths{"lldp/config/enabled"}},
                    DepthCase{"OneBelowASubtree", subtree_filter(lldp("<config/>")), "1", config},
                    DepthCase{"TwoBelowASubtree", subtree_filter(lldp("<config/>")), "2", config + leaves}),
    [](const auto &test) { return test.param.name; });

// --- edit-data ---

class AnEditOfData : public NetconfNmda, public testing::WithParamInterface<const char *> {};

TEST_P(AnEditOfData, ChangesItsDatastore) {
    expect_ok(client.rpc(edit_data(GetParam(), name_edit("new"))));
    EXPECT_EQ(name(other, GetParam()), "new");
    if (std::string(GetParam()) == "candidate") {
        EXPECT_EQ(name(other), original);
        expect_ok(client.rpc("<commit/>"));
        EXPECT_EQ(name(other), "new");
    }
}

TEST_P(AnEditOfData, TakesOperations) {
    const std::string edit = lldp("<config><system-name nc:operation=\"create\">x</system-name></config>");
    EXPECT_EQ(error_tag(client.rpc(edit_data(GetParam(), edit))), "data-exists");
    expect_ok(
        client.rpc(edit_data(GetParam(), lldp("<config><system-name nc:operation=\"delete\"/></config>"))));
    EXPECT_EQ(name(other, GetParam()), "");
}

TEST_P(AnEditOfData, TakesADefaultOperation) {
    expect_ok(
        client.rpc(edit_data(GetParam(), name_edit("new"), "<default-operation>none</default-operation>")));
    EXPECT_EQ(name(other, GetParam()), original);
    expect_ok(client.rpc(
        edit_data(GetParam(), lldp("<config><enabled>true</enabled><system-name>new</system-name></config>"),
                  "<default-operation>replace</default-operation>")));
    EXPECT_EQ(values(other, GetParam(), "/openconfig-lldp:lldp/config/*|//openconfig-lldp:interface/name"),
              (std::vector<std::string>{"true", "new"}));
}

INSTANTIATE_TEST_SUITE_P(Of, AnEditOfData, testing::Values("running", "candidate"),
                         [](const auto &test) { return std::string(test.param); });

// --- locks and validation ---

std::string on_datastore(const std::string &operation, const std::string &place, const std::string &name) {
    return "<" + operation + "><" + place + "><datastore xmlns=\"" + nmda_namespace + "\" xmlns:ds=\"" +
           datastores_namespace + "\">ds:" + name + "</datastore></" + place + "></" + operation + ">";
}

class ALockByName : public NetconfNmda, public testing::WithParamInterface<const char *> {};

TEST_P(ALockByName, IsTheSameAsTheOlderOne) {
    expect_ok(client.rpc(on_datastore("lock", "target", GetParam())));
    for (const std::string &operation : {on_datastore("lock", "target", GetParam()), lock(GetParam())})
        EXPECT_EQ(error_info(expect_error(other.rpc(operation), "protocol", "lock-denied"), "session-id"),
                  client.session_id());
    expect_error(other.rpc(edit_data(GetParam(), name_edit("theirs"))), "protocol", "in-use");
    expect_ok(client.rpc(on_datastore("unlock", "target", GetParam())));
    expect_ok(other.rpc(lock(GetParam())));
    expect_ok(other.rpc(on_datastore("unlock", "target", GetParam())));
}

TEST_P(ALockByName, IsNotNeededForAValidation) {
    expect_ok(client.rpc(on_datastore("validate", "source", GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Of, ALockByName, testing::Values("running", "candidate"),
                         [](const auto &test) { return std::string(test.param); });

// --- origins (RFC 8342 section 5.3.4) ---

const char *const origin_namespace = "urn:ietf:params:xml:ns:yang:ietf-origin";

std::string origin_filter(const std::string &name, const std::string &origin) {
    return "<" + name + " xmlns:or=\"" + origin_namespace + "\">or:" + origin + "</" + name + ">";
}

// A device that is on without being configured so: its system name needs it.
class TheOrigin : public NetconfNmda {
protected:
    void SetUp() override {
        expect_ok(
            client.rpc(edit_config("running", lldp("<config><enabled nc:operation=\"delete\"/></config>"))));
    }
    // The content of /lldp/config, as printed.
    std::string config(const std::string &parameters) {
        const std::string reply =
            client.rpc(get_data("operational", subtree_filter(lldp("<config/>")) + parameters)).printed;
        const size_t start = reply.find("<config>");
        return start == std::string::npos ? "" : reply.substr(start, reply.find("</config>") - start);
    }
};

TEST_F(TheOrigin, IsToldOnRequest) {
    EXPECT_THAT(config(""), Not(HasSubstr("origin")));
    const Xml reply = client.rpc(get_data("operational", subtree_filter(lldp("<config/>")) + "<with-origin/>"));
    EXPECT_THAT(reply.printed, HasSubstr(std::string("xmlns:or=\"") + origin_namespace + "\""));
    EXPECT_THAT(reply.printed, testing::ContainsRegex("<lldp [^>]*or:origin=\"or:intended\""));
    EXPECT_THAT(reply.printed, testing::ContainsRegex("<enabled [^>]*or:origin=\"or:system\"[^>]*>true<"));
    EXPECT_THAT(reply.printed, HasSubstr("<system-name>r1.example.net<"));
}

TEST_F(TheOrigin, SelectsConfiguration) {
    EXPECT_THAT(config(origin_filter("origin-filter", "intended")),
                AllOf(HasSubstr("system-name"), Not(HasSubstr("enabled"))));
    EXPECT_THAT(config(origin_filter("origin-filter", "system")),
                AllOf(HasSubstr("enabled"), Not(HasSubstr("system-name"))));
    EXPECT_THAT(config(origin_filter("negated-origin-filter", "system")),
                AllOf(HasSubstr("system-name"), Not(HasSubstr("enabled"))));
    EXPECT_EQ(config(origin_filter("origin-filter", "learned")), "");
    EXPECT_THAT(config(origin_filter("origin-filter", "origin")),
                AllOf(HasSubstr("system-name"), HasSubstr("enabled")));
}

TEST_F(TheOrigin, DoesNotSelectState) {
    const std::string reply =
        client
            .rpc(get_data("operational", subtree_filter(lldp("")) + origin_filter("origin-filter", "learned")))
            .printed;
    EXPECT_THAT(reply, AllOf(HasSubstr("<neighbor>"), Not(HasSubstr("<config>"))));
}

// --- refused ---

struct RefusedCase {
    const char *name;
    std::string operation;
    std::vector<std::string> tags;
};

class ARequestOfData : public NetconfNmda, public testing::WithParamInterface<RefusedCase> {};

TEST_P(ARequestOfData, IsRefusedWithNothingChanged) {
    const std::string before = everything(client);
    const Xml reply = client.rpc(GetParam().operation);
    EXPECT_THAT(GetParam().tags, Contains(error_tag(reply))) << reply.printed;
    EXPECT_EQ(everything(client), before);
    EXPECT_EQ(everything(client, "candidate"), before);
}

std::string depth(const std::string &value) {
    return get_data("running", "<max-depth>" + value + "</max-depth>");
}

const std::string new_name = "<config>" + name_edit("new") + "</config>";

INSTANTIATE_TEST_SUITE_P(
    For, ARequestOfData,
    testing::Values(
        RefusedCase{"NoDatastore", nmda_operation("get-data", ""), {"missing-element"}},
        RefusedCase{"TheStartupDatastore", get_data("startup"), {"invalid-value"}},
        RefusedCase{"TheIntendedDatastore", get_data("intended"), {"invalid-value"}},
        RefusedCase{"AnUnknownDatastore", get_data("nonsense"), {"invalid-value"}},
        RefusedCase{"ADatastoreOfAnotherModule",
                    nmda_operation("get-data", "<datastore>running</datastore>"),
                    {"invalid-value"}},
        RefusedCase{"ADatastoreOfAnUndeclaredPrefix",
                    nmda_operation("get-data", "<datastore>x:running</datastore>"),
                    {"invalid-value"}},
        RefusedCase{"AnEmptyDatastore", nmda_operation("get-data", "<datastore/>"), {"invalid-value"}},
        RefusedCase{"AnUnknownParameter", get_data("running", "<nonsense/>"), {"unknown-element"}},
        RefusedCase{"TheOriginsOfAConfiguration", get_data("running", "<with-origin/>"), {"invalid-value"}},
        RefusedCase{"AFilterOfOriginsOfAnUndeclaredPrefix",
                    get_data("operational", "<origin-filter>or:intended</origin-filter>"),
                    {"invalid-value"}},
        RefusedCase{"AnOriginThatDoesNotExist",
                    get_data("operational", origin_filter("origin-filter", "nonsense")),
                    {"invalid-value"}},
        RefusedCase{"TwoFiltersOfOrigins",
                    get_data("operational", origin_filter("origin-filter", "intended") +
                                                origin_filter("negated-origin-filter", "system")),
                    {"bad-element"}},
        RefusedCase{"TwoFilters",
                    get_data("running", subtree_filter(lldp("")) + xpath_filter("/oc:lldp")),
                    {"bad-element", "unknown-element", "invalid-value", "malformed-message"}},
        RefusedCase{
            "AnXPathThatIsNoExpression", get_data("running", xpath_filter("/oc:lldp[[")), {"invalid-value"}},
        RefusedCase{
            "AnXPathOfAnUndeclaredPrefix", get_data("running", xpath_filter("/x:lldp")), {"invalid-value"}},
        RefusedCase{"AnXPathThatIsANumber", get_data("running", xpath_filter("count(/*)")), {"invalid-value"}},
        RefusedCase{"ADepthOfZero", depth("0"), {"invalid-value"}},
        RefusedCase{"ADepthBelowZero", depth("-1"), {"invalid-value"}},
        RefusedCase{"ADepthThatIsTooMuch", depth("65536"), {"invalid-value"}},
        RefusedCase{"ADepthThatIsAWord", depth("deep"), {"invalid-value"}},
        RefusedCase{"AnEmptyDepth", depth(""), {"invalid-value"}},
        RefusedCase{"AConfigFilterThatIsAWord",
                    get_data("operational", "<config-filter>maybe</config-filter>"),
                    {"invalid-value"}},
        RefusedCase{"AnEditOfOperational", edit_data("operational", name_edit("new")), {"invalid-value"}},
        RefusedCase{"AnEditOfStartup", edit_data("startup", name_edit("new")), {"invalid-value"}},
        RefusedCase{"AnEditOfNoDatastore", nmda_operation("edit-data", new_name), {"missing-element"}},
        RefusedCase{"AnEditOfNothing", nmda_operation("edit-data", in_running), {"missing-element"}},
        RefusedCase{"AnEditWithAnUnknownParameter",
                    nmda_operation("edit-data", in_running + "<nonsense/>" + new_name),
                    {"unknown-element"}},
        RefusedCase{"AnEditWithTheOlderOptions",
                    nmda_operation("edit-data", in_running + "<test-option>set</test-option>" + new_name),
                    {"unknown-element"}},
        RefusedCase{"AnEditWithAnUnknownDefaultOperation",
                    edit_data("running", name_edit("new"), "<default-operation>delete</default-operation>"),
                    {"invalid-value", "bad-element"}},
        RefusedCase{"AnEditFromAUrl",
                    nmda_operation("edit-data", in_running + "<url>file:///tmp/x</url>"),
                    {"operation-not-supported", "unknown-element"}},
        RefusedCase{"AnEditWithAnInvalidValue",
                    edit_data("running", lldp("<config><enabled>maybe</enabled></config>")),
                    {"invalid-value"}},
        RefusedCase{"ALockOfOperational",
                    on_datastore("lock", "target", "operational"),
                    {"invalid-value", "operation-not-supported"}},
        RefusedCase{"ALockOfStartup", on_datastore("lock", "target", "startup"), {"invalid-value"}},
        RefusedCase{"AnUnlockOfWhatIsFree", on_datastore("unlock", "target", "running"), {"operation-failed"}},
        RefusedCase{"AValidationOfStartup", on_datastore("validate", "source", "startup"), {"invalid-value"}}),
    [](const auto &test) { return test.param.name; });

} // namespace
} // namespace yfw::test

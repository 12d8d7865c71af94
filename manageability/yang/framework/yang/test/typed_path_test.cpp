#include "yang/typed_path.h"

#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/error.h"
#include "test_schemas.h"

namespace yfw::yang::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Strings = std::vector<std::string>;

Strings nodes(const std::string &text) {
    Strings all;
    for (const Path &path : parse_typed_path(schemas().openconfig_root(), text).nodes)
        all.push_back(to_string(path));
    return all;
}

struct Typed {
    const char *text;
    Strings nodes;
};

std::ostream &operator<<(std::ostream &out, const Typed &path) {
    return out << path.text;
}

class APathAsPeopleTypeIt : public testing::TestWithParam<Typed> {};

TEST_P(APathAsPeopleTypeIt, StandsForNodesOfTheModel) {
    EXPECT_EQ(nodes(GetParam().text), GetParam().nodes);
}

INSTANTIATE_TEST_SUITE_P(
    WithoutQuotes, APathAsPeopleTypeIt,
    testing::Values(
        Typed{"/lldp/interfaces/interface[name=eth1]", {"/lldp/interfaces/interface[name='eth1']"}},
        Typed{"/lldp/interfaces/interface[name='eth1']", {"/lldp/interfaces/interface[name='eth1']"}},
        Typed{"/lldp/interfaces/interface[ name = eth 1 ]/state",
              {"/lldp/interfaces/interface[name='eth 1']/state"}},
        Typed{"/lldp/interfaces/interface[name=HundredGigE0/0/0/1]/state",
              {"/lldp/interfaces/interface[name='HundredGigE0/0/0/1']/state"}},
        Typed{"/lldp/interfaces/interface[name=a]b]/state", {"/lldp/interfaces/interface[name='a]b']/state"}},
        Typed{"/lldp/interfaces/interface[name=bob's]", {"/lldp/interfaces/interface[name=\"bob's\"]"}},
        Typed{"/lldp/interfaces/interface[name='*']", {"/lldp/interfaces/interface[name='*']"}},
        Typed{"/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/"
              "tlv[type=127][oui=00:80:c2][oui-subtype=9]",
              {"/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/"
               "tlv[type='127'][oui='00:80:c2'][oui-subtype='9']"}},
        Typed{"/lldp/config/suppress-tlv-advertisement[.=SYSTEM_NAME]",
              {"/lldp/config/suppress-tlv-advertisement[.='SYSTEM_NAME']"}}));

INSTANTIATE_TEST_SUITE_P(
    WithWildcards, APathAsPeopleTypeIt,
    testing::Values(Typed{"/lldp/interfaces/interface[name=*]/config", {"/lldp/interfaces/interface/config"}},
                    Typed{"/lldp/*/enabled", {"/lldp/config/enabled", "/lldp/state/enabled"}},
                    Typed{"/lldp/interfaces/*/config/enabled", {"/lldp/interfaces/interface/config/enabled"}},
                    Typed{"/*/config/enabled", {"/lldp/config/enabled"}},
                    Typed{"//hello-timer", {"/lldp/config/hello-timer", "/lldp/state/hello-timer"}},
                    Typed{"/lldp/.../hello-timer", {"/lldp/config/hello-timer", "/lldp/state/hello-timer"}},
                    Typed{"/lldp//hello-timer", {"/lldp/config/hello-timer", "/lldp/state/hello-timer"}},
                    Typed{"/lldp//interface/config", {"/lldp/interfaces/interface/config"}},
                    Typed{"//neighbors//value",
                          {"/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv/state/value"}},
                    Typed{"/lldp/...", {"/lldp"}}, Typed{"/...", {"/lldp"}},
                    Typed{"//neighbor[id='r2#eth1']/state",
                          {"/lldp/interfaces/interface/neighbors/neighbor[id='r2#eth1']/state"}},
                    Typed{"//*[oui=1]/state",
                          {"/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv[oui='1']/state"}},
                    Typed{"/lldp/config/suppress-tlv-advertisement[.=*]",
                          {"/lldp/config/suppress-tlv-advertisement"}}));

std::string repeated(const std::string &word, int times) {
    std::string text;
    for (int i = 0; i < times; i++)
        text += word;
    return text;
}

TEST(SeveralDepthsInARow, SelectWhatOneDoes) {
    for (const std::string end : {"/hello-timer", "/neighbor[id=x]/state", "/*"}) {
        EXPECT_EQ(nodes(repeated("/...", 3000) + end), nodes("/..." + end)) << end;
        EXPECT_EQ(nodes(repeated("//...", 3000) + end), nodes("/..." + end)) << end;
    }
    EXPECT_EQ(nodes(repeated("/...", 3000)), nodes("/..."));
}

TEST(DepthsBetweenWildcards, EndWhereTheModelDoes) {
    for (const int times : {5, 300})
        try {
            nodes("/lldp" + repeated("/.../*", times) + "/hello-timer");
            FAIL() << times;
        } catch (const Error &error) {
            EXPECT_EQ(error.tag(), ErrorTag::unknown_element);
        }
}

struct Refused {
    const char *text;
    ErrorTag tag;
    const char *words;
};

std::ostream &operator<<(std::ostream &out, const Refused &path) {
    return out << path.text;
}

class AnImpossiblePath : public testing::TestWithParam<Refused> {};

TEST_P(AnImpossiblePath, IsRefusedWithThePlaceAtFault) {
    try {
        nodes(GetParam().text);
        FAIL() << "the path was accepted";
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), GetParam().tag);
        EXPECT_EQ(error.path(), GetParam().text);
        EXPECT_THAT(error.what(), HasSubstr(GetParam().words));
    }
}

constexpr ErrorTag malformed = ErrorTag::invalid_value;
constexpr ErrorTag unknown = ErrorTag::unknown_element;

INSTANTIATE_TEST_SUITE_P(
    Malformed, AnImpossiblePath,
    testing::Values(Refused{"", malformed, "character 1"}, Refused{"lldp", malformed, "character 1"},
                    Refused{"/", malformed, "character 2"}, Refused{"//", malformed, "character 3"},
                    Refused{"//lldp", malformed, "character 2"}, Refused{"///lldp", malformed, "character 3"},
                    Refused{"/lldp///config", malformed, "character 8"},
                    Refused{"/lldp/*x", malformed, "character 8"},
                    Refused{"/lldp/...[name=x]/config", malformed, "character 10"},
                    Refused{"/lldp/interfaces/interface[name=]", malformed, "character 33"},
                    Refused{"/lldp/interfaces/interface[name=eth1", malformed, "character 37"},
                    Refused{"/lldp/interfaces/interface[name=eth1]x", malformed, "character 38"},
                    Refused{"/lldp/interfaces/interface[name='eth1", malformed, "closing quote"},
                    Refused{"/lldp/config/enabled[.=true]", malformed, "leaf-list"}));

INSTANTIATE_TEST_SUITE_P(
    Unknown, AnImpossiblePath,
    testing::Values(Refused{"/lldp/confg", unknown, "did you mean \"config\"?"},
                    Refused{"/lldp/Config", unknown, "did you mean \"config\"?"},
                    Refused{"/lldp/interfcaes", unknown, "did you mean \"interfaces\"?"},
                    Refused{"/lldp/interfaces/interface[nme=eth1]", unknown, "did you mean \"name\"?"},
                    Refused{"/lldp/hello-timer", unknown, "did you mean \"config/hello-timer\"?"},
                    Refused{"/lldp/config/enable", unknown, "did you mean \"enabled\"?"},
                    Refused{"//neighbour", unknown, "\"neighbour\": did you mean \"neighbor\"?"},
                    Refused{"/lldp/*/sistem-name", unknown, "did you mean \"system-name\"?"},
                    Refused{"/lldp//config[id=x]", unknown, "unknown node \"id\""},
                    Refused{"/lldp/config/enabled/*", unknown, "matches nothing in the model"},
                    Refused{"/lldp/config/*/*", unknown, "matches nothing in the model"},
                    Refused{"//*//*//*//*//*//*//*//*//*//*", unknown, "matches nothing in the model"},
                    Refused{"/*/*/*/*/*/*/*/*/*/*/*", unknown, "matches nothing in the model"}));

TEST(AnUnknownNode, ThatNothingComesCloseToHasNoSuggestion) {
    for (const std::string text : {"/lldp/colour", "//colour", "/lldp/config/x", "/lldp/interfaces/eth1"})
        try {
            nodes(text);
            FAIL() << text;
        } catch (const Error &error) {
            EXPECT_THAT(error.what(), testing::Not(HasSubstr("did you mean"))) << text;
        }
}

// ---- what exists ----------------------------------------------------------------------------------------

class ExistingPaths : public testing::Test {
protected:
    ExistingPaths() {
        lyd_node *parsed = nullptr;
        lyd_parse_data_mem(schemas().context(), R"({"openconfig-lldp:lldp": {
            "config": {"hello-timer": "30", "suppress-tlv-advertisement":
                ["openconfig-lldp-types:SYSTEM_NAME", "openconfig-lldp-types:PORT_DESCRIPTION"]},
            "interfaces": {"interface": [
                {"name": "eth1", "config": {"name": "eth1", "enabled": true}},
                {"name": "it's", "config": {"name": "it's"}}]}}})",
                           LYD_JSON, LYD_PARSE_ONLY, 0, &parsed);
        data_.reset(parsed);
    }

    Strings existing(const std::string &text, bool must_exist) const {
        Strings all;
        for (const Path &path :
             existing_paths(parse_typed_path(schemas().openconfig_root(), text), data_.get(), must_exist))
            all.push_back(to_string(path));
        return all;
    }

    DataTree data_;
};

TEST_F(ExistingPaths, HaveTheKeysOfTheEntries) {
    EXPECT_THAT(
        existing("/lldp/interfaces/interface[name=*]", true),
        ElementsAre("/lldp/interfaces/interface[name='eth1']", "/lldp/interfaces/interface[name=\"it's\"]"));
    EXPECT_THAT(existing("//config/enabled", true),
                ElementsAre("/lldp/interfaces/interface[name='eth1']/config/enabled"));
}

TEST_F(ExistingPaths, ThatAreToBeSetNeedOnlyTheEntries) {
    EXPECT_THAT(existing("/lldp/interfaces/*/config/enabled", false),
                ElementsAre("/lldp/interfaces/interface[name='eth1']/config/enabled",
                            "/lldp/interfaces/interface[name=\"it's\"]/config/enabled"));
    EXPECT_THAT(existing("/lldp/*/enabled", false), ElementsAre("/lldp/config/enabled"));
}

TEST_F(ExistingPaths, NameALeafListOnceForAllItsValues) {
    EXPECT_THAT(existing("/lldp/config/suppress-tlv-advertisement[.=*]", true),
                ElementsAre("/lldp/config/suppress-tlv-advertisement"));
    EXPECT_THAT(existing("//suppress-tlv-advertisement[.=SYSTEM_NAME]", true),
                ElementsAre("/lldp/config/suppress-tlv-advertisement[.='SYSTEM_NAME']"));
}

TEST_F(ExistingPaths, AreNeitherStateNorKeys) {
    EXPECT_THAT(existing("/lldp/interfaces/interface[name=eth1]/*", true),
                ElementsAre("/lldp/interfaces/interface[name='eth1']/config"));
    EXPECT_THROW(existing("/lldp/state/*", true), Error);
}

TEST_F(ExistingPaths, AreRefusedWhenThereAreNone) {
    try {
        existing("//interface[name=eth9]", true);
        FAIL();
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), ErrorTag::data_missing);
        EXPECT_EQ(error.path(), "//interface[name=eth9]");
    }
}

TEST_F(ExistingPaths, OfAPathWithoutWildcardsAreThePathItself) {
    EXPECT_THAT(existing("/lldp/interfaces/interface[name=eth9]", true),
                ElementsAre("/lldp/interfaces/interface[name='eth9']"));
}

} // namespace
} // namespace yfw::yang::test

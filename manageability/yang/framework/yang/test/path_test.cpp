#include "yang/path.h"

#include <ostream>

#include <gtest/gtest.h>

#include "base/error.h"
#include "test_schemas.h"

namespace yfw::yang::test {
namespace {

constexpr const char *entry = "/lldp/interfaces/interface";

struct GoodPath {
    const char *text;
    const char *parsed;
};

std::ostream &operator<<(std::ostream &out, const GoodPath &path) {
    return out << path.text;
}

class PathText : public testing::TestWithParam<GoodPath> {};

TEST_P(PathText, NamesTheNodesOfTheModel) {
    EXPECT_EQ(to_string(path(GetParam().text)), GetParam().parsed);
}

INSTANTIATE_TEST_SUITE_P(
    Good, PathText,
    testing::Values(
        GoodPath{"/lldp", "/lldp"}, GoodPath{"/lldp/config/enabled", "/lldp/config/enabled"},
        GoodPath{"/openconfig-lldp:lldp/config", "/lldp/config"},
        GoodPath{"/openconfig-lldp:lldp/openconfig-lldp:state/openconfig-lldp:counters",
                 "/lldp/state/counters"},
        GoodPath{"/lldp/interfaces/interface", "/lldp/interfaces/interface"},
        GoodPath{"/lldp/interfaces/interface[name='eth1']", "/lldp/interfaces/interface[name='eth1']"},
        GoodPath{"/lldp/interfaces/interface[name=\"eth1\"]/state",
                 "/lldp/interfaces/interface[name='eth1']/state"},
        GoodPath{"/lldp/interfaces/interface[openconfig-lldp:name='eth1']",
                 "/lldp/interfaces/interface[name='eth1']"},
        GoodPath{"/lldp/interfaces/interface[ name = 'eth1' ]", "/lldp/interfaces/interface[name='eth1']"},
        GoodPath{"/lldp/interfaces/interface[name='']/config", "/lldp/interfaces/interface[name='']/config"},
        GoodPath{"/lldp/interfaces/interface[name='a']/neighbors/neighbor[id='b#c']/state/ttl",
                 "/lldp/interfaces/interface[name='a']/neighbors/neighbor[id='b#c']/state/ttl"},
        GoodPath{"/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/"
                 "tlv[type='127'][oui='00:80:c2'][oui-subtype='9']",
                 "/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/"
                 "tlv[type='127'][oui='00:80:c2'][oui-subtype='9']"},
        GoodPath{"/lldp/config/suppress-tlv-advertisement[.='SYSTEM_NAME']",
                 "/lldp/config/suppress-tlv-advertisement[.='SYSTEM_NAME']"},
        GoodPath{"/lldp/config/suppress-tlv-advertisement[ . = \"types:SYSTEM_NAME\" ]",
                 "/lldp/config/suppress-tlv-advertisement[.='types:SYSTEM_NAME']"}));

struct Literal {
    const char *quoted;
    const char *value;
};

std::ostream &operator<<(std::ostream &out, const Literal &literal) {
    return out << literal.quoted;
}

class PathLiteral : public testing::TestWithParam<Literal> {};

TEST_P(PathLiteral, HoldsItsTextExactly) {
    const Path parsed = path(std::string(entry) + "[name=" + GetParam().quoted + "]");
    EXPECT_EQ(parsed.back().predicates.at(0).value, GetParam().value);
}

TEST_P(PathLiteral, IsTheSameAfterPrintingAndParsing) {
    const Path parsed = path(std::string(entry) + "[name=" + GetParam().quoted + "]");
    EXPECT_EQ(path(to_string(parsed)).back().predicates.at(0).value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Quotes, PathLiteral,
                         testing::Values(Literal{"'eth1'", "eth1"}, Literal{"\"eth1\"", "eth1"},
                                         Literal{"''", ""}, Literal{"\"\"", ""}, Literal{"'it''s'", "it's"},
                                         Literal{"\"it's\"", "it's"}, Literal{"'say \"so\"'", "say \"so\""},
                                         Literal{"\"say \"\"so\"\"\"", "say \"so\""},
                                         Literal{"'both '' and \"'", "both ' and \""}, Literal{"''''", "'"},
                                         Literal{"'0/0/0/1'", "0/0/0/1"}, Literal{"'a]/b[c=d'", "a]/b[c=d"},
                                         Literal{"' spaced  out '", " spaced  out "},
                                         Literal{"'Zürich-✓'", "Zürich-✓"}));

struct BadPath {
    const char *text;
    ErrorTag tag;
    const char *named; // what the message must name: a node, or where the text is malformed
};

std::ostream &operator<<(std::ostream &out, const BadPath &path) {
    return out << path.text;
}

class RefusedPath : public testing::TestWithParam<BadPath> {};

TEST_P(RefusedPath, IsNamedWithTheStepAtFault) {
    try {
        path(GetParam().text);
        FAIL() << "the path was accepted";
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), GetParam().tag);
        EXPECT_EQ(error.path(), GetParam().text);
        EXPECT_NE(std::string(error.what()).find(GetParam().named), std::string::npos) << error.what();
        EXPECT_EQ(error.status(), 0u);
    }
}

constexpr ErrorTag malformed = ErrorTag::invalid_value;
constexpr ErrorTag unknown = ErrorTag::unknown_element;

INSTANTIATE_TEST_SUITE_P(
    Malformed, RefusedPath,
    testing::Values(BadPath{"", malformed, "character 1"}, BadPath{"lldp", malformed, "character 1"},
                    BadPath{"/", malformed, "character 2"}, BadPath{"//lldp", malformed, "character 2"},
                    BadPath{"/lldp//config", malformed, "character 7"},
                    BadPath{"/lldp?", malformed, "character 6"},
                    BadPath{"/lldp/config enabled", malformed, "character 13"},
                    BadPath{"/lldp:", malformed, "character 7"},
                    BadPath{"/lldp/interfaces/interface[", malformed, "character 28"},
                    BadPath{"/lldp/interfaces/interface[]", malformed, "character 28"},
                    BadPath{"/lldp/interfaces/interface[name]", malformed, "character 32"},
                    BadPath{"/lldp/interfaces/interface[name=]", malformed, "character 33"},
                    BadPath{"/lldp/interfaces/interface[name=eth1]", malformed, "character 33"},
                    BadPath{"/lldp/interfaces/interface[name='eth1'", malformed, "character 39"},
                    BadPath{"/lldp/interfaces/interface[name='eth1]", malformed, "character 39"},
                    BadPath{"/lldp/interfaces/interface[name='eth1\"]", malformed, "character 40"},
                    BadPath{"/lldp/interfaces/interface[name='eth1']x", malformed, "character 40"},
                    BadPath{"/lldp/interfaces/interface[config='x']", malformed, "config"},
                    BadPath{"/lldp/config/enabled[.='true']", malformed, "/lldp/config/enabled"},
                    BadPath{"/lldp/interfaces/interface[.='eth1']", malformed, "/lldp/interfaces/interface"},
                    BadPath{"/lldp/config/suppress-tlv-advertisement[.]", malformed, "character 42"}));

INSTANTIATE_TEST_SUITE_P(
    Unknown, RefusedPath,
    testing::Values(BadPath{"/llpd", unknown, "llpd"}, BadPath{"/config", unknown, "config"},
                    BadPath{"/lldp/confg", unknown, "confg"}, BadPath{"/lldp/config/enable", unknown, "enable"},
                    BadPath{"/lldp/config/enabled/more", unknown, "more"},
                    BadPath{"/lldp/interfaces/eth1", unknown, "eth1"},
                    BadPath{"/lldp/interfaces/interface[index='1']", unknown, "index"},
                    BadPath{"/lldp/interfaces/interface[..='eth1']", unknown, ".."},
                    BadPath{"/lldp/interfaces/interface/Name", unknown, "Name"},
                    BadPath{"/other:lldp", unknown, "lldp"},
                    BadPath{"/lldp/openconfig-lldp-types:config", unknown, "config"},
                    BadPath{"/lldp/interfaces/interface[other:name='x']", unknown, "name"}));

TEST(SchemaPath, LeadsFromTheTopToTheNode) {
    const Path parsed = path("/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='x']/state/ttl");
    EXPECT_EQ(schema_path(parsed.back().node), "/lldp/interfaces/interface/neighbors/neighbor/state/ttl");
}

} // namespace
} // namespace yfw::yang::test

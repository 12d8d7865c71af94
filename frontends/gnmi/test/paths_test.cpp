// Paths of requests: what they select, and what is refused.
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "frontends/gnmi/data/response_path.h"
#include "frontends/gnmi/paths/path_pattern.h"
#include "frontends/gnmi/paths/path_text.h"
#include "gnmi_fixture.h"
#include "yang/schemas.h"

namespace yfw::gnmi::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;

std::vector<std::string> selected(const ::gnmi::Path &prefix, const ::gnmi::Path &path) {
    std::vector<std::string> texts;
    for (const PathPattern &pattern : read_path(schemas().openconfig_root(), prefix, path))
        texts.push_back(to_text(path_of(pattern)));
    return texts;
}

struct Selecting {
    std::string name;
    std::string prefix;
    std::string path;
    std::vector<std::string> selected;
};

class APath : public testing::TestWithParam<Selecting> {};

TEST_P(APath, Selects) {
    EXPECT_THAT(selected(path(GetParam().prefix), path(GetParam().path)),
                ElementsAreArray(GetParam().selected));
}

INSTANTIATE_TEST_SUITE_P(
    That, APath,
    testing::Values(
        Selecting{"IsEmpty", "", "", {"/"}}, Selecting{"NamesAContainer", "", "/lldp/config", {"/lldp/config"}},
        Selecting{"NamesALeaf", "", "/lldp/config/enabled", {"/lldp/config/enabled"}},
        Selecting{"ContinuesItsPrefix", "/lldp", "/config/enabled", {"/lldp/config/enabled"}},
        Selecting{"IsAllInThePrefix", "/lldp/config", "", {"/lldp/config"}},
        Selecting{"NamesAnEntry",
                  "",
                  "/lldp/interfaces/interface[name=eth1]",
                  {"/lldp/interfaces/interface[name=eth1]"}},
        Selecting{"LacksAKey", "", "/lldp/interfaces/interface/config", {"/lldp/interfaces/interface/config"}},
        Selecting{"HasAWildcardAsKey",
                  "",
                  "/lldp/interfaces/interface[name=*]/config",
                  {"/lldp/interfaces/interface/config"}},
        Selecting{
            "HasAWildcardBetweenNames", "", "/lldp/*/enabled", {"/lldp/config/enabled", "/lldp/state/enabled"}},
        Selecting{"HasAWildcardAtTheTop", "", "/*/config/enabled", {"/lldp/config/enabled"}},
        Selecting{"HasAWildcardWithAKey",
                  "",
                  "/lldp/interfaces/*[name=eth1]/config",
                  {"/lldp/interfaces/interface[name=eth1]/config"}},
        Selecting{"HasAnyNumberOfNames",
                  "",
                  "/lldp/.../frame-error-out",
                  {"/lldp/interfaces/interface/state/counters/frame-error-out"}},
        Selecting{"EndsWithAnyNumberOfNames", "", "/lldp/config/...", {"/lldp/config"}},
        Selecting{"BeginsWithAnyNumberOfNames",
                  "",
                  "/.../entries-aged-out",
                  {"/lldp/state/counters/entries-aged-out"}},
        Selecting{"HasAKeyWithoutItsModule",
                  "",
                  "/lldp/interfaces/interface/neighbors/neighbor/capabilities/capability[name=ROUTER]",
                  {"/lldp/interfaces/interface/neighbors/neighbor/capabilities/capability[name=ROUTER]"}},
        Selecting{"HasAKeyWithItsModule",
                  "",
                  "/lldp/interfaces/interface/neighbors/neighbor/capabilities/"
                  "capability[name=openconfig-lldp-types:ROUTER]",
                  {"/lldp/interfaces/interface/neighbors/neighbor/capabilities/capability[name=ROUTER]"}},
        Selecting{"HasSomeKeys",
                  "",
                  "/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv[type=127]",
                  {"/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv[type=127]"}}),
    [](const auto &row) { return row.param.name; });

TEST(APathWithSeveralAnyNumbersOfNames, IsReadInBoundedTime) {
    EXPECT_FALSE(selected(path(""), path("/.../.../.../*/.../*/.../*/...")).empty());
}

struct Refused {
    std::string name;
    ::gnmi::Path prefix;
    ::gnmi::Path path;
    std::string because;
};

class ARefusedPath : public testing::TestWithParam<Refused> {};

TEST_P(ARefusedPath, IsAnInvalidArgument) {
    const auto refusal = refusal_of_call([] { selected(GetParam().prefix, GetParam().path); });
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->code(), Code::invalid_argument);
    EXPECT_THAT(refusal->what(), HasSubstr(GetParam().because));
}

::gnmi::Path old_path() {
    ::gnmi::Path made;
    made.add_element("lldp");
    return made;
}

INSTANTIATE_TEST_SUITE_P(
    That, ARefusedPath,
    testing::Values(
        Refused{"IsNotInTheModel", {}, path("/lldp/colour"), "unknown node \"colour\" under \"/lldp\""},
        Refused{"IsBelowALeaf", {}, path("/lldp/config/enabled/more"), "unknown node \"more\""},
        Refused{"HasAnotherTop", {}, path("/interfaces"), "unknown node \"interfaces\""},
        Refused{"HasAModuleName", {}, path("/openconfig-lldp:lldp"), "unknown node"},
        Refused{"HasAnEmptyName", {}, path("/lldp//config"), "an element has no name"},
        Refused{"HasAnUnknownKey", {}, path("/lldp/interfaces/interface[id=1]"), "has no key \"id\""},
        Refused{"HasAKeyOnAContainer", {}, path("/lldp/config[name=x]"), "has no key \"name\""},
        Refused{"HasAnImpossibleKey",
                {},
                path("/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv[type=x]"),
                "cannot have the value \"x\""},
        Refused{"IsOfAnotherOrigin", {}, path_of_origin("cli", "/lldp"), "the origin \"cli\" is not served"},
        Refused{"HasAPrefixOfAnotherOrigin",
                path_of_origin("cli", "/lldp"),
                {},
                "the origin \"cli\" is not served"},
        Refused{"HasTwoOrigins", path_of_origin("openconfig", ""), path_of_origin("openconfig", "/lldp"),
                "both in the prefix and in the path"},
        Refused{"HasATargetOutsideThePrefix", {}, path_of_target("r1", "/lldp"), "belongs into the prefix"},
        Refused{"IsOfTheOldForm", {}, old_path(), "\"element\" strings are not supported"},
        Refused{"HasAPrefixOfTheOldForm", old_path(), {}, "\"element\" strings are not supported"}),
    [](const auto &row) { return row.param.name; });

TEST(TheOriginOfTheModel, MayStandInThePathOrInThePrefix) {
    EXPECT_THAT(selected({}, path_of_origin("openconfig", "/lldp")), ElementsAre("/lldp"));
    EXPECT_THAT(selected(path_of_origin("openconfig", "/lldp"), {}), ElementsAre("/lldp"));
}

TEST(APathToANodeThatDeviationsTakeAway, IsNotImplementedRatherThanUnknown) {
    const yang::Schemas deviated(
        YFW_MODELS_DIR, YFW_MODELS_DIR, {{"openconfig-lldp", "openconfig-lldp-types"}, "lldp", {}}, {},
        "module devs { namespace \"urn:devs\"; prefix d; import openconfig-lldp { prefix l; }"
        " deviation /l:lldp/l:state/l:counters { deviate not-supported; } }");
    const auto code = [&](const std::string &text) {
        const auto refusal = refusal_of_call([&] { read_path(deviated.openconfig_root(), {}, path(text)); });
        return refusal.has_value() ? std::optional(refusal->code()) : std::nullopt;
    };
    EXPECT_EQ(code("/lldp/state/counters"), Code::unimplemented);
    EXPECT_EQ(code("/lldp/state/counters/frame-in"), Code::unimplemented);
    EXPECT_EQ(code("/lldp/state/no-such-container"), Code::invalid_argument);
    EXPECT_EQ(code("/lldp/state/enabled"), std::nullopt);
}

TEST(ASinglePath, HasNeitherWildcardsNorMissingKeys) {
    const auto code = [](const std::string &text) {
        const auto refusal =
            refusal_of_call([&] { read_single_path(schemas().openconfig_root(), {}, path(text)); });
        return refusal.has_value() ? std::optional(refusal->code()) : std::nullopt;
    };
    EXPECT_EQ(code("/lldp/interfaces/interface[name=eth1]/config"), std::nullopt);
    EXPECT_EQ(code("/lldp/interfaces/interface/config"), Code::invalid_argument);
    EXPECT_EQ(code("/lldp/interfaces/interface[name=*]/config"), Code::invalid_argument);
    EXPECT_EQ(code("/lldp/*/enabled"), Code::invalid_argument);
    EXPECT_EQ(code("/lldp/..."), Code::invalid_argument);
}

} // namespace
} // namespace yfw::gnmi::test

// Errors as printed, and the host's errors converted to NETCONF's.
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frontends/netconf/messages/rpc_error.h"
#include "frontends/netconf/messages/xml.h"
#include "host/host_status.h"
#include "yang/test/test_schemas.h"

namespace yfw::netconf {
namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;

std::vector<std::string> names_of(const std::vector<Element> &elements) {
    std::vector<std::string> names;
    for (const Element &each : elements)
        names.emplace_back(each.name());
    return names;
}

std::string text_of(const Element &error, std::string_view child) {
    const std::optional<Element> found = error.child(child);
    return found.has_value() ? found->text() : "(no " + std::string(child) + ")";
}

const lysc_node *openconfig() {
    return yang::test::schemas().openconfig_root();
}

// Parsed inside a reply, which declares the protocol's namespace.
Document in_a_reply(const RpcError &error) {
    return Document("<rpc-reply xmlns=\"" + std::string(base_ns) + "\">" + print_error(error, openconfig()) +
                    "</rpc-reply>");
}

// --- printing ---

TEST(AnError, IsPrintedWithTypeTagSeverityAndMessage) {
    const Document document = in_a_reply(RpcError("protocol", "operation-failed", "it went wrong"));
    const std::vector<Element> errors = document.root().children();
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_TRUE(errors[0].is(base_ns, "rpc-error"));
    EXPECT_THAT(names_of(errors[0].children()),
                ElementsAre("error-type", "error-tag", "error-severity", "error-message"));
    EXPECT_EQ(text_of(errors[0], "error-type"), "protocol");
    EXPECT_EQ(text_of(errors[0], "error-tag"), "operation-failed");
    EXPECT_EQ(text_of(errors[0], "error-severity"), "error");
    EXPECT_EQ(text_of(errors[0], "error-message"), "it went wrong");
}

TEST(AnError, IsPrintedWithAllThatItHasInTheOrderOfTheSchema) {
    const Document document = in_a_reply(RpcError("application", "data-missing", "no such instance")
                                             .at("/lldp/config")
                                             .with_app_tag("instance-required")
                                             .with_info("<bad-element>config</bad-element>"));
    const Element error = document.root().children().at(0);
    EXPECT_THAT(names_of(error.children()),
                ElementsAre("error-type", "error-tag", "error-severity", "error-app-tag", "error-path",
                            "error-message", "error-info"));
    EXPECT_EQ(text_of(error, "error-app-tag"), "instance-required");
    EXPECT_EQ(text_of(*error.child("error-info"), "bad-element"), "config");
}

TEST(AnError, IsPrintedWithItsMessageEscaped) {
    const Document document = in_a_reply(RpcError("rpc", "malformed-message", "<a> & \"b\" 'c' ]]>]]>"));
    EXPECT_EQ(text_of(document.root().children().at(0), "error-message"), "<a> & \"b\" 'c' ]]>]]>");
    EXPECT_EQ(print_error(RpcError("rpc", "malformed-message", "]]>]]>"), openconfig()).find("]]>]]>"),
              std::string::npos);
}

TEST(AnError, IsPrintedAsXmlWhateverBytesItsMessageHolds) {
    using namespace std::string_literals;
    const std::string bytes = "control \x01\x1b, no UTF-8 \xff\xfe, zero \0."s;
    EXPECT_NO_THROW(in_a_reply(RpcError("rpc", "malformed-message", bytes)));
}

TEST(EscapedText, IsTheSameAfterParsingAsTextAndAsAnAttribute) {
    const std::string text = "<&>\"' ]]> \xc3\xa4";
    const Document document("<a xmlns=\"urn:a\" b=\"" + escaped(text) + "\">" + escaped(text) + "</a>");
    EXPECT_EQ(document.root().text(), text);
    EXPECT_EQ(document.root().attribute("b"), text);
}

// --- the host's errors ---

struct TagCase {
    ErrorTag tag;
    const char *name;
    std::vector<std::string> info{}; // the <error-info> that RFC 6241 appendix A requires
};

class AnErrorOfTheHost : public testing::TestWithParam<TagCase> {};

const std::string place = "/lldp/interfaces/interface[name='eth1']/config/nonsense";

TEST_P(AnErrorOfTheHost, HasItsTagAndMessage) {
    const Document document =
        in_a_reply(rpc_error_of(Error(GetParam().tag, place, "the message"), openconfig()));
    const Element error = document.root().children().at(0);
    EXPECT_EQ(text_of(error, "error-tag"), GetParam().name);
    EXPECT_EQ(text_of(error, "error-type"), "application");
    EXPECT_EQ(text_of(error, "error-severity"), "error");
    EXPECT_EQ(text_of(error, "error-message"), "the message");
}

TEST_P(AnErrorOfTheHost, HasTheErrorInfoThatIsMandatoryForItsTag) {
    const Document document =
        in_a_reply(rpc_error_of(Error(GetParam().tag, place, "the message"), openconfig()));
    const std::optional<Element> info = document.root().children().at(0).child("error-info");
    EXPECT_THAT(info.has_value() ? names_of(info->children()) : std::vector<std::string>{},
                IsSupersetOf(GetParam().info));
}

TEST_P(AnErrorOfTheHost, HasAPathWhosePrefixesAreDeclared) {
    const Document document =
        in_a_reply(rpc_error_of(Error(GetParam().tag, place, "the message"), openconfig()));
    const std::optional<Element> path = document.root().children().at(0).child("error-path");
    ASSERT_TRUE(path.has_value());
    const std::string prefix = path->text().substr(1, path->text().find(':') - 1);
    EXPECT_EQ(path->text(), "/" + prefix + ":lldp/" + prefix + ":interfaces/" + prefix + ":interface[" +
                                prefix + ":name='eth1']/" + prefix + ":config/" + prefix + ":nonsense");
    const std::string declaration = "xmlns:" + prefix + "=\"http://openconfig.net/yang/lldp\"";
    EXPECT_THAT(document.root().print(), testing::HasSubstr(declaration));
}

INSTANTIATE_TEST_SUITE_P(
    WithTheTag, AnErrorOfTheHost,
    testing::Values(TagCase{ErrorTag::invalid_value, "invalid-value"},
                    TagCase{ErrorTag::unknown_element, "unknown-element", {"bad-element"}},
                    TagCase{ErrorTag::unknown_namespace, "unknown-namespace", {"bad-element", "bad-namespace"}},
                    TagCase{ErrorTag::missing_element, "missing-element", {"bad-element"}},
                    TagCase{ErrorTag::bad_element, "bad-element", {"bad-element"}},
                    TagCase{ErrorTag::bad_attribute, "bad-attribute", {"bad-attribute", "bad-element"}},
                    TagCase{ErrorTag::data_exists, "data-exists"},
                    TagCase{ErrorTag::data_missing, "data-missing"},
                    TagCase{ErrorTag::resource_denied, "resource-denied"},
                    TagCase{ErrorTag::operation_not_supported, "operation-not-supported"},
                    TagCase{ErrorTag::operation_failed, "operation-failed"}),
    [](const auto &test) {
        std::string name = test.param.name;
        for (char &c : name)
            c = c == '-' ? '_' : c;
        return name;
    });

TEST(AnErrorOfTheHostWithoutAPlace, HasNoPath) {
    const Document document =
        in_a_reply(rpc_error_of(Error(ErrorTag::operation_failed, "", "no store"), openconfig()));
    EXPECT_FALSE(document.root().children().at(0).child("error-path").has_value());
}

TEST(AKeyThatDiffersFromItsLeaf, IsReportedAtTheLeafThatTheModelNames) {
    const Error error(ErrorTag::invalid_value, "/lldp/interfaces/interface[name='0/0/1']", "differs",
                      host::status_leafref_mismatch);
    const Document document = in_a_reply(rpc_error_of(error, openconfig()));
    const Element told = document.root().children().at(0);
    EXPECT_EQ(text_of(told, "error-app-tag"), "instance-required");
    EXPECT_THAT(text_of(told, "error-path"), testing::EndsWith("='0/0/1']/oc-lldp:config/oc-lldp:name"));
    const Error of_no_list(ErrorTag::invalid_value, "/lldp/config", "differs", host::status_leafref_mismatch);
    EXPECT_THAT(print_error(rpc_error_of(of_no_list, openconfig()), openconfig()),
                testing::HasSubstr("/oc-lldp:lldp/oc-lldp:config<"));
}

TEST(AnErrorOfTheHostAtAnEntry, NamesTheListAsTheBadElement) {
    const Error error(ErrorTag::bad_element, "/lldp/interfaces/interface[name='a/b]\"']", "is repeated");
    EXPECT_EQ(rpc_error_of(error, openconfig()).info, "<bad-element>interface</bad-element>");
}

TEST(AnErrorOfTheHostWithALongMessage, IsToldInBrief) {
    const Error error(ErrorTag::invalid_value, "/lldp/config", std::string(13000, 'x'));
    EXPECT_LT(print_error(rpc_error_of(error, openconfig()), openconfig()).size(), 1500U);
}

TEST(AnErrorOfTheHostWithAKeyOfManyCharacters, IsStillXml) {
    const Error error(ErrorTag::invalid_value, "/lldp/interfaces/interface[name=\"<&'/:>\"]/config", "bad");
    const Document document = in_a_reply(rpc_error_of(error, openconfig()));
    EXPECT_THAT(text_of(document.root().children().at(0), "error-path"), testing::HasSubstr("\"<&'/:>\""));
}

} // namespace
} // namespace yfw::netconf

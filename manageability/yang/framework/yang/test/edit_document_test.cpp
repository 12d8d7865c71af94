// The accepted forms of an edit document, in XML and JSON.
#include <string>

#include <gtest/gtest.h>

#include "base/error.h"
#include "test_schemas.h"
#include "yang/edit.h"

namespace yfw::yang::test {
namespace {

struct WrittenCase {
    const char *name;
    std::string document;
    std::string value; // of its one leaf
};

class AnEditDocument : public testing::TestWithParam<WrittenCase> {};

const EditNode &first_leaf(const EditNode &node) {
    return node.children.empty() ? node : first_leaf(node.children.front());
}

TEST_P(AnEditDocument, SetsItsLeafToThis) {
    EXPECT_EQ(first_leaf(parse_edit(schemas(), GetParam().document, Operation::merge)).value, GetParam().value);
}

std::string xml(const std::string &leaf) {
    return "<lldp xmlns=\"http://openconfig.net/yang/lldp\"><config>" + leaf + "</config></lldp>";
}

std::string json(const std::string &leaf) {
    return "{\"openconfig-lldp:lldp\": {\"config\": {" + leaf + "}}}";
}

// With a byte order mark; the text must be ASCII.
std::string utf16(const std::string &text) {
    std::string units = "\xff\xfe";
    for (const char c : text)
        units.append(1, c).append(1, '\0');
    return units;
}

INSTANTIATE_TEST_SUITE_P(
    Written, AnEditDocument,
    testing::Values(
        WrittenCase{"Plainly", xml("<system-name>r1</system-name>"), "r1"},
        WrittenCase{"WithAByteOrderMark", "\xef\xbb\xbf" + xml("<system-name>r1</system-name>"), "r1"},
        WrittenCase{"WithAColonInFront", xml("<system-name>:r1</system-name>"), ":r1"},
        WrittenCase{"WithWhatIsAPrefixElsewhere",
                    xml("<system-name xmlns:o=\"http://openconfig.net/yang/lldp\">o:r1</system-name>"), "o:r1"},
        WrittenCase{
            "WithAPrefixOfAnIdentity",
            xml("<suppress-tlv-advertisement xmlns:t=\"http://openconfig.net/yang/lldp/types\">t:SYSTEM_NAME"
                "</suppress-tlv-advertisement>"),
            "openconfig-lldp-types:SYSTEM_NAME"},
        WrittenCase{"WithACommentInsideText", xml("<system-name>r<!-- one -->1</system-name>"), "r1"},
        WrittenCase{"WithCarriageReturnsAtItsEndsOfLines", xml("<system-name>r\r\n1</system-name>"), "r\n1"},
        WrittenCase{"WithACarriageReturnOfItsOwn", xml("<system-name>r&#13;1</system-name>"), "r\r1"},
        WrittenCase{"WithSpaceAroundAText", xml("<system-name> r1 </system-name>"), " r1 "},
        WrittenCase{"WithASection", xml("<system-name><![CDATA[<r1>]]></system-name>"), "<r1>"},
        WrittenCase{
            "WithAnIdentitysPrefix",
            xml("<chassis-id-type xmlns:t=\"http://openconfig.net/yang/lldp/types\">LOCAL</chassis-id-type>"),
            "LOCAL"},
        WrittenCase{"InUtf16",
                    utf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + xml("<system-name>r1</system-name>")),
                    "r1"},
        WrittenCase{"InJsonOfUtf16", utf16(json("\"system-name\": \"r1\"")), "r1"},
        WrittenCase{"WithADeclarationOfUtf16",
                    "<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + xml("<system-name>r1</system-name>"), "r1"},
        WrittenCase{"InJson", json("\"system-name\": \"r1\""), "r1"},
        WrittenCase{"InJsonWithAByteOrderMark", "\xef\xbb\xbf" + json("\"system-name\": \"r1\""), "r1"},
        WrittenCase{"InJsonWithTheModulesName", json("\"openconfig-lldp:system-name\": \"r1\""), "r1"},
        WrittenCase{"InJsonWithASurrogatePair", json("\"system-name\": \"\\ud83d\\ude00\""),
                    "\xf0\x9f\x98\x80"},
        WrittenCase{"InJsonWithANumber", json("\"hello-timer\": \"10\""), "10"},
        WrittenCase{"InJsonWithABoolean", json("\"enabled\": false"), "false"}),
    [](const auto &test) { return test.param.name; });

TEST(AnEditDocumentsNodes, StandInTheOrderOfTheModel) {
    const EditNode edit = parse_edit(
        schemas(), xml("<system-name>r1</system-name><hello-timer>10</hello-timer><enabled>true</enabled>"),
        Operation::merge);
    std::string names;
    for (const EditNode &leaf : edit.children.at(0).children)
        names += std::string(leaf.node->name) + " ";
    EXPECT_EQ(names, "enabled hello-timer system-name ");
}

TEST(AnEditDocumentInJson, IsRefusedWithANumberThatIsTooLarge) {
    try {
        parse_edit(schemas(), json("\"hello-timer\": 3e333"), Operation::merge);
        FAIL() << "the edit was accepted";
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), ErrorTag::invalid_value);
        EXPECT_STREQ(error.what(), "a number is too large");
    }
}

TEST(AnEditDocumentInJson, TakesALeafAwayByItsAnnotationAlone) {
    const EditNode edit = parse_edit(
        schemas(), json("\"@system-name\": {\"ietf-netconf:operation\": \"remove\"}"), Operation::merge);
    EXPECT_EQ(first_leaf(edit).operation, Operation::remove);
}

TEST(AnEditDocumentInJson, TakesAnEmptyListForNoEntries) {
    const std::string document = R"({"openconfig-lldp:lldp": {"interfaces": {"interface": []}}})";
    EXPECT_TRUE(parse_edit(schemas(), document, Operation::merge).children.at(0).children.empty());
}

TEST(AnEditDocumentInJson, AnnotatesTheValuesOfALeafListOneByOne) {
    const EditNode edit =
        parse_edit(schemas(), json(R"("suppress-tlv-advertisement": ["openconfig-lldp-types:SYSTEM_NAME",
                           "openconfig-lldp-types:PORT_DESCRIPTION", "openconfig-lldp-types:CHASSIS_ID"],
                           "@suppress-tlv-advertisement": [null, {"ietf-netconf:operation": "remove"}])"),
                   Operation::merge);
    const EditNode &config = edit.children.at(0);
    EXPECT_EQ(config.children.at(0).operation, Operation::merge);
    EXPECT_EQ(config.children.at(1).operation, Operation::remove);
    EXPECT_EQ(config.children.at(2).operation, Operation::merge);
}

struct WrongJsonCase {
    const char *name;
    std::string document;
    ErrorTag tag;
    std::string path;
};

class WrongJson : public testing::TestWithParam<WrongJsonCase> {};

TEST_P(WrongJson, IsRefusedAtItsPlace) {
    try {
        parse_edit(schemas(), GetParam().document, Operation::merge);
        FAIL() << "the edit was accepted";
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), GetParam().tag) << error.what();
        EXPECT_EQ(error.path(), GetParam().path) << error.what();
    }
}

const std::string merged = R"({"ietf-netconf:operation": "merge"})";

INSTANTIATE_TEST_SUITE_P(
    With, WrongJson,
    testing::Values(
        WrongJsonCase{"AnArrayForALeaf", json(R"("system-name": ["a"])"), ErrorTag::invalid_value,
                      "/lldp/config/system-name"},
        WrongJsonCase{"AnArrayForAContainer", R"({"openconfig-lldp:lldp": {"config": [{}]}})",
                      ErrorTag::invalid_value, "/lldp/config"},
        WrongJsonCase{"AnEmptyArrayForAContainer", R"({"openconfig-lldp:lldp": {"config": []}})",
                      ErrorTag::invalid_value, "/lldp/config"},
        WrongJsonCase{"AnArrayForTheTop", R"({"openconfig-lldp:lldp": []})", ErrorTag::invalid_value, "/lldp"},
        WrongJsonCase{"AnEmptyArrayOfAnUnknownName", json(R"("shade": [])"), ErrorTag::unknown_element,
                      "/lldp/config/shade"},
        WrongJsonCase{"AnEntryOutsideOfAnArray",
                      R"({"openconfig-lldp:lldp": {"interfaces": {"interface": {"name": "a"}}}})",
                      ErrorTag::invalid_value, "/lldp/interfaces/interface"},
        WrongJsonCase{"AValueOfALeafListOutsideOfAnArray",
                      json(R"("suppress-tlv-advertisement": "openconfig-lldp-types:SYSTEM_NAME")"),
                      ErrorTag::invalid_value, "/lldp/config/suppress-tlv-advertisement"},
        WrongJsonCase{"ANumberOfFourHundredDigits", json("\"hello-timer\": " + std::string(400, '9')),
                      ErrorTag::invalid_value, ""},
        WrongJsonCase{"AnAnnotationOfTheDocument", R"({"@": {}, "openconfig-lldp:lldp": {}})",
                      ErrorTag::invalid_value, ""},
        WrongJsonCase{"AnAnnotationOfAContainerBesideIt",
                      R"({"openconfig-lldp:lldp": {}, "@openconfig-lldp:lldp": )" + merged + "}",
                      ErrorTag::invalid_value, "/lldp"},
        WrongJsonCase{"AnAnnotationThatGivesALeafNoValue", json("\"@system-name\": " + merged),
                      ErrorTag::missing_element, "/lldp/config/system-name"},
        WrongJsonCase{"AnEmptyAnnotationOfNothing", json("\"@system-name\": {}"), ErrorTag::missing_element,
                      "/lldp/config/system-name"},
        WrongJsonCase{"AnEmptyArrayOfAnnotationsOfNothing", json("\"@system-name\": []"),
                      ErrorTag::invalid_value, "/lldp/config/system-name"},
        WrongJsonCase{"AnAnnotationThatIsNull", json(R"("system-name": "a", "@system-name": null)"),
                      ErrorTag::invalid_value, "/lldp/config/system-name"},
        WrongJsonCase{"AnAnnotationOfALeafInAnArray",
                      json(R"("system-name": "a", "@system-name": [)" + merged + "]"), ErrorTag::invalid_value,
                      "/lldp/config/system-name"},
        WrongJsonCase{"TwoAnnotationsOfOneLeaf",
                      json(R"("system-name": "a", "@system-name": )" + merged +
                           R"(, "@openconfig-lldp:system-name": )" + merged),
                      ErrorTag::invalid_value, "/lldp/config/system-name"},
        WrongJsonCase{"AnAnnotationOfAllValuesOfALeafList",
                      json(R"("suppress-tlv-advertisement": ["openconfig-lldp-types:SYSTEM_NAME"],
                              "@suppress-tlv-advertisement": )" +
                           merged),
                      ErrorTag::invalid_value, "/lldp/config/suppress-tlv-advertisement"},
        WrongJsonCase{"MoreAnnotationsThanValues",
                      json(R"("suppress-tlv-advertisement": ["openconfig-lldp-types:SYSTEM_NAME"],
                              "@suppress-tlv-advertisement": [null, )" +
                           merged + "]"),
                      ErrorTag::invalid_value, "/lldp/config/suppress-tlv-advertisement"}),
    [](const auto &test) { return test.param.name; });

struct ContradictionCase {
    const char *name;
    std::string config; // with the prefix nc
    std::string path;
};

TEST(AnEditWithAValueOfALeafListTwice, IsRefused) {
    const std::string value = "t:SYSTEM_NAME</suppress-tlv-advertisement>";
    for (const std::string operation : {"merge", "create", "delete", "remove"}) {
        const std::string once = "<suppress-tlv-advertisement nc:operation='" + operation + "'>";
        const std::string other = "<suppress-tlv-advertisement nc:operation='remove'>";
        const std::string document = "<lldp xmlns=\"http://openconfig.net/yang/lldp\" "
                                     "xmlns:t=\"http://openconfig.net/yang/lldp/types\" "
                                     "xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><config>" +
                                     once + value + other + value + "</config></lldp>";
        try {
            parse_edit(schemas(), document, Operation::merge);
            FAIL() << "the edit was accepted";
        } catch (const Error &error) {
            EXPECT_EQ(error.tag(), ErrorTag::bad_element);
            EXPECT_EQ(error.path(),
                      "/lldp/config/suppress-tlv-advertisement[.='openconfig-lldp-types:SYSTEM_NAME']");
            EXPECT_STREQ(error.what(), "is repeated");
        }
    }
}

class AContradictionInAnEdit : public testing::TestWithParam<ContradictionCase> {};

TEST_P(AContradictionInAnEdit, IsRefusedAsABadAttribute) {
    const std::string document = "<lldp xmlns=\"http://openconfig.net/yang/lldp\" "
                                 "xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\">" +
                                 GetParam().config + "</lldp>";
    try {
        parse_edit(schemas(), document, Operation::merge);
        FAIL() << "the edit was accepted";
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), ErrorTag::bad_attribute) << error.what();
        EXPECT_EQ(error.subject(), "operation");
        EXPECT_EQ(error.path(), GetParam().path);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, AContradictionInAnEdit,
    testing::Values(
        ContradictionCase{"AMergeInADelete",
                          "<config nc:operation='delete'><enabled nc:operation='merge'>true</enabled></config>",
                          "/lldp/config/enabled"},
        ContradictionCase{
            "ACreateInARemove",
            "<config nc:operation='remove'><enabled nc:operation='create'>true</enabled></config>",
            "/lldp/config/enabled"},
        ContradictionCase{"ADeleteInAReplace",
                          "<config nc:operation='replace'><system-name nc:operation='delete'/></config>",
                          "/lldp/config/system-name"},
        ContradictionCase{"ARemoveInACreate",
                          "<config nc:operation='create'><system-name nc:operation='remove'/></config>",
                          "/lldp/config/system-name"},
        ContradictionCase{"ADeleteFarBelowAReplace",
                          "<interfaces nc:operation='replace'><interface><name>a</name>"
                          "<config nc:operation='merge'><enabled nc:operation='delete'/></config></interface>"
                          "</interfaces>",
                          "/lldp/interfaces/interface[name='a']/config/enabled"}),
    [](const auto &test) { return test.param.name; });

TEST(AnEditThatIsPrinted, IsReadAsTheSameAgain) {
    const std::string document = xml("<system-name>a&#13;&#10;&lt;&amp;&#9;b </system-name>");
    const EditNode edit = parse_edit(schemas(), document, Operation::replace);
    EXPECT_EQ(print_edit(parse_edit(schemas(), print_edit(edit), Operation::none)), print_edit(edit));
}

} // namespace
} // namespace yfw::yang::test

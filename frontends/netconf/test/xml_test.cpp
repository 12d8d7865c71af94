// Which documents are accepted or rejected, and what is read from their elements.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frontends/netconf/messages/rpc_error.h"
#include "frontends/netconf/messages/xml.h"

namespace yfw::netconf {
namespace {

using testing::IsEmpty;

std::string nested(size_t depth) {
    std::string text = "<a xmlns='urn:a'>";
    for (size_t i = 1; i < depth; i++)
        text += "<a>";
    for (size_t i = 0; i < depth; i++)
        text += "</a>";
    return text;
}

// This many elements inside a root.
std::string with_elements(size_t count) {
    std::string text = "<a xmlns='urn:a'>";
    for (size_t i = 0; i < count; i++)
        text += "<b/>";
    return text + "</a>";
}

// This many attributes, including namespace declarations, on an element and on its parent.
std::string with_attributes(size_t inside, size_t around) {
    std::string text = "<a xmlns='urn:a'";
    for (size_t i = 1; i < around; i++)
        text += " xmlns:p" + std::to_string(i) + "='urn:" + std::to_string(i) + "'";
    text += "><b";
    for (size_t i = 0; i < inside; i++)
        text += " b" + std::to_string(i) + "=\"1\"";
    return text + "/></a>";
}

struct DocumentCase {
    const char *name;
    std::string text;
};

std::string name_of(const testing::TestParamInfo<DocumentCase> &test) {
    return test.param.name;
}

// --- refused ---

class AMalformedDocument : public testing::TestWithParam<DocumentCase> {};

TEST_P(AMalformedDocument, IsRefusedAsAMalformedMessage) {
    try {
        const Document document(GetParam().text);
        FAIL() << "the document was accepted as " << document.root().print().substr(0, 200);
    } catch (const RpcError &error) {
        EXPECT_EQ(error.type, "rpc");
        EXPECT_EQ(error.tag, "malformed-message");
        EXPECT_STRNE(error.what(), "");
    }
}

INSTANTIATE_TEST_SUITE_P(
    With, AMalformedDocument,
    testing::Values(
        DocumentCase{"Nothing", ""}, DocumentCase{"WhiteSpaceAlone", " \n\t "},
        DocumentCase{"TextAlone", "text"}, DocumentCase{"ADeclarationAlone", "<?xml version=\"1.0\"?>"},
        DocumentCase{"ACommentAlone", "<!-- -->"},
        DocumentCase{"ADocumentType", "<!DOCTYPE a><a xmlns='urn:a'/>"},
        DocumentCase{"ADocumentTypeAfterTheDeclaration",
                     "<?xml version=\"1.0\"?>\n<!DOCTYPE a>\n<a xmlns='urn:a'/>"},
        DocumentCase{"ADocumentTypeAfterAComment", "<!-- x --><!DOCTYPE a><a xmlns='urn:a'/>"},
        DocumentCase{"ADocumentTypeWithin", "<a xmlns='urn:a'><!DOCTYPE a></a>"},
        DocumentCase{
            "ADocumentTypeWithEntities",
            "<!DOCTYPE a [<!ENTITY x \"xxxxxxxx\"><!ENTITY y \"&x;&x;&x;&x;\">]><a xmlns='urn:a'>&y;</a>"},
        DocumentCase{"AnExternalEntity",
                     "<!DOCTYPE a [<!ENTITY x SYSTEM \"file:///etc/hostname\">]><a xmlns='urn:a'>&x;</a>"},
        DocumentCase{"AnUnknownEntity", "<a xmlns='urn:a'>&x;</a>"},
        DocumentCase{"AnEntityWithoutEnd", "<a xmlns='urn:a'>&lt</a>"},
        DocumentCase{"ACharacterThatIsNone", "<a xmlns='urn:a'>&#0;</a>"},
        DocumentCase{"ACharacterBeyondAll", "<a xmlns='urn:a'>&#x110000;</a>"},
        DocumentCase{"AControlCharacter", "<a xmlns='urn:a'>\x01</a>"},
        DocumentCase{"InvalidUtf8", "<a xmlns='urn:a'>\xff\xfe</a>"},
        DocumentCase{"OverlongUtf8", "<a xmlns='urn:a'>\xc0\xaf</a>"},
        DocumentCase{"TwoRoots", "<a xmlns='urn:a'/><b/>"},
        DocumentCase{"TextAfterTheRoot", "<a xmlns='urn:a'/>text"},
        DocumentCase{"TextBeforeTheRoot", "text<a xmlns='urn:a'/>"},
        DocumentCase{"AnUnclosedElement", "<a xmlns='urn:a'><b></b>"},
        DocumentCase{"AnUnclosedRoot", "<a xmlns='urn:a'>"},
        DocumentCase{"AnUnfinishedTag", "<a xmlns='urn:a'"},
        DocumentCase{"AnUnfinishedAttribute", "<a xmlns='urn:a' b=\"c/>"},
        DocumentCase{"AnUnfinishedComment", "<a xmlns='urn:a'><!-- </a>"},
        DocumentCase{"AnUnfinishedCdataSection", "<a xmlns='urn:a'><![CDATA[ </a>"},
        DocumentCase{"TagsThatCross", "<a xmlns='urn:a'><b></a></b>"}, DocumentCase{"AnEndTagAlone", "</a>"},
        DocumentCase{"AnotherEndTag", "<a xmlns='urn:a'></b>"},
        DocumentCase{"AnEndTagOfAnotherPrefix", "<x:a xmlns:x=\"urn:x\" xmlns:y=\"urn:x\"></y:a>"},
        DocumentCase{"AnAttributeWithoutQuotes", "<a xmlns='urn:a' b=c/>"},
        DocumentCase{"AnAttributeWithoutValue", "<a xmlns='urn:a' b/>"},
        DocumentCase{"TheSameAttributeTwice", "<a xmlns='urn:a' b=\"1\" b=\"2\"/>"},
        DocumentCase{"AnUndeclaredPrefix", "<x:a xmlns='urn:a'/>"},
        DocumentCase{"AnUndeclaredPrefixOfAnAttribute", "<a xmlns='urn:a' x:b=\"1\"/>"},
        DocumentCase{"TooManyAttributes", with_attributes(Document::most_attributes, 1)},
        DocumentCase{"TooManyNamespaces", with_attributes(0, Document::most_attributes + 1)},
        DocumentCase{"TooManyAttributesWithThoseAround", with_attributes(Document::most_attributes - 9, 10)},
        DocumentCase{"AHundredThousandAttributes", with_attributes(100000, 1)},
        DocumentCase{"TooManyElements", with_elements(Document::most_elements)},
        DocumentCase{"AnElementTooDeep", nested(Document::deepest + 1)},
        DocumentCase{"TwentyThousandNestedElements", nested(20000)},
        DocumentCase{"TwentyThousandElementsThatDoNotEnd", nested(20000).substr(0, 60012)}),
    name_of);

// --- taken ---

class AWellFormedDocument : public testing::TestWithParam<DocumentCase> {};

TEST_P(AWellFormedDocument, IsTaken) {
    EXPECT_EQ(Document(GetParam().text).root().name(), "a");
}

const std::string many_tags = nested(200).substr(0, 613);

std::string many_siblings() {
    std::string text = "<a xmlns='urn:a'>";
    for (int i = 0; i < 20000; i++)
        text += i % 2 == 0 ? "<b/>" : "<b></b>";
    return text + "</a>";
}

// More attributes in total than one element and its ancestors may have.
std::string siblings_with_attributes() {
    std::string text = "<a xmlns='urn:a'>";
    for (size_t i = 0; i < Document::most_attributes; i++)
        text += i % 2 == 0 ? "<b c=\"1\" d=\"2\"/>" : "<b c=\"1\" d=\"2\"><e f=\"3\"/></b>";
    return text + "</a>";
}

INSTANTIATE_TEST_SUITE_P(
    With, AWellFormedDocument,
    testing::Values(
        DocumentCase{"NothingInIt", "<a xmlns='urn:a'/>"},
        DocumentCase{"ADeclaration", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a xmlns='urn:a'/>"},
        DocumentCase{"CommentsAround", "<!-- x --><a xmlns='urn:a'/><!-- <b> <!DOCTYPE b> -->\n"},
        DocumentCase{"WhiteSpaceAround", "\n <a xmlns='urn:a'/> \n"},
        DocumentCase{"TheDeepestElementThatIsAllowed", nested(Document::deepest)},
        DocumentCase{"AsManyAttributesAsAreAllowed", with_attributes(Document::most_attributes - 10, 10)},
        DocumentCase{"ManySiblings", many_siblings()},
        DocumentCase{"ManySiblingsWithAttributes", siblings_with_attributes()},
        DocumentCase{"TagsInAnAttribute", "<a xmlns='urn:a' b=\"/&gt;&lt;a>\"/>"},
        DocumentCase{"TheWordDoctypeInText", "<a xmlns='urn:a'>&lt;!DOCTYPE a></a>"},
        DocumentCase{"ADocumentTypeInAComment", "<a xmlns='urn:a'><!-- <!DOCTYPE a> --></a>"},
        DocumentCase{"ADocumentTypeInACdataSection", "<a xmlns='urn:a'><![CDATA[<!DOCTYPE a>]]></a>"},
        DocumentCase{"ManyTagsInAComment", "<a xmlns='urn:a'><!--" + many_tags + "--></a>"},
        DocumentCase{"ManyTagsInACdataSection", "<a xmlns='urn:a'><![CDATA[" + many_tags + "]]></a>"},
        DocumentCase{"AProcessingInstruction", "<a xmlns='urn:a'><?x y?></a>"}),
    name_of);

// --- elements ---

struct TextCase {
    const char *name;
    std::string document;
    std::string text;
};

class TheTextOfAnElement : public testing::TestWithParam<TextCase> {};

TEST_P(TheTextOfAnElement, IsItsCharacterDataWithoutTheSpaceAround) {
    EXPECT_EQ(Document(GetParam().document).root().text(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Being, TheTextOfAnElement,
    testing::Values(TextCase{"Nothing", "<a xmlns='urn:a'/>", ""},
                    TextCase{"Plain", "<a xmlns='urn:a'>text</a>", "text"},
                    TextCase{"Surrounded", "<a xmlns='urn:a'>\n  two words\t</a>", "two words"},
                    TextCase{"OfEntities", "<a xmlns='urn:a'>&lt;&amp;&gt;&quot;&apos;</a>", "<&>\"'"},
                    TextCase{"OfReferences", "<a xmlns='urn:a'>&#65;&#x42;</a>", "AB"},
                    TextCase{"OfACdataSection", "<a xmlns='urn:a'><![CDATA[<b>&amp;]]></a>", "<b>&amp;"},
                    TextCase{"BeyondAscii", "<a xmlns='urn:a'>\xc3\xa4\xe2\x82\xac</a>",
                             "\xc3\xa4\xe2\x82\xac"}),
    [](const auto &test) { return test.param.name; });

TEST(AnElement, HasTheNamespaceOfItsPrefixOrTheDefaultOne) {
    const Document document("<a xmlns=\"urn:a\" xmlns:x=\"urn:x\"><x:b/><c/><d xmlns=\"\"/></a>");
    const Element root = document.root();
    EXPECT_TRUE(root.is("urn:a", "a"));
    EXPECT_FALSE(root.is("urn:x", "a"));
    EXPECT_FALSE(root.is("urn:a", "b"));
    const std::vector<Element> children = root.children();
    ASSERT_EQ(children.size(), 3u);
    EXPECT_TRUE(children[0].is("urn:x", "b"));
    EXPECT_TRUE(children[1].is("urn:a", "c"));
    EXPECT_TRUE(children[2].is("", "d"));
}

TEST(AnElement, FindsTheFirstChildByNameInItsOwnNamespace) {
    const Document document("<a xmlns=\"urn:a\"><b xmlns=\"urn:x\">x</b><b>first</b><b>second</b></a>");
    const std::optional<Element> child = document.root().child("b");
    ASSERT_TRUE(child.has_value());
    EXPECT_EQ(child->text(), "first");
    EXPECT_FALSE(document.root().child("c").has_value());
}

TEST(AnElement, HasItsAttributesWithTheirNamespaces) {
    const Document document("<a xmlns=\"urn:a\" xmlns:x=\"urn:x\" plain=\"1\" x:other=\"&lt;2&gt;\"/>");
    std::vector<std::string> seen;
    for (const Element::Attribute &each : document.root().attributes())
        seen.push_back(std::string(each.name) + "|" + std::string(each.ns) + "|" + std::string(each.value));
    EXPECT_THAT(seen, testing::UnorderedElementsAre("plain||1", "other|urn:x|<2>"));
    EXPECT_EQ(document.root().attribute("plain"), "1");
    EXPECT_EQ(document.root().attribute("other"), "<2>");
    EXPECT_EQ(document.root().attribute("absent"), std::nullopt);
}

TEST(AnElement, KnowsThePrefixesThatItsAttributesValuesUse) {
    const Document document("<a xmlns=\"urn:a\" xmlns:x=\"urn:x\"><b select=\"/x:c/x:d\"/></a>");
    EXPECT_THAT(document.root().children().at(0).prefixes(), testing::Contains(testing::Pair("x", "urn:x")));
}

TEST(AnElement, IsPrintedWithAllBelowItAsADocumentOfItsOwn) {
    const Document document("<a xmlns=\"urn:a\" xmlns:x=\"urn:x\"><b n=\"1\"><x:c>&lt;&amp;</x:c></b><d/></a>");
    const Document printed(document.root().children().at(0).print());
    EXPECT_TRUE(printed.root().is("urn:a", "b"));
    EXPECT_EQ(printed.root().attribute("n"), "1");
    const std::vector<Element> children = printed.root().children();
    ASSERT_EQ(children.size(), 1u);
    EXPECT_TRUE(children[0].is("urn:x", "c"));
    EXPECT_EQ(children[0].text(), "<&");
    EXPECT_THAT(children[0].children(), IsEmpty());
}

} // namespace
} // namespace yfw::netconf

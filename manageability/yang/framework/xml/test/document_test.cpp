// The cost of clients' documents, and the text they yield.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "xml/document.h"
#include "xml/utf16.h"

namespace yfw::xml {
namespace {

std::string why_refused(const std::string &text, const Limits &limits = {}) {
    try {
        const Document document(text, limits);
        return "";
    } catch (const DocumentError &error) {
        return error.what();
    }
}

TEST(ADocument, MayHaveSiblingsOfOneNameWithoutANamespace) {
    const Document document("<x xmlns=''><a/><a/><b><c>1</c><c>2</c></b></x>");
    EXPECT_EQ(document.root().children().size(), 3u);
    EXPECT_EQ(document.root().children()[2].children()[1].text(), "2");
}

TEST(ADocument, MayBeginWithAByteOrderMark) {
    EXPECT_EQ(Document("\xef\xbb\xbf<a>text</a>").root().text(), "text");
}

TEST(ADocument, MayHaveCommentsInsideText) {
    EXPECT_EQ(Document("<a>one<!-- between --> two</a>").root().text(), "one two");
}

TEST(ADocument, HasLineFeedsAtTheEndsOfItsLines) {
    EXPECT_EQ(Document("<a>one\r\ntwo\rthree</a>").root().text(), "one\ntwo\nthree");
}

TEST(ADocument, IsReadAsUtf8WhateverItsDeclarationSays) {
    EXPECT_EQ(Document("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xc3\xa4</a>").root().text(),
              "\xc3\xa4");
}

TEST(ADocument, IsReadAsUtf8WhenItIsDeclaredAsUtf16) {
    EXPECT_EQ(Document("<?xml version=\"1.0\" encoding=\"UTF-16\"?><a>\xc3\xa4</a>").root().text(), "\xc3\xa4");
}

TEST(ADocumentInUtf16, IsConverted) {
    using namespace std::string_literals;
    EXPECT_EQ(from_utf16("\xff\xfe<\0a\0"s), "\xef\xbb\xbf<a");
    EXPECT_EQ(from_utf16("\xfe\xff\0<\0\xe4"s), "\xef\xbb\xbf<\xc3\xa4");
    EXPECT_EQ(from_utf16("<\0\x13\x27"s), "<\xe2\x9c\x93");
    EXPECT_EQ(from_utf16("<\0\x3d\xd8\0\xde"s), "<\xf0\x9f\x98\x80");
    EXPECT_EQ(from_utf16("<a/>"), std::nullopt);
    EXPECT_EQ(from_utf16(""), std::nullopt);
}

TEST(ADocumentInUtf16, IsRefusedWhenItIsNotWellFormed) {
    using namespace std::string_literals;
    for (const std::string &text : {"<\0a"s, "<\0\x3d\xd8"s, "<\0\x3d\xd8<\0"s, "<\0\0\xde"s})
        EXPECT_THROW(from_utf16(text), DocumentError);
}

TEST(ADocument, ThatIsRefusedNamesTheLine) {
    EXPECT_THAT(why_refused("<a>\n<b>\n</a>"), testing::HasSubstr("line 3"));
}

TEST(ADocument, MayNotHoldANulCharacterAnywhere) {
    for (const std::string &place : {std::string("\0<a/>", 5), std::string("<a>\0</a>", 8),
                                     std::string("<a/>\0", 5), std::string("<a/>\0<b", 7)})
        EXPECT_THAT(why_refused(place), testing::HasSubstr("NUL"));
}

TEST(ADocument, IsRefusedWithinItsLimits) {
    EXPECT_EQ(why_refused("<a><b/></a>", {.depth = 2, .elements = 2, .attributes = 0}), "");
    EXPECT_THAT(why_refused("<a><b><c/></b></a>", {.depth = 2}), testing::HasSubstr("deeper than 2"));
    EXPECT_THAT(why_refused("<a><b/><b/></a>", {.elements = 2}), testing::HasSubstr("more than 2 elements"));
    EXPECT_THAT(why_refused("<a x='1'><b y='2'/></a>", {.attributes = 1}),
                testing::HasSubstr("more than 1 attr"));
    EXPECT_THAT(why_refused("<a x='>' y='>'/>", {.attributes = 1}), testing::HasSubstr("more than 1 attr"));
}

// Comparing every pair of attributes would take hours.
TEST(ADocument, WithAMillionAttributesIsRefusedAtOnce) {
    std::string text = "<a";
    for (int i = 0; i < 1000000; i++)
        text += " a" + std::to_string(i) + "=''";
    EXPECT_THAT(why_refused(text + "/>"), testing::HasSubstr("attributes"));
    EXPECT_THAT(why_refused(text), testing::HasSubstr("attributes"));
}

TEST(ADocument, AdoptsWhatHasNoNamespaceIntoOne) {
    Document document("<n:a xmlns:n='urn:n'><b><n:c/></b><d xmlns=''><e/></d><f xmlns='urn:f'><g/></f></n:a>");
    document.adopt("urn:base");
    const auto children = document.root().children();
    EXPECT_TRUE(document.root().is("urn:n", "a"));
    EXPECT_TRUE(children[0].is("urn:base", "b"));
    EXPECT_TRUE(children[0].children()[0].is("urn:n", "c"));
    EXPECT_TRUE(children[1].is("", "d"));
    EXPECT_TRUE(children[1].children()[0].is("", "e"));
    EXPECT_TRUE(children[2].children()[0].is("urn:f", "g"));
}

TEST(ADocument, ThatDeclaresADefaultNamespaceAdoptsNothing) {
    Document document("<n:a xmlns:n='urn:n' xmlns=''><b/></n:a>");
    document.adopt("urn:base");
    EXPECT_TRUE(document.root().children()[0].is("", "b"));
}

TEST(AnElement, KnowsTheNamespacesOfThePrefixesAroundIt) {
    const Document document(
        "<a xmlns='urn:a' xmlns:x='urn:outer' xmlns:y='urn:y'><b xmlns:x='urn:inner'/></a>");
    const Element inner = document.root().children()[0];
    EXPECT_EQ(inner.prefixes(), (Prefixes{{"x", "urn:inner"}, {"y", "urn:y"}}));
    EXPECT_EQ(inner.namespace_of("x"), "urn:inner");
    EXPECT_EQ(inner.namespace_of(""), "urn:a");
    EXPECT_EQ(inner.namespace_of("z"), std::nullopt);
}

} // namespace
} // namespace yfw::xml

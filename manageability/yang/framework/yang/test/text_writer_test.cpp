// Trees that the writers write, beside what libyang prints of them.
#include "yang/text_writer.h"

#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "yang/data_writing.h"
#include "yang/tree_text.h"

namespace yfw::yang::test {
namespace {

constexpr const char *other_module = R"(module other {
  yang-version 1.1; namespace "urn:other"; prefix o;
  identity animal; identity cat { base animal; }
})";

constexpr const char *types_module = R"(module types {
  yang-version 1.1; namespace "urn:types?a&amp;b"; prefix t;
  import other { prefix o; }
  identity dog { base o:animal; }
  container top {
    leaf-list names { type string; }
    leaf-list small { type int8; }
    leaf text { type string; }
    leaf nothing { type empty; }
    leaf animal { type identityref { base o:animal; } }
    leaf mixed { type union { type uint8; type boolean; type identityref { base o:animal; } type string; } }
    leaf price { type decimal64 { fraction-digits 2; } }
    leaf flags { type bits { bit first; bit second; } }
    leaf long { type int64; }
    leaf counter { type uint64; }
    leaf wide { type uint32; }
    leaf octets { type binary; }
    leaf place { type instance-identifier { require-instance false; } }
    leaf choice { type enumeration { enum one; enum two; } }
    leaf on { type boolean; }
    container inner { presence "it is there"; leaf text { type string; } }
    list entry { key "name number"; leaf name { type string; } leaf number { type leafref { path "../../wide"; } }
      leaf text { type string; } list entry { key name; leaf name { type string; } } }
    list row { config false; leaf text { type string; } }
  }
})";

constexpr const char *more_module = R"(module more {
  yang-version 1.1; namespace "urn:more"; prefix m;
  import types { prefix t; }
  augment /t:top { container added { leaf text { type string; } } }
  augment /t:top/t:entry { leaf added { type string; } }
})";

class AWriter : public testing::Test {
protected:
    AWriter() {
        ly_ctx *context = nullptr;
        ly_ctx_new(nullptr, 0, &context);
        context_.reset(context);
        for (const char *module : {other_module, types_module, more_module})
            EXPECT_EQ(lys_parse_mem(context, module, LYS_IN_YANG, nullptr), LY_SUCCESS) << ly_errmsg(context);
    }

    DataTree parse(const std::string &json) const {
        return parse_data(context_.get(), json, LYD_JSON, LYD_PARSE_ONLY | LYD_PARSE_STRICT);
    }

    template <class Writer> static std::string written(const lyd_node *tree, Layout layout) {
        std::string text;
        Writer writer([&](std::string_view piece) { text += piece; }, layout);
        if (tree != nullptr)
            write(tree, writer);
        writer.finish();
        return text;
    }

    static void expect_as_libyang(const lyd_node *tree) {
        const auto options = [](Layout layout) { return layout == Layout::compact ? LYD_PRINT_SHRINK : 0u; };
        for (const Layout layout : {Layout::indented, Layout::compact}) {
            const std::string xml = printed(tree, LYD_XML, LYD_PRINT_KEEPEMPTYCONT | options(layout));
            EXPECT_EQ(written<XmlWriter>(tree, layout), xml);
            const std::string json = printed(tree, LYD_JSON, LYD_PRINT_KEEPEMPTYCONT | options(layout));
            EXPECT_EQ(written<JsonWriter>(tree, layout), json);
        }
    }

    YangContext context_;
};

TEST_F(AWriter, WritesEachTypeAsLibyangPrintsIt) {
    for (const char *members :
         {R"("names":["a","b"])",
          R"("small":[-1,0,127])",
          R"("text":"<a> & \"b\" 'c' ]]>")",
          R"("nothing":[null])",
          R"("animal":"other:cat")",
          R"("animal":"types:dog")",
          R"("mixed":7)",
          R"("mixed":true)",
          R"("mixed":"other:cat")",
          R"("mixed":"cat")",
          R"("mixed":"300")",
          R"("price":"1.50")",
          R"("price":"-0.05")",
          R"("flags":"second first")",
          R"("flags":"")",
          R"("long":"-9223372036854775808")",
          R"("counter":"18446744073709551615")",
          R"("wide":4294967295)",
          R"("octets":"AAEC")",
          R"("octets":"")",
          R"("place":"/types:top/entry[name='a'][number='1']/more:added")",
          R"("choice":"two")",
          R"("on":false)",
          R"("inner":{})",
          R"("inner":{"text":""})",
          R"("text":"")",
          R"("entry":[{"name":"a","number":1,"entry":[{"name":"x"},{"name":"y"}]},{"name":"a","number":2}])",
          R"("entry":[{"name":"a","number":1,"more:added":"m"}],"more:added":{"text":"x"})",
          R"("row":[{"text":"a"},{"text":"a"}])"}) {
        SCOPED_TRACE(members);
        expect_as_libyang(parse(R"({"types:top":{)" + std::string(members) + "}}").get());
    }
}

TEST_F(AWriter, WritesEachCharacterAsLibyangPrintsIt) {
    const DataTree tree = parse(R"({"types:top":{"text":""}})");
    for (const std::string &text : {std::string("\t\n !\"#$%&'()*+,-./:;<=>?@[\\]^`{|}~"), std::string("\x7f"),
                                    std::string("é\u0080\u2028\uFFFD𐍈"), std::string(" \t ")}) {
        ASSERT_EQ(lyd_change_term(lyd_child(tree.get()), text.c_str()), LY_SUCCESS);
        expect_as_libyang(tree.get());
    }
}

// libyang prints it as it is, and an XML parser then reads a line feed (XML section 2.11).
TEST_F(AWriter, WritesACarriageReturnInXmlSoThatItIsReadAgain) {
    const DataTree tree = parse(R"({"types:top":{"text":"a\r\nb\r"}})");
    EXPECT_THAT(written<XmlWriter>(tree.get(), Layout::compact),
                testing::HasSubstr("<text>a&#13;\nb&#13;</text>"));
}

TEST_F(AWriter, OfNothingWritesAnEmptyObjectOrNothing) {
    EXPECT_EQ(written<JsonWriter>(nullptr, Layout::indented), "{}\n");
    EXPECT_EQ(written<XmlWriter>(nullptr, Layout::indented), "");
}

TEST_F(AWriter, HandsOutLongTextInPiecesOfBoundedSize) {
    DataTree tree = parse(R"({"types:top":{}})");
    for (int i = 0; i < 20000; i++)
        lyd_new_term(tree.get(), nullptr, "names", ("name " + std::to_string(i)).c_str(), 0, nullptr);
    std::vector<size_t> sizes;
    XmlWriter writer([&](std::string_view piece) { sizes.push_back(piece.size()); }, Layout::indented);
    write(tree.get(), writer);
    writer.finish();
    EXPECT_GT(sizes.size(), 5u);
    EXPECT_THAT(sizes, testing::Each(testing::Le(70000u)));
}

TEST_F(AWriter, EndsWithWhatItsSinkThrows) {
    DataTree tree = parse(R"({"types:top":{}})");
    for (int i = 0; i < 20000; i++)
        lyd_new_term(tree.get(), nullptr, "names", std::to_string(i).c_str(), 0, nullptr);
    JsonWriter writer([](std::string_view) { throw std::runtime_error("full"); }, Layout::compact);
    EXPECT_THROW(write(tree.get(), writer), std::runtime_error);
}

// A random member of the container or entry, in JSON.
class RandomTrees {
public:
    explicit RandomTrees(unsigned seed) : random_(seed) {}

    std::string top() { return R"({"types:top":{)" + members() + "}}"; }

private:
    bool chance() { return random_() % 2 == 0; }
    std::string text() {
        constexpr const char *parts[] = {"a",   "&",   "<", ">", "\\\"", "'", "\\\\",
                                         "\\n", "\\t", "é", " ", "]]>",  "/", "1"};
        std::string made;
        for (size_t left = random_() % 6; left > 0; left--)
            made += parts[random_() % std::size(parts)];
        return "\"" + made + "\"";
    }
    void add(std::string &to, const std::string &member) { to += (to.empty() ? "" : ",") + member; }

    std::string members() {
        std::string made;
        const std::vector<std::string> choices{R"("names":["x","y"])",
                                               R"("small":[1,-2])",
                                               R"("text":)" + text(),
                                               R"("nothing":[null])",
                                               R"("animal":"types:dog")",
                                               R"("mixed":"other:cat")",
                                               R"("price":"3.1")",
                                               R"("counter":"12")",
                                               R"("on":true)",
                                               R"("inner":{"text":)" + text() + "}",
                                               R"("inner":{})",
                                               R"("row":[{"text":)" + text() + "}]",
                                               R"("more:added":{"text":)" + text() + "}",
                                               R"("entry":[)" + entries() + "]"};
        for (const std::string &choice : choices)
            if (chance() && !(choice == R"("inner":{})" && made.find("inner") != std::string::npos))
                add(made, choice);
        return made;
    }
    std::string entries() {
        std::string made;
        for (size_t i = 0; i <= random_() % 4; i++)
            add(made, R"({"name":"n)" + std::to_string(i) + R"(","number":)" + std::to_string(random_() % 9) +
                          (chance() ? R"(,"text":)" + text() : "") +
                          (chance() ? R"(,"more:added":)" + text() : "") +
                          (chance() ? R"(,"entry":[{"name":"x"}])" : "") + "}");
        return made;
    }

    std::mt19937 random_;
};

TEST_F(AWriter, WritesRandomTreesAsLibyangPrintsThem) {
    for (unsigned seed = 0; seed < 2000 && !HasFailure(); seed++) {
        const std::string json = RandomTrees(seed).top();
        SCOPED_TRACE(json);
        expect_as_libyang(parse(json).get());
    }
}

} // namespace
} // namespace yfw::yang::test

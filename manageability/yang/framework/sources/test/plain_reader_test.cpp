// Plain files of native data are read without libyang's tree; others by libyang. Both find the same.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/error.h"
#include "native_modules.h"
#include "sources/file/file_source.h"
#include "sources/file/plain_reader.h"
#include "support/files.h"
#include "yang/test/instance_text.h"

namespace yfw::sources::test {
namespace {

const std::string cfg = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg";
const std::string oper = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper";

// A device's state with this in its only node.
std::string state(const std::string &content) {
    return "<lldp xmlns=\"" + oper + "\"><nodes><node><node-name>n1</node-name>" + content +
           "</node></nodes></lldp>";
}

std::string statistics(const std::string &packets) {
    return state("<statistics><received-packets>" + packets + "</received-packets></statistics>");
}

std::string neighbor(const std::string &keys) {
    return state("<neighbors><details><detail>" + keys + "</detail></details></neighbors>");
}

std::string chassis(const std::string &id) {
    return neighbor(
        "<interface-name>eth1</interface-name><device-id>r2</device-id><lldp-neighbor><chassis-id>" + id +
        "</chassis-id></lldp-neighbor>");
}

std::string configuration(const std::string &content) {
    return "<lldp xmlns=\"" + cfg + "\">" + content + "</lldp>";
}

// What a device of these files shows, or its error, when it is read by libyang.
std::string read_by_libyang(const std::vector<std::filesystem::path> &files) {
    try {
        return yang::test::text_of(*yang::instance_forest(FileSource(files).read(native_modules()).get()));
    } catch (const Error &error) {
        return error.path() + ": " + error.what();
    }
}

// The same as a device is read.
std::string read(const std::vector<std::filesystem::path> &files) {
    try {
        return yang::test::text_of(*FileSource(files).snapshot(native_modules()).data);
    } catch (const Error &error) {
        return error.path() + ": " + error.what();
    }
}

struct Document {
    const char *name;
    std::string text;
};

void PrintTo(const Document &document, std::ostream *to) {
    *to << document.name;
}

class ADocument : public testing::TestWithParam<Document> {
protected:
    bool is_read_plainly() {
        PlainReader reader(native_modules());
        return reader.read(file_);
    }

    const yfw::test::TemporaryDirectory directory_;
    const std::filesystem::path file_ = directory_.add("native.xml", GetParam().text);
};

class APlainDocument : public ADocument {};

TEST_P(APlainDocument, ShowsWhatLibyangReads) {
    EXPECT_TRUE(is_read_plainly());
    EXPECT_EQ(read({file_}), read_by_libyang({file_}));
    EXPECT_EQ(read({file_}).substr(0, 1), "<");
}

INSTANTIATE_TEST_SUITE_P(
    Of, APlainDocument,
    testing::Values(
        Document{"state", chassis("c2")}, Document{"configuration", configuration("<timer>40</timer>")},
        Document{"both", configuration("<timer>40</timer>") + statistics("5")},
        Document{"a declaration", "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n" + statistics("5")},
        Document{"a byte order mark", "\xef\xbb\xbf" + statistics("5")},
        Document{"comments", "<!-- a -->" + chassis("c<!-- b -->2") + "<!-- c -->"},
        Document{"processing instructions", "<?a?>" + chassis("c<?b?>2")},
        Document{"sections", chassis("<![CDATA[<c&>]]>2")},
        Document{"references", chassis("&lt;&amp;&#233;&#13;&#x9;\"&apos;&quot;")},
        Document{"carriage returns", chassis("c\r\n2\r3")}, Document{"white space in values", chassis(" c 2 ")},
        Document{"white space around numbers", statistics(" 5\n")},
        Document{"numbers that are not canonical", statistics("007")},
        Document{"white space between elements", state("\n <statistics>\t</statistics>\n")},
        Document{"empty values", chassis("")}, Document{"elements without content", state("<statistics/>")},
        Document{"other characters", chassis("\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80")},
        Document{"prefixes", "<o:lldp xmlns:o=\"" + oper + "\"><o:nodes/></o:lldp>"},
        Document{"a configuration that needs escapes",
                 configuration("<system-name>a&lt;b&amp;c\"'&#13;\n</system-name>")}));

class AnotherDocument : public ADocument {};

TEST_P(AnotherDocument, IsReadByLibyang) {
    EXPECT_FALSE(is_read_plainly());
    EXPECT_EQ(read({file_}), read_by_libyang({file_}));
}

INSTANTIATE_TEST_SUITE_P(
    Of, AnotherDocument,
    testing::Values(
        Document{"nothing", ""}, Document{"white space", " \n"}, Document{"a comment", "<!-- a -->"},
        Document{"JSON", R"({"Tarvo-QD-ethernet-lldp-cfg:lldp": {"timer": 40}})"},
        Document{"UTF-16", std::string("\xff\xfe<\0l\0/\0>\0", 10)},
        Document{"another encoding", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + chassis("\xe9")},
        Document{"bytes that are no characters", chassis("\xe9")},
        Document{"characters that YANG forbids", chassis("\xef\xb7\x90")},
        Document{"references to forbidden characters", chassis("&#1;")},
        Document{"entities", chassis("&unknown;")},
        Document{"a document type", "<!DOCTYPE lldp [<!ENTITY a \"b\">]>" + chassis("&a;")},
        Document{"attributes", "<lldp xmlns=\"" + oper + "\" a=\"b\"/>"}, Document{"no namespace", "<lldp/>"},
        Document{"another namespace", "<lldp xmlns=\"a\"/>"},
        Document{"OpenConfig data", "<lldp xmlns=\"http://openconfig.net/yang/lldp\"/>"},
        Document{"an unknown node", state("<unknown/>")}, Document{"a wrong number", statistics("many")},
        Document{"a number beyond its type", statistics("99999999999999999999")},
        Document{"an element in a value", statistics("<a/>")}, Document{"text beside elements", state("text")},
        Document{"text between elements", chassis("c2") + "text"},
        Document{"a node without its key", "<lldp xmlns=\"" + oper + "\"><nodes><node/></nodes></lldp>"},
        Document{"a node with its key last",
                 "<lldp xmlns=\"" + oper +
                     "\"><nodes><node><statistics/><node-name>n1</node-name></node></nodes></lldp>"},
        Document{"a node with two keys", state("<node-name>n2</node-name>")},
        Document{"a tree twice", statistics("5") + statistics("6")},
        Document{"an open element", "<lldp xmlns=\"" + oper + "\">"},
        Document{"an element that closes what is not open", chassis("c2") + "</lldp>"},
        Document{"the end of another root", chassis("c2") + "</root><root>"},
        Document{"an unknown prefix", "<o:lldp/>"},
        Document{"an attribute in configuration", configuration("<timer xmlns:a=\"b\" a:c=\"d\">40</timer>")}));

class SeveralFiles : public testing::Test {
protected:
    const yfw::test::TemporaryDirectory directory_;
};

TEST_F(SeveralFiles, AreReadTogether) {
    const std::vector<std::filesystem::path> files{directory_.add("a.xml", configuration("<timer>40</timer>")),
                                                   directory_.add("b.xml", chassis("c2"))};
    PlainReader reader(native_modules());
    EXPECT_TRUE(reader.read(files[0]) && reader.read(files[1]));
    EXPECT_EQ(read(files), read_by_libyang(files));
}

TEST_F(SeveralFiles, AreMergedByLibyang) {
    const std::vector<std::filesystem::path> files{
        directory_.add("a.xml", chassis("c2")),
        directory_.add("b.xml", statistics("7")),
    };
    EXPECT_EQ(read(files), read_by_libyang(files));
    EXPECT_NE(read(files).find("c2"), std::string::npos);
    EXPECT_NE(read(files).find("7"), std::string::npos);
}

TEST_F(SeveralFiles, NameTheOneThatIsWrong) {
    const std::vector<std::filesystem::path> files{directory_.add("a.xml", configuration("<timer>40</timer>")),
                                                   directory_.add("b.xml", statistics("many"))};
    EXPECT_EQ(read(files).substr(0, files[1].string().size()), files[1].string());
}

TEST(AWrongConfiguration, IsRefusedAsLibyangRefusesIt) {
    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file =
        directory.add("a.xml", configuration("<timer>1</timer>") + statistics("5"));
    EXPECT_EQ(read({file}), read_by_libyang({file}));
    EXPECT_EQ(read({file}).substr(0, file.string().size()), file.string());
}

} // namespace
} // namespace yfw::sources::test

// Data and paths as text.
#include "yang/tree_text.h"

#include <string>

#include <gtest/gtest.h>

#include "base/error.h"
#include "data_texts.h"
#include "test_schemas.h"

namespace yfw::yang::test {
namespace {

constexpr uint32_t strictly = LYD_PARSE_ONLY | LYD_PARSE_STRICT;

const std::string entry = "<lldp xmlns=\"http://openconfig.net/yang/lldp\"><interfaces><interface>"
                          "<name>eth1</name></interface></interfaces></lldp>";

TEST(ThePathOfANode, HoldsTheKeysOfItsListEntries) {
    const DataTree data = parse_data(schemas().context(), entry, LYD_XML, strictly);
    const lyd_node *interface = lyd_child(lyd_child(data.get()));
    EXPECT_EQ(path_of(interface), "/openconfig-lldp:lldp/interfaces/interface[name='eth1']");
    EXPECT_EQ(path_of(lyd_child(interface)), "/openconfig-lldp:lldp/interfaces/interface[name='eth1']/name");
}

TEST(PrintedData, IsReadAsTheSame) {
    const DataTree data = parse_data(schemas().context(), entry, LYD_XML, strictly);
    for (const LYD_FORMAT format : {LYD_XML, LYD_JSON}) {
        const std::string text = printed(data.get(), format, LYD_PRINT_WITHSIBLINGS);
        ASSERT_NE(text, "");
        const DataTree read = parse_data(schemas().context(), text, format, strictly);
        EXPECT_TRUE(same(leaves(read.get()), leaves(data.get())));
    }
}

TEST(PrintedData, IsAsShortAsItIsAskedToBe) {
    const DataTree data = parse_data(schemas().context(), entry, LYD_XML, strictly);
    EXPECT_EQ(printed(data.get(), LYD_XML, LYD_PRINT_SHRINK), entry);
}

TEST(PrintedData, OfNothingIsNoText) {
    EXPECT_EQ(printed(nullptr, LYD_XML, 0), "");
}

TEST(DataAsText, WithoutNodesIsNoTree) {
    EXPECT_EQ(parse_data(schemas().context(), "{}", LYD_JSON, strictly), nullptr);
}

TEST(DataAsText, ThatIsNotSoundIsNamedByItsPlace) {
    try {
        parse_data(schemas().context(), "<lldp xmlns=\"http://openconfig.net/yang/lldp\"><no/></lldp>", LYD_XML,
                   strictly, "a file");
        FAIL() << "the data was parsed";
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), ErrorTag::operation_failed);
        EXPECT_EQ(error.path(), "a file");
        EXPECT_NE(std::string(error.what()).find("no"), std::string::npos) << error.what();
    }
}

TEST(DataAsText, ThatIsNotSoundIsRefusedInOneLine) {
    try {
        parse_data(schemas().context(), "{]\r\n}", LYD_JSON, strictly, "a file");
        FAIL() << "the data was parsed";
    } catch (const Error &error) {
        EXPECT_EQ(std::string(error.what()).find_first_of("\r\n"), std::string::npos) << error.what();
    }
}

} // namespace
} // namespace yfw::yang::test

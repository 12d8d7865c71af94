#include "host/plugin.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "test_device.h"

namespace yfw::host::test {
namespace {

// The shipped mapping, but with another library.
MappingDescription mapping_of(const char *library) {
    MappingDescription mapping = read_mapping(OCLLDP_LIBRARY);
    mapping.library = library;
    return mapping;
}

TEST(LoadedPlugin, HasItsTreesInTheOrderOfRegistration) {
    const Plugin plugin(read_mapping(OCLLDP_LIBRARY));
    ASSERT_EQ(plugin.trees().size(), 3u);
    EXPECT_STREQ(plugin.trees()[0].tree_name, "OC lldp config tree");
    EXPECT_STREQ(plugin.trees()[1].tree_name, "OC lldp oper tree");
    EXPECT_STREQ(plugin.trees()[2].tree_name, "OC lldp ifmgr tree");
}

TEST(LoadedPlugin, NamesTopNodesThatTheModelsHave) {
    const Plugin plugin(read_mapping(OCLLDP_LIBRARY));
    for (const yfw_map_registration &tree : plugin.trees())
        EXPECT_NE(schemas().native_root(tree.native_ns, tree.native_top), nullptr) << tree.tree_name;
}

// The error that names the library when it is loaded.
Error error_of(const char *library) {
    try {
        const Plugin plugin(mapping_of(library));
    } catch (const Error &error) {
        EXPECT_EQ(error.path(), library);
        return error;
    }
    ADD_FAILURE() << "the library was loaded";
    return {ErrorTag::in_use, "", ""};
}

TEST(PluginThatCannotBeUsed, IsNamedWhenItsFileIsMissing) {
    EXPECT_EQ(error_of("/no/such/library.so").tag(), ErrorTag::operation_failed);
}

TEST(PluginThatCannotBeUsed, IsNamedWhenItIsNoFile) {
    const Error error = error_of("/dev/null");
    EXPECT_NE(std::string(error.what()).find("it is not a file"), std::string::npos) << error.what();
}

TEST(PluginThatCannotBeUsed, IsNamedWhenItRegistersNothing) {
    const Error error = error_of("libm.so.6");
    EXPECT_NE(std::string(error.what()).find("yfw_map_reg_oclldp_cfg"), std::string::npos) << error.what();
}

} // namespace
} // namespace yfw::host::test

#include "host/native_paths.h"

#include <gtest/gtest.h>

#include "test_device.h"

namespace yfw::host::test {
namespace {

constexpr const char *detail = "/lldp/nodes/node/neighbors/details/detail";

TEST(EmittedPaths, KeepTheOrderAndTheArgumentsOfTheirAdds) {
    NativePaths paths;
    paths.add(*paths.root(), {detail, oper_ns.data(), nullptr, nullptr, nullptr, 1, 0});
    paths.add(*paths.root(), {"/lldp/timer", cfg_ns.data(), "30", nullptr, nullptr, 0, 1});
    ASSERT_EQ(paths.paths().size(), 2u);
    const NativePath &first = paths.paths()[0];
    EXPECT_EQ(first.path, detail);
    EXPECT_EQ(first.ns, oper_ns);
    EXPECT_EQ(first.value, std::nullopt);
    EXPECT_TRUE(first.list_entry);
    EXPECT_EQ(first.flags, 0u);
    const NativePath &second = paths.paths()[1];
    EXPECT_EQ(second.path, "/lldp/timer");
    EXPECT_EQ(second.value, "30");
    EXPECT_FALSE(second.list_entry);
    EXPECT_EQ(second.flags, 1u);
}

TEST(EmittedPaths, TakeOverTheOperationThatTheSourceHasAtThatMoment) {
    NativePaths paths;
    tidl_yfw_datatree source{};
    source.operation = YFW_OP_REMOVE;
    paths.add(*paths.root(), {"/lldp", cfg_ns.data(), nullptr, &source, nullptr, 0, 0});
    source.operation = YFW_OP_NONE;
    paths.add(*paths.root(), {"/lldp/enable", cfg_ns.data(), "true", &source, nullptr, 0, 0});
    paths.add(*paths.root(), {"/lldp/timer", cfg_ns.data(), "9", nullptr, nullptr, 0, 0});
    ASSERT_EQ(paths.paths().size(), 3u);
    EXPECT_EQ(paths.paths()[0].operation, static_cast<uint32_t>(YFW_OP_REMOVE));
    EXPECT_EQ(paths.paths()[1].operation, static_cast<uint32_t>(YFW_OP_NONE));
    EXPECT_TRUE(paths.paths()[1].has_source);
    EXPECT_FALSE(paths.paths()[2].has_source);
}

TEST(EmittedPaths, BelowAReturnedNodeAreRelativeToIt) {
    NativePaths paths;
    tidl_yfw_datatree *entry = nullptr;
    paths.add(*paths.root(), {detail, oper_ns.data(), nullptr, nullptr, &entry, 1, 0});
    ASSERT_NE(entry, nullptr);
    paths.add(*entry, {"device-id", oper_ns.data(), "r2", nullptr, nullptr, 0, 0});
    EXPECT_EQ(paths.paths().at(1).path, std::string(detail) + "/device-id");
}

} // namespace
} // namespace yfw::host::test

#include <memory>

#include <gtest/gtest.h>

#include "platform/platform.h"
#include "yfw_map.h"

namespace yfw::platform {
namespace {

TEST(Platform, IsNotInUseOutsideAScope) {
    Platform platform;
    EXPECT_EQ(Platform::current(), nullptr);
    {
        const Platform::Scope scope(platform);
        EXPECT_EQ(Platform::current(), &platform);
    }
    EXPECT_EQ(Platform::current(), nullptr);
}

TEST(Platform, GivesWayToTheInnerScopeAndComesBack) {
    Platform outer({.router_type = 1});
    Platform inner({.router_type = 2});
    const Platform::Scope outer_scope(outer);
    {
        const Platform::Scope inner_scope(inner);
        EXPECT_EQ(platform_get_router_type(), 2);
    }
    EXPECT_EQ(platform_get_router_type(), 1);
}

TEST(Platform, IsOutOfUseWhenItDies) {
    auto platform = std::make_unique<Platform>();
    const Platform::Scope scope(*platform);
    platform.reset();
    EXPECT_EQ(Platform::current(), nullptr);
}

struct QueryCase {
    Settings settings;
    int router_type;
    bool over_mgmt;
};

class APlatformQuery : public testing::TestWithParam<QueryCase> {};

TEST_P(APlatformQuery, IsAnsweredFromTheSettings) {
    Platform platform(GetParam().settings);
    const Platform::Scope scope(platform);
    EXPECT_EQ(platform_get_router_type(), GetParam().router_type);
    EXPECT_EQ(platform_supports_lldp_over_mgmt() != 0, GetParam().over_mgmt);
}

INSTANTIATE_TEST_SUITE_P(Settings, APlatformQuery,
                         testing::Values(QueryCase{{}, 0, true}, QueryCase{{.router_type = 7}, 7, true},
                                         QueryCase{{.lldp_over_mgmt = false}, 0, false}));

TEST(PlatformQueries, ClaimNothingWithoutAPlatform) {
    EXPECT_EQ(platform_get_router_type(), 0);
    EXPECT_EQ(platform_supports_lldp_over_mgmt(), 0);
}

} // namespace
} // namespace yfw::platform

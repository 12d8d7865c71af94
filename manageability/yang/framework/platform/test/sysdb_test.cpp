#include "platform/sysdb.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "fake_device.h"
#include "platform/platform.h"
#include "platform/status.h"
#include "yfw_map.h"

namespace yfw::platform {
namespace {

constexpr const char *global_path = "/cfg/gl/lldp/";
constexpr const char *interfaces_path = "/cfg/if/act/";
constexpr std::uint32_t plain = 0;
constexpr std::uint32_t searching = 4;

std::uint64_t bound(const char *path, std::uint32_t flags) {
    std::uint64_t connection = 0;
    EXPECT_EQ(_sysdb_bind(&connection, path, flags), status_ok);
    return connection;
}

class SystemDatabaseCalls : public testing::Test {
protected:
    test::FakeDevice device;
    Platform platform{{.device = &device}};
    Platform::Scope scope{platform};
    SystemDatabase &database = platform.system_database();

    // The paths that a search finds, or nothing when it fails.
    static std::optional<std::vector<std::string>> found(std::uint64_t connection, const char *pattern) {
        std::int32_t count = -1;
        void *list = nullptr;
        if (sysdb_find(connection, pattern, "", searching, &count, &list) != status_ok) {
            return std::nullopt;
        }
        std::vector<std::string> paths;
        const char *path = nullptr;
        while (sysdb_list_next(list, &path) == status_ok) {
            paths.emplace_back(path);
        }
        sysdb_list_free(list);
        EXPECT_EQ(static_cast<std::size_t>(count), paths.size());
        return paths;
    }
};

struct BindCase {
    const char *name;
    const char *path;
    std::uint32_t flags;
    terrno status;
};

class ABind : public testing::TestWithParam<BindCase> {};

TEST_P(ABind, OpensAConnectionOnlyToAKnownPath) {
    Platform platform;
    const Platform::Scope scope(platform);
    std::uint64_t connection = 42;
    EXPECT_EQ(_sysdb_bind(&connection, GetParam().path, GetParam().flags), GetParam().status);
    const bool opens = GetParam().status == status_ok;
    EXPECT_EQ(connection != 0, opens);
    EXPECT_EQ(platform.system_database().open_connections(), opens ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, ABind,
    testing::Values(BindCase{"ToTheGlobalConfiguration", global_path, plain, status_ok},
                    BindCase{"ToTheGlobalConfigurationForSearching", global_path, searching, status_ok},
                    BindCase{"ToTheInterfaces", interfaces_path, plain, status_ok},
                    BindCase{"ToTheInterfacesForSearching", interfaces_path, searching, status_ok},
                    BindCase{"ToAnotherPath", "/cfg/gl/cdp/", plain, status_unknown_path},
                    BindCase{"ToAPathWithoutItsEnd", "/cfg/gl/lldp", plain, status_unknown_path},
                    BindCase{"ToAnEmptyPath", "", plain, status_unknown_path},
                    BindCase{"ToNoPath", nullptr, plain, status_invalid_argument},
                    BindCase{"WithAnotherFlag", global_path, 1, status_invalid_argument},
                    BindCase{"WithMoreThanTheSearchFlag", global_path, 5, status_invalid_argument}),
    [](const auto &test_case) { return test_case.param.name; });

TEST_F(SystemDatabaseCalls, CountOpenConnections) {
    const std::uint64_t one = bound(global_path, plain);
    const std::uint64_t other = bound(global_path, plain);
    EXPECT_NE(one, other);
    EXPECT_EQ(database.open_connections(), 2U);
    EXPECT_EQ(_sysdb_unbind(one), status_ok);
    EXPECT_EQ(database.open_connections(), 1U);
    EXPECT_EQ(_sysdb_unbind(other), status_ok);
    EXPECT_EQ(database.open_connections(), 0U);
}

TEST_F(SystemDatabaseCalls, UnbindOnlyWhatIsBound) {
    const std::uint64_t connection = bound(global_path, plain);
    EXPECT_EQ(_sysdb_unbind(0), status_unknown_connection);
    EXPECT_EQ(_sysdb_unbind(connection + 1), status_unknown_connection);
    EXPECT_EQ(_sysdb_unbind(connection), status_ok);
    EXPECT_EQ(_sysdb_unbind(connection), status_unknown_connection);
}

TEST_F(SystemDatabaseCalls, TakeNoConnectionOfAnotherPlatform) {
    Platform other;
    std::uint64_t connection = 0;
    {
        const Platform::Scope inner(other);
        connection = bound(global_path, plain);
    }
    bound(global_path, plain);
    EXPECT_EQ(_sysdb_unbind(connection), status_unknown_connection);
}

struct ItemCase {
    const char *name;
    std::optional<bool> enabled;
    const char *path;
    const char *item;
    terrno status;
    std::optional<std::uint32_t> value;
};

class AnItem : public testing::TestWithParam<ItemCase> {};

TEST_P(AnItem, IsReadFromTheConfiguration) {
    test::FakeDevice device;
    device.global_enabled = GetParam().enabled;
    Platform platform({.device = &device});
    const Platform::Scope scope(platform);
    const void *data = "before";
    std::uint32_t count = 1;
    const terrno status = sysdb_item_get(bound(GetParam().path, plain), GetParam().item, &data, &count);
    EXPECT_EQ(status, GetParam().status);
    EXPECT_EQ(count, GetParam().value ? 1U : 0U);
    ASSERT_EQ(data != nullptr, GetParam().value.has_value());
    if (data != nullptr) {
        EXPECT_EQ(*static_cast<const std::uint32_t *>(data), *GetParam().value);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Items, AnItem,
    testing::Values(ItemCase{"EnableWhenOn", true, global_path, "enable", status_ok, 1U},
                    ItemCase{"EnableWhenOff", false, global_path, "enable", status_ok, 0U},
                    ItemCase{"EnableWhenNotConfigured", {}, global_path, "enable", status_no_such_item, {}},
                    ItemCase{"AnotherOne", true, global_path, "timer", status_no_such_item, {}},
                    ItemCase{"EnableOfTheInterfaces", true, interfaces_path, "enable", status_no_such_item, {}},
                    ItemCase{"Nameless", true, global_path, nullptr, status_invalid_argument, {}}),
    [](const auto &test_case) { return test_case.param.name; });

TEST_F(SystemDatabaseCalls, KeepAnItemsValueUntilTheUnbind) {
    const std::uint64_t connection = bound(global_path, plain);
    std::vector<std::pair<const void *, std::uint32_t>> read;
    for (const bool enabled : {true, false, true, false}) {
        device.global_enabled = enabled;
        const void *data = nullptr;
        std::uint32_t count = 1;
        ASSERT_EQ(sysdb_item_get(connection, "enable", &data, &count), status_ok);
        read.emplace_back(data, enabled ? 1 : 0);
    }
    for (int i = 0; i < 1000; ++i) { // other connections come and go
        bound(global_path, plain);
    }
    for (const auto &[data, value] : read) {
        EXPECT_EQ(*static_cast<const std::uint32_t *>(data), value);
    }
}

TEST_F(SystemDatabaseCalls, ReadNoItemOfAClosedConnection) {
    device.global_enabled = true;
    const std::uint64_t connection = bound(global_path, plain);
    _sysdb_unbind(connection);
    const void *data = "before";
    std::uint32_t count = 1;
    EXPECT_EQ(sysdb_item_get(connection, "enable", &data, &count), status_unknown_connection);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(count, 0U);
}

TEST_F(SystemDatabaseCalls, ReadNoItemWithoutAPlaceForIt) {
    device.global_enabled = true;
    const std::uint64_t connection = bound(global_path, plain);
    const void *data = "before";
    std::uint32_t none = 0;
    std::uint32_t one = 1;
    EXPECT_EQ(sysdb_item_get(connection, "enable", &data, &none), status_invalid_argument);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(sysdb_item_get(connection, "enable", nullptr, &one), status_invalid_argument);
    EXPECT_EQ(sysdb_item_get(connection, "enable", &data, nullptr), status_invalid_argument);
}

struct FindCase {
    const char *name;
    const char *pattern;
    std::vector<std::string> paths;
};

class ASearch : public SystemDatabaseCalls, public testing::WithParamInterface<FindCase> {};

TEST_P(ASearch, FindsTheConfiguredInterfacesThatMatch) {
    device.configured = {"GigabitEthernet0/0/0/1", "eth_1", "eth2"};
    device.interfaces = {"eth3"};
    EXPECT_EQ(found(bound(interfaces_path, searching), GetParam().pattern), GetParam().paths);
    EXPECT_EQ(database.open_lists(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Patterns, ASearch,
    testing::Values(
        FindCase{"ForAll", ".*/lldp/", {"GigabitEthernet0_0_0_1/lldp/", "eth2/lldp/", "eth%5F1/lldp/"}},
        FindCase{"ForSome", "eth[0-9]+/lldp/", {"eth2/lldp/"}},
        FindCase{"ForAlternatives", "(eth2|eth%5F1)/lldp/", {"eth2/lldp/", "eth%5F1/lldp/"}},
        FindCase{"ForAlternativesOfDifferentLength", "eth2|eth2/lldp/", {"eth2/lldp/"}},
        FindCase{"ForAPartOnly", "eth2", {}}, FindCase{"ForTheEndOnly", "/lldp/", {}},
        FindCase{"ForAnotherProtocol", ".*/cdp/", {}}, FindCase{"ForNothing", "", {}}),
    [](const auto &test_case) { return test_case.param.name; });

TEST_F(SystemDatabaseCalls, FindTheItemsOfTheGlobalConfiguration) {
    const std::uint64_t connection = bound(global_path, searching);
    EXPECT_EQ(found(connection, ".*"), std::vector<std::string>{});
    device.global_enabled = false;
    EXPECT_EQ(found(connection, ".*"), std::vector<std::string>{"enable"});
}

TEST_F(SystemDatabaseCalls, FindInterfacesOfEveryNumberAndLength) {
    for (int i = 0; i < 10000; ++i) {
        device.configured.insert("Ethernet0/0/" + std::to_string(i));
    }
    device.configured.insert(std::string(200000, 'x'));
    const auto paths = found(bound(interfaces_path, searching), ".*/lldp/");
    ASSERT_TRUE(paths);
    EXPECT_EQ(paths->size(), 10001U);
}

TEST_F(SystemDatabaseCalls, GiveAnEmptyListWhenNothingIsFound) {
    std::int32_t count = -1;
    void *list = nullptr;
    EXPECT_EQ(sysdb_find(bound(interfaces_path, searching), ".*/lldp/", "", searching, &count, &list),
              status_ok);
    EXPECT_EQ(count, 0);
    const char *path = "before";
    EXPECT_EQ(sysdb_list_next(list, &path), status_end_of_list);
    EXPECT_EQ(path, nullptr);
    sysdb_list_free(list);
}

TEST_F(SystemDatabaseCalls, KeepAListAsItWasWhateverChanges) {
    device.configured = {"eth1", "eth2"};
    const std::uint64_t connection = bound(interfaces_path, searching);
    std::int32_t count = -1;
    void *list = nullptr;
    ASSERT_EQ(sysdb_find(connection, ".*/lldp/", "", searching, &count, &list), status_ok);
    device.configured.clear();
    EXPECT_EQ(_sysdb_unbind(connection), status_ok);
    const char *first = nullptr;
    const char *second = nullptr;
    EXPECT_EQ(sysdb_list_next(list, &first), status_ok);
    EXPECT_EQ(sysdb_list_next(list, &second), status_ok);
    EXPECT_STREQ(first, "eth1/lldp/");
    EXPECT_STREQ(second, "eth2/lldp/");
    sysdb_list_free(list);
}

struct BadFindCase {
    const char *name;
    const char *path;
    std::uint32_t bind_flags;
    const char *pattern;
    const char *second_pattern;
    std::uint32_t mode;
    terrno status;
};

class ABadSearch : public testing::TestWithParam<BadFindCase> {};

TEST_P(ABadSearch, IsRefusedAndGivesNoList) {
    test::FakeDevice device;
    device.configured = {"eth1"};
    Platform platform({.device = &device});
    const Platform::Scope scope(platform);
    std::int32_t count = -1;
    void *list = &count;
    const std::uint64_t connection = bound(GetParam().path, GetParam().bind_flags);
    EXPECT_EQ(
        sysdb_find(connection, GetParam().pattern, GetParam().second_pattern, GetParam().mode, &count, &list),
        GetParam().status);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(platform.system_database().open_lists(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Searches, ABadSearch,
    testing::Values(
        BadFindCase{"OnAPlainConnection", interfaces_path, plain, ".*", "", searching, status_not_searchable},
        BadFindCase{"WithAnOpenBracket", interfaces_path, searching, "[", "", searching, status_bad_pattern},
        BadFindCase{"WithAnOpenGroup", interfaces_path, searching, "(eth", "", searching, status_bad_pattern},
        BadFindCase{"WithoutAPattern", interfaces_path, searching, nullptr, "", searching,
                    status_invalid_argument},
        BadFindCase{"WithASecondPattern", interfaces_path, searching, ".*", "x", searching,
                    status_invalid_argument},
        BadFindCase{"InAnotherMode", interfaces_path, searching, ".*", "", plain, status_invalid_argument}),
    [](const auto &test_case) { return test_case.param.name; });

TEST_F(SystemDatabaseCalls, SearchOnlyOpenConnections) {
    EXPECT_EQ(found(0, ".*"), std::nullopt);
    const std::uint64_t connection = bound(interfaces_path, searching);
    _sysdb_unbind(connection);
    std::int32_t count = -1;
    void *list = nullptr;
    EXPECT_EQ(sysdb_find(connection, ".*", "", searching, &count, &list), status_unknown_connection);
}

TEST_F(SystemDatabaseCalls, KnowNoListButTheirOwn) {
    int other = 0;
    const char *path = "before";
    EXPECT_EQ(sysdb_list_next(&other, &path), status_unknown_list);
    EXPECT_EQ(path, nullptr);
    EXPECT_EQ(sysdb_list_next(nullptr, &path), status_unknown_list);
    EXPECT_EQ(sysdb_list_next(nullptr, nullptr), status_invalid_argument);
    sysdb_list_free(&other);
    sysdb_list_free(nullptr);
}

TEST_F(SystemDatabaseCalls, LeaveNothingOfABrokenOffSearchBehindARequest) {
    device.configured = {"eth1"};
    const std::uint64_t kept = bound(global_path, plain);
    std::int32_t count = -1;
    void *list = nullptr;
    ASSERT_EQ(sysdb_find(bound(interfaces_path, searching), ".*", "", searching, &count, &list), status_ok);
    EXPECT_EQ(database.open_connections(), 2U);
    EXPECT_EQ(database.open_lists(), 1U);
    database.end_request();
    EXPECT_EQ(database.open_connections(), 1U);
    EXPECT_EQ(database.open_lists(), 0U);
    EXPECT_EQ(_sysdb_unbind(kept), status_ok);
}

TEST_F(SystemDatabaseCalls, FailWithoutADevice) {
    platform.settings().device = nullptr;
    const void *data = nullptr;
    std::uint32_t wanted = 1;
    std::int32_t count = -1;
    void *list = nullptr;
    const std::uint64_t connection = bound(interfaces_path, searching);
    EXPECT_EQ(sysdb_item_get(connection, "enable", &data, &wanted), status_no_device);
    EXPECT_EQ(sysdb_find(connection, ".*", "", searching, &count, &list), status_no_device);
}

TEST_F(SystemDatabaseCalls, FailWhenTheDeviceDoesNotAnswer) {
    device.broken = true;
    const void *data = "before";
    std::uint32_t wanted = 1;
    std::int32_t count = -1;
    void *list = nullptr;
    EXPECT_EQ(sysdb_item_get(bound(global_path, plain), "enable", &data, &wanted), status_internal);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(sysdb_find(bound(interfaces_path, searching), ".*", "", searching, &count, &list),
              status_internal);
    EXPECT_EQ(list, nullptr);
}

TEST(SystemDatabaseCallsWithoutAPlatform, Fail) {
    std::uint64_t connection = 42;
    const void *data = "before";
    std::uint32_t wanted = 1;
    std::int32_t count = -1;
    void *list = nullptr;
    const char *path = nullptr;
    EXPECT_EQ(_sysdb_bind(&connection, global_path, plain), status_no_platform);
    EXPECT_EQ(connection, 0U);
    EXPECT_EQ(_sysdb_bind(nullptr, global_path, plain), status_invalid_argument);
    EXPECT_EQ(_sysdb_unbind(1), status_no_platform);
    EXPECT_EQ(sysdb_item_get(1, "enable", &data, &wanted), status_no_platform);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(sysdb_find(1, ".*", "", searching, &count, &list), status_no_platform);
    EXPECT_EQ(sysdb_list_next(&count, &path), status_no_platform);
    sysdb_list_free(&count);
}

} // namespace
} // namespace yfw::platform

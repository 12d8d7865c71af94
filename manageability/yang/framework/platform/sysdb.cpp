#include "platform/sysdb.h"

#include <atomic>
#include <optional>
#include <type_traits>
#include <utility>

#include <regex.h>

#include "platform/interface_name.h"
#include "platform/platform.h"
#include "platform/status.h"
#include "yfw_map.h"

namespace yfw::platform {

namespace {

constexpr std::string_view global_lldp_path = "/cfg/gl/lldp/";
constexpr std::string_view interfaces_path = "/cfg/if/act/";
constexpr std::string_view enable_item = "enable";

// Per process, not per database, so that a number kept from another database is never taken for valid.
constinit std::atomic<std::uint64_t> last_connection{0};

// regcomp, not std::regex, whose matcher recurses once per character and overflows the stack on long paths.
class Pattern {
public:
    explicit Pattern(const char *text) : valid_(regcomp(&compiled_, text, REG_EXTENDED) == 0) {}
    ~Pattern() {
        if (valid_) {
            regfree(&compiled_);
        }
    }
    Pattern(const Pattern &) = delete;
    Pattern &operator=(const Pattern &) = delete;

    bool valid() const { return valid_; }

    // regexec reports the longest of the leftmost matches, so a match of the whole text would be the one
    // reported.
    bool matches_whole(const std::string &text) const {
        regmatch_t match{};
        return regexec(&compiled_, text.c_str(), 1, &match, 0) == 0 && match.rm_so == 0 &&
               static_cast<std::size_t>(match.rm_eo) == text.size();
    }

private:
    regex_t compiled_{};
    bool valid_;
};

} // namespace

terrno SystemDatabase::bind(std::string_view path, std::uint32_t flags, std::uint64_t *connection) {
    *connection = 0;
    if (flags != 0 && flags != sysdb_flag_search) {
        return status_invalid_argument;
    }
    if (path != global_lldp_path && path != interfaces_path) {
        return status_unknown_path;
    }
    const Root root = path == global_lldp_path ? Root::global_lldp : Root::interfaces;
    const std::uint64_t number = ++last_connection;
    connections_.emplace(number, Connection{.root = root, .searches = flags == sysdb_flag_search});
    *connection = number;
    return status_ok;
}

terrno SystemDatabase::unbind(std::uint64_t connection) {
    return connections_.erase(connection) == 0 ? status_unknown_connection : status_ok;
}

terrno SystemDatabase::get(const DeviceView &device, std::uint64_t connection, std::string_view item,
                           const std::uint32_t **value) const {
    *value = nullptr;
    const auto open = connections_.find(connection);
    if (open == connections_.end()) {
        return status_unknown_connection;
    }
    if (open->second.root != Root::global_lldp || item != enable_item) {
        return status_no_such_item;
    }
    const std::optional<bool> enabled = device.enabled_globally();
    if (!enabled) {
        return status_no_such_item;
    }
    *value = &open->second.values[*enabled ? 1 : 0];
    return status_ok;
}

std::vector<std::string> SystemDatabase::paths_below(Root root, const DeviceView &device) {
    std::vector<std::string> paths;
    if (root == Root::global_lldp) {
        if (device.enabled_globally()) {
            paths.emplace_back(enable_item);
        }
        return paths;
    }
    for (const std::string &name : device.configured_interfaces()) {
        paths.push_back(to_system_database_form(name) + "/lldp/");
    }
    return paths;
}

terrno SystemDatabase::find(const DeviceView &device, std::uint64_t connection, const char *pattern,
                            std::size_t *count, void **list) {
    *count = 0;
    *list = nullptr;
    const auto open = connections_.find(connection);
    if (open == connections_.end()) {
        return status_unknown_connection;
    }
    if (!open->second.searches) {
        return status_not_searchable;
    }
    const Pattern compiled(pattern);
    if (!compiled.valid()) {
        return status_bad_pattern;
    }
    auto found = std::make_unique<List>();
    found->paths = paths_below(open->second.root, device);
    std::erase_if(found->paths, [&](const std::string &path) { return !compiled.matches_whole(path); });
    List *opened = found.get();
    lists_.emplace(opened, std::move(found));
    *count = opened->paths.size();
    *list = opened;
    return status_ok;
}

terrno SystemDatabase::next(const void *list, const char **path) {
    *path = nullptr;
    const auto open = lists_.find(list);
    if (open == lists_.end()) {
        return status_unknown_list;
    }
    List &entries = *open->second;
    if (entries.next == entries.paths.size()) {
        return status_end_of_list;
    }
    *path = entries.paths[entries.next++].c_str();
    return status_ok;
}

void SystemDatabase::free_list(const void *list) {
    lists_.erase(list);
}

void SystemDatabase::end_request() {
    lists_.clear();
    std::erase_if(connections_, [](const auto &entry) { return entry.second.searches; });
}

} // namespace yfw::platform

namespace platform = yfw::platform;

namespace {

// Runs `body` on the current platform's database, and on its device if the body takes one.
template <class Body> terrno with_database(Body &&body) noexcept {
    platform::Platform *current = platform::Platform::current();
    if (current == nullptr) {
        return platform::status_no_platform;
    }
    if constexpr (std::is_invocable_v<Body, platform::SystemDatabase &>) {
        return platform::guarded([&] { return body(current->system_database()); });
    } else {
        const platform::DeviceView *device = current->settings().device;
        if (device == nullptr) {
            return platform::status_no_device;
        }
        return platform::guarded([&] { return body(current->system_database(), *device); });
    }
}

} // namespace

extern "C" {

terrno _sysdb_bind(uint64_t *connection, const char *path, uint32_t flags) {
    if (connection == nullptr) {
        return platform::status_invalid_argument;
    }
    *connection = 0;
    if (path == nullptr) {
        return platform::status_invalid_argument;
    }
    return with_database(
        [&](platform::SystemDatabase &database) { return database.bind(path, flags, connection); });
}

terrno _sysdb_unbind(uint64_t connection) {
    return with_database([&](platform::SystemDatabase &database) { return database.unbind(connection); });
}

terrno sysdb_item_get(uint64_t connection, const char *item, const void **data, uint32_t *count) {
    const uint32_t wanted = count == nullptr ? 0 : *count;
    if (data != nullptr) {
        *data = nullptr;
    }
    if (count != nullptr) {
        *count = 0;
    }
    if (item == nullptr || data == nullptr || wanted == 0) {
        return platform::status_invalid_argument;
    }
    return with_database([&](platform::SystemDatabase &database, const platform::DeviceView &device) {
        const uint32_t *value = nullptr;
        const terrno status = database.get(device, connection, item, &value);
        *data = value;
        *count = value == nullptr ? 0 : 1;
        return status;
    });
}

terrno sysdb_find(uint64_t connection, const char *pattern, const char *second_pattern, uint32_t mode,
                  int32_t *count, void **list) {
    if (count != nullptr) {
        *count = 0;
    }
    if (list != nullptr) {
        *list = nullptr;
    }
    const bool second_empty = second_pattern == nullptr || second_pattern[0] == '\0';
    if (pattern == nullptr || !second_empty || mode != platform::sysdb_flag_search || count == nullptr ||
        list == nullptr) {
        return platform::status_invalid_argument;
    }
    return with_database([&](platform::SystemDatabase &database, const platform::DeviceView &device) {
        std::size_t found = 0;
        const terrno status = database.find(device, connection, pattern, &found, list);
        *count = static_cast<int32_t>(found);
        return status;
    });
}

terrno sysdb_list_next(void *list, const char **path) {
    if (path == nullptr) {
        return platform::status_invalid_argument;
    }
    *path = nullptr;
    return with_database([&](platform::SystemDatabase &database) { return database.next(list, path); });
}

void sysdb_list_free(void *list) {
    with_database([&](platform::SystemDatabase &database) {
        database.free_list(list);
        return platform::status_ok;
    });
}

} // extern "C"

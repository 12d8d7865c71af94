// The system database: a view of the native configuration by path. It contains "/cfg/gl/lldp/" with the item
// "enable", and "/cfg/if/act/" with one path "<interface>/lldp/" for each interface with LLDP configuration
// (the interface name in its system-database form).
#ifndef PLATFORM_SYSDB_H
#define PLATFORM_SYSDB_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/device_view.h"
#include "ymap_status.h"

namespace yfw::platform {

inline constexpr std::uint32_t sysdb_flag_search = 4;

class SystemDatabase {
public:
    // *connection: a number never used before in this process. `flags` is 0 or sysdb_flag_search.
    terrno bind(std::string_view path, std::uint32_t flags, std::uint64_t *connection);
    terrno unbind(std::uint64_t connection);

    // *value stays valid and unchanged until the connection is unbound.
    terrno get(const DeviceView &device, std::uint64_t connection, std::string_view item,
               const std::uint32_t **value) const;

    // Finds the paths and items below the connection's path that the POSIX extended regular expression matches
    // as a whole, in the device's order. *list is valid until free_list, even if the connection is unbound.
    terrno find(const DeviceView &device, std::uint64_t connection, const char *pattern, std::size_t *count,
                void **list);

    // *path is valid as long as the list.
    terrno next(const void *list, const char **path);
    void free_list(const void *list);

    // Frees what an aborted request left behind: lists, and the connections used for searching. The others
    // stay, since a plug-in keeps one across requests on purpose.
    void end_request();

    std::size_t open_connections() const { return connections_.size(); }
    std::size_t open_lists() const { return lists_.size(); }

private:
    enum class Root { global_lldp, interfaces };

    struct Connection {
        Root root;
        bool searches;
        // The two possible values of an item; `get` returns a pointer to one of them.
        std::array<std::uint32_t, 2> values{0, 1};
    };

    struct List {
        std::vector<std::string> paths;
        std::size_t next = 0;
    };

    static std::vector<std::string> paths_below(Root root, const DeviceView &device);

    std::unordered_map<std::uint64_t, Connection> connections_; // node-based: elements do not move
    std::unordered_map<const void *, std::unique_ptr<List>> lists_;
};

} // namespace yfw::platform

#endif

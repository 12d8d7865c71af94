// Access control by the machine's user groups.
#ifndef YFW_DEVICE_ACCESS_GROUPS_H
#define YFW_DEVICE_ACCESS_GROUPS_H

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace yfw::access {

struct AccessGroups {
    std::string readers = "yfw-readers";
    std::string writers = "yfw-writers";
    std::optional<uid_t> owner; // also a writer: the user who started a private server
};

struct User {
    std::string name;
    bool may_write = false;
    std::vector<gid_t> groups; // primary and supplementary
};

// The names of the groups; those without a name are skipped.
std::vector<std::string> names_of(const std::vector<gid_t> &groups);

// The user at the other end of a Unix socket; nothing when the user is in neither group. Root is a writer.
std::optional<User> user_of_peer(int socket, const AccessGroups &groups);

// The user of this name; nothing when this machine does not know the user, or the user is in neither group.
// Root is a writer.
std::optional<User> user_named(const std::string &name, const AccessGroups &groups);

} // namespace yfw::access

#endif

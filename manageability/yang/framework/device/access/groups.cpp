#include "device/access/groups.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include <grp.h>
#include <pwd.h>
#include <sys/socket.h>

namespace yfw::access {
namespace {

// The functions of the C library that look users and groups up are not thread-safe.
std::mutex lookup;

std::vector<gid_t> groups_of(const passwd &user) {
    int count = 64;
    std::vector<gid_t> groups(static_cast<size_t>(count));
    if (getgrouplist(user.pw_name, user.pw_gid, groups.data(), &count) < 0) {
        groups.resize(static_cast<size_t>(count));
        getgrouplist(user.pw_name, user.pw_gid, groups.data(), &count);
    }
    groups.resize(static_cast<size_t>(count));
    return groups;
}

bool belongs_to(const User &user, const std::string &name) {
    const group *found = getgrnam(name.c_str());
    return found != nullptr &&
           std::find(user.groups.begin(), user.groups.end(), found->gr_gid) != user.groups.end();
}

// `entry`: NULL for a user whom the machine does not know.
std::optional<User> user_of(const passwd *entry, const std::string &name, uid_t number,
                            const AccessGroups &groups) {
    User user{name, false, {}};
    if (entry != nullptr)
        user.groups = groups_of(*entry);
    user.may_write = number == 0 || number == groups.owner || belongs_to(user, groups.writers);
    return user.may_write || belongs_to(user, groups.readers) ? std::optional(user) : std::nullopt;
}

} // namespace

std::vector<std::string> names_of(const std::vector<gid_t> &groups) {
    const std::lock_guard<std::mutex> guard(lookup);
    std::vector<std::string> names;
    for (const gid_t number : groups)
        if (const group *found = getgrgid(number))
            names.emplace_back(found->gr_name);
    return names;
}

std::optional<User> user_of_peer(int socket, const AccessGroups &groups) {
    ucred peer{};
    socklen_t length = sizeof peer;
    if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0)
        return std::nullopt;
    const std::lock_guard<std::mutex> guard(lookup);
    const passwd *entry = getpwuid(peer.uid);
    return user_of(entry, entry != nullptr ? entry->pw_name : std::to_string(peer.uid), peer.uid, groups);
}

std::optional<User> user_named(const std::string &name, const AccessGroups &groups) {
    const std::lock_guard<std::mutex> guard(lookup);
    const passwd *entry = getpwnam(name.c_str());
    const bool is_known = entry != nullptr && name == entry->pw_name; // not only up to a NUL in it
    return is_known ? user_of(entry, name, entry->pw_uid, groups) : std::nullopt;
}

} // namespace yfw::access

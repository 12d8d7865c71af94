#include "device/access/groups.h"

#include <algorithm>
#include <vector>

#include <grp.h>
#include <pwd.h>
#include <sys/socket.h>

namespace yfw::access {
namespace {

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

} // namespace

std::vector<std::string> names_of(const std::vector<gid_t> &groups) {
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
    const passwd *entry = getpwuid(peer.uid);
    User user{entry != nullptr ? entry->pw_name : std::to_string(peer.uid), false, {}};
    if (entry != nullptr)
        user.groups = groups_of(*entry);
    user.may_write = peer.uid == 0 || peer.uid == groups.owner || belongs_to(user, groups.writers);
    return user.may_write || belongs_to(user, groups.readers) ? std::optional(user) : std::nullopt;
}

} // namespace yfw::access

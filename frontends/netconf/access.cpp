#include "frontends/netconf/access.h"

#include <algorithm>
#include <vector>

#include <grp.h>
#include <pwd.h>
#include <sys/socket.h>

namespace yfw::netconf {
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

bool belongs_to(const std::vector<gid_t> &groups, const std::string &name) {
    const group *found = getgrnam(name.c_str());
    return found != nullptr && std::find(groups.begin(), groups.end(), found->gr_gid) != groups.end();
}

} // namespace

std::optional<User> user_of_peer(int socket, const AccessGroups &groups) {
    ucred peer{};
    socklen_t length = sizeof peer;
    if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0)
        return std::nullopt;
    const passwd *entry = getpwuid(peer.uid);
    const std::string name = entry != nullptr ? entry->pw_name : std::to_string(peer.uid);
    if (peer.uid == 0 || peer.uid == groups.owner)
        return User{name, true};
    if (entry == nullptr)
        return std::nullopt;
    const std::vector<gid_t> member = groups_of(*entry);
    if (belongs_to(member, groups.writers))
        return User{name, true};
    if (belongs_to(member, groups.readers))
        return User{name, false};
    return std::nullopt;
}

} // namespace yfw::netconf

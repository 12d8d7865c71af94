// The double's implementation of the platform calls outside the framework.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "recording_double.h"

using oclldp_test::contract;

namespace {

std::string show(const char *text) {
    return text == nullptr ? "NULL" : text;
}

std::string answer_or_same(const std::map<std::string, std::string> &table, const char *name) {
    const auto found = table.find(show(name));
    return found == table.end() ? show(name) : found->second;
}

} // namespace

extern "C" {

void *yfw_ocifmgr_im_conn = &yfw_ocifmgr_im_conn;

int access(const char *path, int mode) noexcept {
    if (std::strncmp(path, "/pkg/", 5) != 0)
        return static_cast<int>(syscall(SYS_faccessat, AT_FDCWD, path, mode));
    contract().record("access", std::string(path) + ", " + std::to_string(mode));
    if (contract().library_readable)
        return 0;
    errno = ENOENT;
    return -1;
}

int clock_gettime(clockid_t clock, timespec *time) noexcept {
    if (clock != CLOCK_REALTIME || !contract().wall_clock)
        return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    time->tv_sec = contract().wall_clock->first;
    time->tv_nsec = contract().wall_clock->second;
    return 0;
}

terrno _sysdb_bind(uint64_t *connection, const char *path, uint32_t flags) {
    const auto ordered = contract().record("_sysdb_bind", show(path) + ", " + std::to_string(flags));
    if (ordered)
        return *ordered;
    *connection = contract().sysdb_next_connection++;
    contract().connections[*connection] = show(path);
    return 0;
}

terrno _sysdb_unbind(uint64_t connection) {
    const auto ordered = contract().record("_sysdb_unbind", std::to_string(connection));
    if (ordered)
        return *ordered;
    return contract().connections.erase(connection) == 1 ? 0 : 9;
}

terrno sysdb_item_get(uint64_t connection, const char *item, const void **data, uint32_t *count) {
    const auto ordered = contract().record("sysdb_item_get", std::to_string(connection) + ", " + show(item) +
                                                                 ", " + std::to_string(*count));
    *data = nullptr;
    if (ordered)
        return *ordered;
    const auto found = contract().sysdb_items.find(show(item));
    if (found == contract().sysdb_items.end())
        return contract().sysdb_item_missing;
    if (found->second.status != 0)
        return found->second.status;
    *count = found->second.value ? 1 : 0;
    if (found->second.value)
        *data = &*found->second.value;
    return 0;
}

terrno sysdb_find(uint64_t connection, const char *pattern, const char *second_pattern, uint32_t mode,
                  int32_t *count, void **list) {
    const auto ordered =
        contract().record("sysdb_find", std::to_string(connection) + ", " + show(pattern) + ", " +
                                            show(second_pattern) + ", " + std::to_string(mode));
    if (ordered)
        return *ordered;
    *count = static_cast<int32_t>(contract().sysdb_paths.size());
    *list = new char;
    contract().lists[*list] = 0;
    return 0;
}

terrno sysdb_list_next(void *list, const char **path) {
    const auto ordered = contract().record("sysdb_list_next", "");
    if (ordered)
        return *ordered;
    const auto found = contract().lists.find(list);
    if (found == contract().lists.end() || found->second >= contract().sysdb_paths.size())
        return 3;
    *path = contract().sysdb_paths[found->second++].c_str();
    return 0;
}

void sysdb_list_free(void *list) {
    contract().record("sysdb_list_free", "");
    if (contract().lists.erase(list) == 1)
        delete static_cast<char *>(list);
}

terrno imc_interface_find(void *connection, uint32_t count, imc_find_request *request, uint32_t flags,
                          uint32_t *answered) {
    oclldp_test::InterfaceFind find{.connection = connection, .names = {}, .flags = flags};
    std::string names;
    for (uint32_t entry = 0; entry < count; ++entry) {
        find.names.emplace_back(request[entry].name);
        names += (entry == 0 ? "" : " ") + find.names.back();
    }
    contract().interface_finds.push_back(find);
    const auto ordered = contract().record("imc_interface_find",
                                           std::to_string(count) + ", " + names + ", " + std::to_string(flags));
    if (ordered)
        return *ordered;
    for (uint32_t entry = 0; entry < count; ++entry) {
        const auto known = contract().imc_entry_status.find(request[entry].name);
        if (request[entry].status != nullptr)
            *request[entry].status = known == contract().imc_entry_status.end() ? 0 : known->second;
        if (request[entry].handle != nullptr)
            *request[entry].handle = entry + 1;
    }
    if (answered != nullptr)
        *answered = contract().imc_answered.value_or(count);
    return 0;
}

terrno imc_display_namestring(const char *name, char *display, size_t size) {
    const auto ordered = contract().record("imc_display_namestring", show(name) + ", " + std::to_string(size));
    if (ordered)
        return *ordered;
    std::snprintf(display, size, "%s", answer_or_same(contract().display_names, name).c_str());
    return 0;
}

terrno convert_ifname_ifentry(char *out, const char *ifname) {
    const auto ordered = contract().record("convert_ifname_ifentry", show(ifname));
    if (ordered)
        return *ordered;
    std::snprintf(out, IMC_IFENTRY_SIZE, "%s", answer_or_same(contract().ifentry_names, ifname).c_str());
    return 0;
}

int platform_get_router_type(void) {
    contract().record("platform_get_router_type", "");
    return contract().router_type;
}

int platform_supports_lldp_over_mgmt(void) {
    contract().record("platform_supports_lldp_over_mgmt", "");
    return contract().lldp_over_mgmt;
}

uint64_t fts_get_stamp_fast(void) {
    contract().record("fts_get_stamp_fast", "");
    return contract().stamp_ns;
}

} // extern "C"

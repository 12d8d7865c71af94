#include "edit_interposer.h"

#include <cerrno>

// The real operations, which this program renames.
extern "C" {
terrno host_add_path_flagged(yfw_map_ctx ctx, tidl_yfw_datatree *parent, const char *path, const char *ns,
                             const char *value, const tidl_yfw_datatree *source, tidl_yfw_datatree **slot,
                             uint32_t list_entry, uint32_t flags);
terrno host_update_current_list_node(yfw_map_ctx ctx, const char *list_path);
terrno host_check_oc_leafref(yfw_map_ctx ctx, const char *list_path, const char *container,
                             const char *key_name, const tidl_yfw_datatree *list_node);
int host_access(const char *path, int mode) noexcept;
terrno host_sysdb_bind(uint64_t *connection, const char *path, uint32_t flags);
terrno host_sysdb_unbind(uint64_t connection);
terrno host_sysdb_item_get(uint64_t connection, const char *item, const void **data, uint32_t *count);
terrno host_sysdb_find(uint64_t connection, const char *pattern, const char *second_pattern, uint32_t mode,
                       int32_t *count, void **list);
terrno host_sysdb_list_next(void *list, const char **path);
void host_sysdb_list_free(void *list);
}

namespace yfw::device::test {

void Interposer::reset() {
    *this = Interposer();
}

void Interposer::fail(Call call, int nth, terrno status) {
    failing_ = call;
    nth_ = nth;
    status_ = status;
}

int Interposer::calls(Call call) const {
    const auto found = calls_.find(call);
    return found == calls_.end() ? 0 : found->second;
}

terrno Interposer::enter(Call call) {
    const int number = calls_[call]++;
    return call == failing_ && (nth_ < 0 || nth_ == number) ? status_ : 0;
}

Interposer &interposer() {
    static Interposer one;
    return one;
}

namespace {

// Fails if this call is due to fail; otherwise passes it on.
template <class Operation, class... Arguments>
terrno guarded(Call call, Operation operation, Arguments... arguments) {
    const terrno status = interposer().enter(call);
    return status != 0 ? status : operation(arguments...);
}

// Reads during an edit are not intercepted.
bool is_edit(yfw_map_ctx ctx) {
    const uint32_t kind = ctx->req_ctx->request->req_type;
    return kind != YMAP_REQ_GET && kind != YMAP_REQ_GET_CONFIG;
}

template <class Operation, class... Arguments>
terrno guarded_in_edit(Call call, Operation operation, yfw_map_ctx ctx, Arguments... arguments) {
    return is_edit(ctx) ? guarded(call, operation, ctx, arguments...) : operation(ctx, arguments...);
}

} // namespace
} // namespace yfw::device::test

using yfw::device::test::Call;
using yfw::device::test::guarded;
using yfw::device::test::guarded_in_edit;
using yfw::device::test::interposer;
using yfw::device::test::is_edit;

terrno yfw_map_datatree_add_path_flagged(yfw_map_ctx ctx, tidl_yfw_datatree *parent, const char *path,
                                         const char *ns, const char *value, const tidl_yfw_datatree *source,
                                         tidl_yfw_datatree **slot, uint32_t list_entry, uint32_t flags) {
    if (is_edit(ctx))
        interposer().added.emplace_back(path);
    return guarded_in_edit(Call::add, host_add_path_flagged, ctx, parent, path, ns, value, source, slot,
                           list_entry, flags);
}

terrno yfw_map_update_current_list_node(yfw_map_ctx ctx, const char *list_path) {
    return guarded_in_edit(Call::list_node, host_update_current_list_node, ctx, list_path);
}

terrno yfw_map_check_oc_leafref(yfw_map_ctx ctx, const char *list_path, const char *container,
                                const char *key_name, const tidl_yfw_datatree *list_node) {
    return guarded_in_edit(Call::leafref, host_check_oc_leafref, ctx, list_path, container, key_name,
                           list_node);
}

// Replaces the C library's function, as the platform does, and may be called before a sanitizer's runtime has
// started: for files other than the library it calls nothing that is instrumented.
#define YFW_UNSANITIZED __attribute__((no_sanitize("address", "undefined")))

static YFW_UNSANITIZED bool is_the_library(const char *path) noexcept {
    const char *library = "/pkg/lib/libsysdb.so";
    while (*library != '\0' && *path == *library) {
        ++path;
        ++library;
    }
    return *path == *library;
}

extern "C" YFW_UNSANITIZED int access(const char *path, int mode) noexcept {
    const char *const volatile unchecked = path; // <unistd.h> declares it nonnull
    const char *const checked = unchecked;
    if (checked == nullptr || !is_the_library(checked) || interposer().enter(Call::library) == 0)
        return host_access(checked, mode);
    errno = ENOENT;
    return -1;
}

terrno _sysdb_bind(uint64_t *connection, const char *path, uint32_t flags) {
    return guarded(Call::bind, host_sysdb_bind, connection, path, flags);
}

terrno _sysdb_unbind(uint64_t connection) {
    return guarded(Call::unbind, host_sysdb_unbind, connection);
}

terrno sysdb_item_get(uint64_t connection, const char *item, const void **data, uint32_t *count) {
    return guarded(Call::item, host_sysdb_item_get, connection, item, data, count);
}

terrno sysdb_find(uint64_t connection, const char *pattern, const char *second_pattern, uint32_t mode,
                  int32_t *count, void **list) {
    return guarded(Call::find, host_sysdb_find, connection, pattern, second_pattern, mode, count, list);
}

terrno sysdb_list_next(void *list, const char **path) {
    return guarded(Call::next, host_sysdb_list_next, list, path);
}

void sysdb_list_free(void *list) {
    interposer().enter(Call::free_list);
    host_sysdb_list_free(list);
}

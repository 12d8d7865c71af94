// The framework's side of the contract: trees and paths. The plug-in calls these by name. They must not throw.
#include <cstring>
#include <new>

#include "host/host_status.h"
#include "host/request_context.h"

namespace {

using yfw::host::RequestContext;
using yfw::host::TreeOwner;

TreeOwner *owner_of(tidl_yfw_datatree *node) {
    return node != nullptr ? static_cast<TreeOwner *>(node->framework_private) : nullptr;
}

// Wraps an operation that may run out of memory.
template <class Operation> terrno guarded(Operation &&operation) noexcept {
    try {
        return operation();
    } catch (const std::bad_alloc &) {
        return YMAP_ERR_NO_MEMORY;
    } catch (...) {
        return yfw::host::status_bad_argument;
    }
}

bool carries_delete(const tidl_yfw_datatree &node) {
    return node.operation == YFW_OP_DELETE || node.operation == YFW_OP_REMOVE;
}

} // namespace

int yfw_map_do_these_match(const char *a, const char *b) {
    return a != nullptr && b != nullptr && std::strcmp(a, b) == 0 ? 1 : 0;
}

void yfw_map_add_to_node_hierarchy(yfw_map_ctx ctx, const tidl_yfw_datatree *node, uint32_t) {
    guarded([&] {
        RequestContext::of(ctx).hierarchy().push(node);
        return YMAP_OK;
    });
}

void yfw_map_remove_from_node_hierarchy(yfw_map_ctx ctx, const tidl_yfw_datatree *node) {
    RequestContext::of(ctx).hierarchy().pop(node);
}

int yfw_map_is_request_delete(const tidl_yfw_datatree *node) {
    return node != nullptr && carries_delete(*node) ? 1 : 0;
}

int yfw_map_is_request_add(yfw_map_ctx ctx, const tidl_yfw_datatree *node) {
    return node != nullptr && RequestContext::of(ctx).is_edit() && !carries_delete(*node) ? 1 : 0;
}

void yfw_oc_error_path(yfw_map_ctx ctx) {
    guarded([&] {
        RequestContext::of(ctx).record_error_path();
        return YMAP_OK;
    });
}

terrno yfw_map_datatree_add_path_flagged(yfw_map_ctx, tidl_yfw_datatree *parent, const char *path,
                                         const char *ns, const char *value, const tidl_yfw_datatree *source,
                                         tidl_yfw_datatree **slot, uint32_t list_entry, uint32_t flags) {
    TreeOwner *owner = owner_of(parent);
    if (owner == nullptr || path == nullptr)
        return yfw::host::status_bad_argument;
    return guarded([&] { return owner->add(*parent, {path, ns, value, source, slot, list_entry, flags}); });
}

terrno yfw_map_get_node_info(yfw_map_ctx ctx, const char *path, const char *leaf, const char **value) {
    *value = RequestContext::of(ctx).hierarchy().value(path, leaf);
    return YMAP_OK;
}

terrno yfw_map_search_or_add_list(yfw_map_ctx, tidl_yfw_datatree *parent, tidl_yfw_datatree **slot,
                                  const char *list_path, const char *key_value, const char *key_name,
                                  const char *) {
    TreeOwner *owner = owner_of(parent);
    if (owner == nullptr || list_path == nullptr || key_value == nullptr || key_name == nullptr)
        return yfw::host::status_bad_argument;
    return guarded([&]() -> terrno {
        tidl_yfw_datatree *entry = owner->find_or_add_entry(*parent, list_path, key_name, key_value);
        if (slot != nullptr)
            *slot = entry;
        return entry != nullptr ? YMAP_OK : yfw::host::status_unknown_path;
    });
}

terrno yfw_map_update_current_list_node(yfw_map_ctx ctx, const char *list_path) {
    if (list_path == nullptr)
        return yfw::host::status_bad_argument;
    // A request that maps a whole subtree has no node there; this is no failure.
    RequestContext::of(ctx).hierarchy().select_list_entry(list_path);
    return YMAP_OK;
}

terrno yfw_map_copy_trim_path_list_ctx(yfw_map_ctx ctx, const char *path) {
    if (path == nullptr)
        return yfw::host::status_bad_argument;
    return guarded([&] {
        RequestContext::of(ctx).trimmed_paths().emplace_back(path);
        return YMAP_OK;
    });
}

// An entry is listed once for as long as it is walked; the output entry in hand comes back when it is dropped.
terrno yfw_add_to_output_list_ctx(yfw_map_ctx ctx, const tidl_yfw_datatree *, tidl_yfw_datatree *) {
    return guarded([&] {
        yfw_output_list_ctx &list = ctx->req_ctx->output_list;
        RequestContext::of(ctx).saved_output_entries().push_back(list.current_list_node);
        list.depth++;
        return YMAP_OK;
    });
}

terrno yfw_remove_from_output_list_ctx(yfw_map_ctx ctx, const tidl_yfw_datatree *, tidl_yfw_datatree *) {
    auto &saved = RequestContext::of(ctx).saved_output_entries();
    if (saved.empty())
        return yfw::host::status_empty_stack;
    yfw_output_list_ctx &list = ctx->req_ctx->output_list;
    list.current_list_node = saved.back();
    list.depth--;
    saved.pop_back();
    return YMAP_OK;
}

terrno yfw_map_check_oc_leafref(yfw_map_ctx, const char *, const char *container, const char *key_name,
                                const tidl_yfw_datatree *list_node) {
    using yfw::host::find_child;
    const tidl_yfw_datatree *key = find_child(*list_node, key_name);
    const tidl_yfw_datatree *below = find_child(*list_node, container);
    const tidl_yfw_datatree *target = below != nullptr ? find_child(*below, key_name) : nullptr;
    if (key == nullptr || key->value == nullptr || target == nullptr || target->value == nullptr)
        return YMAP_OK;
    return std::strcmp(key->value, target->value) == 0 ? YMAP_OK : yfw::host::status_leafref_mismatch;
}

terrno yfw_map_util_itree_stack_push(yfw_map_ctx ctx, tidl_yfw_datatree *entries, uint32_t count,
                                     yfw_map_callback callback) {
    return guarded([&] {
        RequestContext::of(ctx).entry_stack().push_back({entries, count, callback});
        return YMAP_OK;
    });
}

terrno yfw_map_util_itree_stack_pop(yfw_map_ctx ctx) {
    auto &stack = RequestContext::of(ctx).entry_stack();
    if (stack.empty())
        return yfw::host::status_empty_stack;
    stack.pop_back();
    return YMAP_OK;
}

terrno yfw_map_util_itree_stack_peak(yfw_map_ctx ctx, yfw_map_itree_item *item) {
    const auto &stack = RequestContext::of(ctx).entry_stack();
    if (stack.empty())
        return yfw::host::status_empty_stack;
    *item = stack.back();
    return YMAP_OK;
}

uint32_t yfw_map_util_itree_stack_size(yfw_map_ctx ctx) {
    return static_cast<uint32_t>(RequestContext::of(ctx).entry_stack().size());
}

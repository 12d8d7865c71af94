#include "oq_walker.h"

#include "namespaces.h"
#include "tree.h"
#include "walk_state.h"

namespace oclldp {
namespace {

// ANDed with the walk flags, on purpose: this clears bit 0x1 and every other bit outside the mask.
constexpr uint32_t walk_flags_mask = 0x11111110;
constexpr uint32_t leaf_kinds = YFW_WALK_SELECTION_LEAF | YFW_WALK_CONTENT_MATCH_LEAF;

enum list_entry_state : uint32_t { entry_plain = 0, entry_deleted_whole = 1, entry_deleted_by_key = 2 };

bool edit_requires_key(uint32_t kind) {
    return kind == YMAP_REQ_EDIT_ONE_KEY || kind == YMAP_REQ_EDIT_VALUED_KEY ||
           kind == YMAP_REQ_EDIT_ONE_KEY_ALSO;
}

void mark(const node *n, uint32_t marker) {
    writable(n)->hierarchy_marker = marker;
    writable(n)->framework_flags |= YFW_FW_HAS_MARKER;
}

void mark_key(const node *n) {
    writable(n)->key_byte = 1;
    writable(n)->node_flags |= YFW_NODE_IS_KEY;
}

void detach_children(const node *n) {
    node *w = writable(n);
    w->children = nullptr;
    w->child_count = 0;
    w->node_flags &= static_cast<uint16_t>(~YFW_NODE_CHILDREN_VALID);
}

void restore_children(const node *n, const node &saved) {
    node *w = writable(n);
    w->children = saved.children;
    w->child_count = saved.child_count;
    w->node_flags |= static_cast<uint16_t>(saved.node_flags & YFW_NODE_CHILDREN_VALID);
}

// Keeps `in` on the node hierarchy while it is walked, unless a whole subtree above it is being mapped.
class hierarchy_entry {
public:
    hierarchy_entry(yfw_map_ctx ctx, const node *in, uint32_t kind, uint32_t marker) : ctx_(ctx), in_(in) {
        yfw_req_ctx &r = walk_state::of(ctx);
        if (r.map_all == 1)
            return;
        yfw_map_add_to_node_hierarchy(ctx, in, kind);
        mark(in, marker);
        if (is_read(ctx))
            r.walk_flags &= walk_flags_mask;
    }
    ~hierarchy_entry() {
        if (walk_state::of(ctx_).map_all != 1)
            yfw_map_remove_from_node_hierarchy(ctx_, in_);
    }
    hierarchy_entry(const hierarchy_entry &) = delete;
    hierarchy_entry &operator=(const hierarchy_entry &) = delete;

private:
    yfw_map_ctx ctx_;
    const node *in_;
};

// How far a pass came. `done`: the node callback answered YMAP_STS_SUBTREE_DONE. Only there does this status
// mean a handled subtree; what a child or the framework returns goes up as it is.
struct pass_result {
    terrno status = YMAP_OK;
    bool done = false;

    bool ok() const { return status == YMAP_OK && !done; }
};

pass_result answer_of_callback(terrno status) {
    return status == YMAP_STS_SUBTREE_DONE ? pass_result{.done = true} : pass_result{.status = status};
}

// The node callback handled the subtree: the walker stops and succeeds, without an exit trace on purpose.
terrno subtree_done(frame &f) {
    f.silent_end = true;
    return YMAP_OK;
}

// ---- children ------------------------------------------------------------------------------------------

const oq_child *find_child(std::span<const oq_child> table, const char *tag, bool get) {
    for (const oq_child &child : table)
        if (match(tag, child.tag))
            return child.is_get_only() && !get ? nullptr : &child;
    return nullptr;
}

terrno unknown_child(frame &f, const node *child, node *out, yfw_map_callback augments) {
    if (!match(oc_ns, child->ns))
        return augments(f.ctx, child, out);
    YMAP_ERROR_AT(f, slot_unsupported_tag, "Unsupported tag is specified in the request.");
    if (is_read(f.ctx))
        return YMAP_OK;
    report_failing_node(f.ctx, child->name);
    return YMAP_ERR_UNSUPPORTED_TAG;
}

terrno container_child(frame &f, const oq_container &table, const node *child, node *out) {
    if (child->name == nullptr)
        return no_tag(f);
    if (const oq_child *known = find_child(table.children, child->name, is_get(f.ctx)))
        return known->walker(f.ctx, child, out);
    return unknown_child(f, child, out, table.augments);
}

// The request names only leaves to match, so the whole container is wanted.
void note_content_match(yfw_req_ctx &r) {
    if ((r.walk_flags & leaf_kinds) == YFW_WALK_CONTENT_MATCH_LEAF)
        r.walk_flags = (r.walk_flags | YFW_WALK_WHOLE_SUBTREE) & ~leaf_kinds;
}

// ---- whole subtrees ------------------------------------------------------------------------------------

// Calls every child walker with the container node itself, even after a failure; returns the first nonzero
// status.
terrno map_whole(frame &f, std::span<const oq_child> children, yfw_map_callback augments, const node *in,
                 node *out) {
    yfw_req_ctx &r = walk_state::of(f.ctx);
    const uint32_t map_all_before = r.map_all;
    const uint16_t flags_before = in->node_flags;
    const bool becomes_remove = is_delete(in) && in->operation == YFW_OP_DELETE;
    if (becomes_remove)
        change_operation(in, YFW_OP_REMOVE);
    r.map_all = 1;

    terrno first = YMAP_OK;
    const auto keep_first = [&first](terrno status) { first = first != YMAP_OK ? first : status; };
    for (const oq_child &child : children)
        if (!child.is_key() && (!child.is_get_only() || is_get(f.ctx)))
            keep_first(child.walker(f.ctx, in, out));
    keep_first(augments(f.ctx, in, out));

    if (becomes_remove) {
        writable(in)->operation = YFW_OP_DELETE;
        writable(in)->node_flags = flags_before;
    }
    r.map_all = map_all_before;
    r.walk_flags &= walk_flags_mask & ~leaf_kinds;
    return first;
}

// ---- replace -------------------------------------------------------------------------------------------

enum class replaced_children { detached, kept };

// Runs `pass` twice: first to remove the existing data, then to merge the request's. A pass that is done leaves
// everything as it is, including the replace marker.
template <class Pass>
pass_result in_two_passes(frame &f, const node *in, replaced_children children, Pass &&pass) {
    yfw_req_ctx &r = walk_state::of(f.ctx);
    const node saved = *in;
    change_operation(in, YFW_OP_REMOVE);
    r.request_flags |= YFW_REQ_REPLACE_DELETE_PASS;
    r.replace_marker = 1;
    if (children == replaced_children::detached)
        detach_children(in);

    pass_result result = pass();
    if (result.done)
        return result;
    change_operation(in, YFW_OP_NONE);
    r.request_flags |= YFW_REQ_REPLACE_MERGE_PASS;
    r.request_flags &= ~static_cast<uint32_t>(YFW_REQ_REPLACE_DELETE_PASS);
    if (children == replaced_children::detached)
        restore_children(in, saved);

    if (result.ok())
        result = pass();
    if (result.done)
        return result;
    r.request_flags &= ~static_cast<uint32_t>(YFW_REQ_REPLACE_DELETE_PASS | YFW_REQ_REPLACE_MERGE_PASS);
    r.replace_marker = 0;
    return result;
}

// One pass, or two for a replace.
template <class Pass> pass_result in_passes(frame &f, const node *in, replaced_children children, Pass &&pass) {
    return in->operation == YFW_OP_REPLACE ? in_two_passes(f, in, children, pass) : pass();
}

// ---- containers ----------------------------------------------------------------------------------------

pass_result container_pass(frame &f, const oq_container &table, const node *in, child_view children,
                           node *out) {
    const pass_result answer = answer_of_callback(table.node_callback(f.ctx, in, children.count, out));
    if (answer.done)
        return answer;
    terrno status = answer.status;
    if (status == YMAP_OK)
        for (const node &child : children)
            if (status = container_child(f, table, &child, out); status != YMAP_OK)
                break;

    yfw_req_ctx &r = walk_state::of(f.ctx);
    note_content_match(r);
    const bool whole = children.count == 0 || (r.walk_flags & YFW_WALK_WHOLE_SUBTREE) != 0;
    if (status == YMAP_OK && whole && (is_read(f.ctx) || is_delete(in)))
        status = map_whole(f, table.whole, table.augments, in, out);
    return {.status = status};
}

// ---- lists ---------------------------------------------------------------------------------------------

struct key_scan {
    uint32_t keys = 0;
    uint32_t valued_keys = 0;
    bool others = false;
};

bool is_key_of(const oq_list &table, const char *tag) {
    for (const oq_child &child : table.children)
        if (child.is_key() && match(tag, child.tag))
            return true;
    return false;
}

bool has_non_key_child(const oq_list &table, child_view children) {
    for (const node &child : children)
        if (!is_key_of(table, child.name))
            return true;
    return false;
}

terrno scan_keys(frame &f, const oq_list &table, const node *in, child_view children, key_scan &found) {
    for (const node &child : children) {
        if (!is_key_of(table, child.name)) {
            found.others = true;
            continue;
        }
        if (edit_requires_key(request_kind(f.ctx))) {
            const terrno status = yfw_map_check_oc_leafref(f.ctx, table.path, "config", child.name, in);
            if (status != YMAP_OK) {
                YMAP_ERROR_AT(f, slot_leafref, "leafref value check fail");
                return status;
            }
        }
        mark_key(&child);
        found.keys++;
        found.valued_keys += has_text(child.value) ? 1 : 0;
    }
    return YMAP_OK;
}

bool keys_are_usable(uint32_t kind, const key_scan &found) {
    if (kind == YMAP_REQ_EDIT_ONE_KEY || kind == YMAP_REQ_EDIT_ONE_KEY_ALSO)
        return found.valued_keys == 1 && found.keys < 2;
    return found.keys < 2 && (kind != YMAP_REQ_EDIT_VALUED_KEY || found.valued_keys != 0);
}

terrno check_keys(frame &f, const oq_list &table, const node *in, child_view children, key_scan &found) {
    const yfw_req_ctx &r = walk_state::of(f.ctx);
    if (r.map_all == 1 || r.list_entry_state != entry_plain)
        return YMAP_OK;
    const terrno status = scan_keys(f, table, in, children, found);
    if (status != YMAP_OK || !table.key_rules || children.count == 0)
        return status;
    if (keys_are_usable(request_kind(f.ctx), found))
        return YMAP_OK;
    YMAP_ERROR_AT(f, slot_key_rule, "List key node error.");
    report_failing_node(f.ctx, "name");
    return YMAP_ERR_EMPTY_LIST_KEY;
}

terrno key_child(frame &f, const oq_list &table, const oq_child &known, const node *child, node *out) {
    if (table.key_rules && edit_requires_key(request_kind(f.ctx)) && !has_text(child->value)) {
        YMAP_ERROR_AT(f, slot_empty_key, "Empty list key specified.");
        report_failing_node(f.ctx, child->name);
        return YMAP_ERR_EMPTY_LIST_KEY;
    }
    if (table.key_rules && is_delete(child)) {
        YMAP_ERROR_AT(f, slot_key_delete, "The key node should not have delete operation.");
        yfw_oc_error_path(f.ctx);
        return YMAP_ERR_KEY_DELETE;
    }
    const node before = *child;
    const terrno status = known.walker(f.ctx, child, out);
    if ((walk_state::of(f.ctx).request_flags & YFW_REQ_REPLACE_DELETE_PASS) != 0) {
        // A replaced entry keeps its children in both passes, and in the first one an interface's name turns
        // its own node into a removal. The second pass would refuse that as a deleted key, and add the name as
        // a removal, so the key gets back the operation with which the client sent it.
        writable(child)->operation = before.operation;
        writable(child)->node_flags = before.node_flags;
    }
    mark_key(child);
    return status;
}

terrno entry_child(frame &f, const oq_list &table, const node *child, node *out) {
    if (child->name == nullptr)
        return no_tag(f);
    const oq_child *known = find_child(table.children, child->name, is_get(f.ctx));
    if (known != nullptr && known->is_key())
        return key_child(f, table, *known, child, out);
    if ((walk_state::of(f.ctx).request_flags & YFW_REQ_REPLACE_DELETE_PASS) != 0)
        return YMAP_OK;
    if (known != nullptr)
        return known->walker(f.ctx, child, out);
    return unknown_child(f, child, out, table.augments);
}

// While an entry is mapped whole, its own children are kept on the list-entry stack.
terrno map_whole_entry(frame &f, const oq_list &table, const node *entry, node *out) {
    const node saved = *entry;
    const child_view own = children_of(entry);
    const bool pushed = yfw_map_util_itree_stack_push(f.ctx, own.first, own.count, nullptr) == YMAP_OK;
    detach_children(entry);
    const terrno status = map_whole(f, table.children, table.augments, entry, out);
    restore_children(entry, saved);
    if (pushed)
        yfw_map_util_itree_stack_pop(f.ctx);
    return status;
}

terrno walk_entry(frame &f, const oq_list &table, const node *entry, node *out) {
    if (children_missing(entry)) // a list callback may push any entry
        return no_subtrees(f);
    const child_view children = children_of(entry);
    for (const node &child : children)
        if (const terrno status = entry_child(f, table, &child, out); status != YMAP_OK)
            return status;
    const bool whole_read = is_read(f.ctx) && !has_non_key_child(table, children);
    if (whole_read || is_delete(entry))
        return map_whole_entry(f, table, entry, out);
    return YMAP_OK;
}

pass_result walk_pushed_entry(frame &f, const oq_list &table, const yfw_map_itree_item &item, node *entry,
                              node *out, bool deleting) {
    pass_result result;
    if (deleting)
        change_operation(entry, YFW_OP_REMOVE);
    if (item.callback != nullptr)
        result = answer_of_callback(item.callback(f.ctx, entry, out));
    if (result.ok())
        result.status = walk_entry(f, table, entry, out);
    return result;
}

// Walks the entries that the list callback pushed. The first one takes the list node's place in the hierarchy.
pass_result walk_pushed_entries(frame &f, const oq_list &table, const node *in, node *out) {
    yfw_map_itree_item item{};
    pass_result result{.status = yfw_map_util_itree_stack_peak(f.ctx, &item)};
    const bool deleting = is_delete(in);
    for (uint32_t i = 0; result.ok() && i < item.count; i++) {
        node *entry = &item.entries[i];
        if (i == 0) {
            result = walk_pushed_entry(f, table, item, entry, out, deleting);
            continue;
        }
        const hierarchy_entry standing(f.ctx, entry, 2, YFW_MARKER_LIST);
        result.status = yfw_map_update_current_list_node(f.ctx, table.path);
        if (result.ok())
            result = walk_pushed_entry(f, table, item, entry, out, deleting);
    }
    return result;
}

pass_result call_list_callback(frame &f, const oq_list &table, const node *in, node *out,
                               const key_scan &found) {
    yfw_req_ctx &r = walk_state::of(f.ctx);
    const bool plain_delete = is_delete(in) && r.list_entry_state == entry_plain;
    terrno status = YMAP_OK;
    if (plain_delete && found.keys != 0 && !found.others) {
        r.list_entry_state = entry_deleted_by_key;
        status = table.node_callback(f.ctx, in, out);
        r.list_entry_state = entry_plain;
    } else {
        if (plain_delete && children_of(in).count == 0 && r.map_all == 1)
            r.list_entry_state = entry_deleted_whole; // list_pass resets it
        status = table.node_callback(f.ctx, in, out);
    }
    if (status == YMAP_OK)
        f.ctx->current_list_operation = (in->node_flags & YFW_NODE_OPERATION_CHANGED) != 0 ? in->operation : 0;
    return answer_of_callback(status);
}

pass_result list_pass(frame &f, const oq_list &table, const node *in, node *out, const key_scan &found) {
    yfw_req_ctx &r = walk_state::of(f.ctx);
    const uint32_t state_before = r.list_entry_state;
    const uint32_t depth = yfw_map_util_itree_stack_size(f.ctx);
    pass_result result = call_list_callback(f, table, in, out, found);
    if (yfw_map_util_itree_stack_size(f.ctx) > depth) {
        if (result.ok())
            result = walk_pushed_entries(f, table, in, out);
        while (yfw_map_util_itree_stack_size(f.ctx) > depth && yfw_map_util_itree_stack_pop(f.ctx) == YMAP_OK) {
        }
    } else if (result.ok()) {
        result.status = walk_entry(f, table, in, out);
    }
    r.list_entry_state = state_before;
    return result;
}

// A read that names something in an entry, but not its key, also fetches the key.
terrno complete_keys(frame &f, const oq_list &table, const node *in) {
    terrno status = YMAP_OK;
    for (const oq_child &child : table.children) {
        if (!child.is_key())
            continue;
        node *added = nullptr;
        status = add(f, writable(in), child.tag, in->ns, nullptr, {.slot = &added});
        if (added != nullptr)
            mark_key(added);
    }
    return status;
}

} // namespace

terrno walk_container(frame &f, const oq_container &table, const node *in, node *out) {
    walk_state state(f.ctx);
    if (children_missing(in))
        return no_subtrees(f);
    const yfw_req_ctx &r = walk_state::of(f.ctx);
    const bool whole_above = (r.walk_flags & YFW_WALK_WHOLE_SUBTREE) != 0 && r.map_all == 1;
    const hierarchy_entry standing(f.ctx, in, 1, YFW_MARKER_CONTAINER);
    const pass_result result = in_passes(f, in, replaced_children::detached, [&] {
        return container_pass(f, table, in, whole_above ? child_view{} : children_of(in), out);
    });
    return result.done ? subtree_done(f) : result.status;
}

terrno walk_list(frame &f, const oq_list &table, const node *in, node *out) {
    walk_state state(f.ctx);
    if (children_missing(in))
        return no_subtrees(f);
    const yfw_req_ctx &r = walk_state::of(f.ctx);
    const child_view children = children_of(in);
    if (children.count == 0 && r.map_all != 1 && r.list_entry_state == entry_plain &&
        edit_requires_key(request_kind(f.ctx))) {
        YMAP_ERROR_AT(f, slot_list_without_keys, "No keys specified with a list node.");
        return YMAP_ERR_MAP_FAILED;
    }
    const hierarchy_entry standing(f.ctx, in, 2, YFW_MARKER_LIST);
    key_scan found;
    terrno status = yfw_map_update_current_list_node(f.ctx, table.path);
    if (status == YMAP_OK)
        status = check_keys(f, table, in, children, found);
    if (status == YMAP_OK) {
        const pass_result result =
            in_passes(f, in, replaced_children::kept, [&] { return list_pass(f, table, in, out, found); });
        if (result.done)
            return subtree_done(f);
        status = result.status;
    }
    if (status == YMAP_OK && is_read(f.ctx) && r.map_all != 1 && found.others && found.keys == 0)
        status = complete_keys(f, table, in);
    return status;
}

terrno walk_leaf(frame &f, yfw_map_callback callback, const node *in, node *out) {
    walk_state state(f.ctx);
    const terrno status = callback(f.ctx, in, out);
    yfw_req_ctx &r = walk_state::of(f.ctx);
    if (r.map_all == 1 || r.list_entry_state != entry_plain)
        return status;
    mark(in, YFW_MARKER_LEAF);
    if (is_read(f.ctx)) {
        if ((in->node_flags & YFW_NODE_HAS_VALUE) != 0) {
            mark(in, YFW_MARKER_CONTENT_MATCH);
            r.walk_flags |= YFW_WALK_CONTENT_MATCH_LEAF | YFW_WALK_ANY_CONTENT_MATCH;
        } else {
            r.walk_flags |= YFW_WALK_SELECTION_LEAF;
        }
    }
    return status;
}

namespace {

terrno walk_marked(frame &f, yfw_map_callback callback, const node *in, node *out, uint32_t marker) {
    walk_state state(f.ctx);
    const terrno status = callback(f.ctx, in, out);
    const yfw_req_ctx &r = walk_state::of(f.ctx);
    if (r.map_all != 1 && r.list_entry_state == entry_plain)
        mark(in, marker);
    return status;
}

} // namespace

terrno walk_key_leaf(frame &f, yfw_map_callback callback, const node *in, node *out) {
    return walk_marked(f, callback, in, out, YFW_MARKER_LEAF);
}

terrno walk_leaf_list(frame &f, yfw_map_callback callback, const node *in, node *out) {
    return walk_marked(f, callback, in, out, YFW_MARKER_LEAF_LIST);
}

terrno refuse_augment(frame &f, const node *in) {
    if (yfw_map_is_request_add(f.ctx, in) == 0)
        return YMAP_OK;
    report_failing_node(f.ctx, in->name);
    return YMAP_ERR_UNSUPPORTED_AUGMENT;
}

} // namespace oclldp

#include "qo_walker.h"

#include "tree.h"

namespace oclldp {
namespace {

void note_error_node(frame &f, const node *child) {
    if ((child->framework_flags & YFW_FW_HAS_NODE_TYPE) == 0 || child->node_type != YFW_NODE_TYPE_ERROR)
        return;
    YMAP_TRACE_AT(f, slot_xpath_error_node, "got xpath error node ");
    if (f.ctx->req_ctx != nullptr)
        f.ctx->req_ctx->request_flags |= YFW_REQ_XPATH_ERROR_NODE;
}

const qo_child *find_child(frame &f, const qo_level &level, const char *tag) {
    if (level.get_only && !is_get(f.ctx))
        return nullptr;
    for (const qo_child &child : level.children)
        if (match(tag, child.tag))
            return &child;
    return nullptr;
}

terrno unknown_child(frame &f, const qo_level &level, const node *child, node *out) {
    if (!match(level.ns, child->ns))
        return level.augments(f.ctx, child, out);
    YMAP_TRACE_AT(f, slot_ignored_tag, "Unsupported tag. Ignoring.");
    return YMAP_OK;
}

terrno handle(frame &f, const qo_child &known, const node *child, node *out) {
    if ((known.rules & error_node) != 0)
        note_error_node(f, child);
    const terrno status =
        known.handler != nullptr ? known.handler(f.ctx, child, out) : walk_level(f, *known.level, child, out);
    const bool entry =
        (known.rules & list_entry) != 0 || (known.level != nullptr && known.level->list != nullptr);
    // An entry that ends so is passed over, whoever said it: its walker's status does not tell.
    return entry && status == YMAP_STS_SUBTREE_DONE ? YMAP_OK : status;
}

terrno walk_children(frame &f, const qo_level &level, child_view children, node *out) {
    for (const node &child : children)
        if (const terrno status = walk_child(f, level, &child, out); status != YMAP_OK)
            return status;
    return YMAP_OK;
}

terrno walk_container(frame &f, const qo_level &level, const node *in, node *out) {
    const child_view children = children_of(in);
    yfw_map_add_to_node_hierarchy(f.ctx, in, 1);
    terrno status = level.container(f.ctx, in, children.count, out);
    if (status == YMAP_OK)
        status = walk_children(f, level, children, out);
    yfw_map_remove_from_node_hierarchy(f.ctx, in);
    return status;
}

uint8_t output_list_depth(yfw_map_ctx ctx) {
    return ctx->req_ctx != nullptr ? ctx->req_ctx->output_list.depth : 0;
}

terrno walk_entry(frame &f, const qo_level &level, const node *in, node *out) {
    const child_view children = children_of(in);
    if (children.count == 0)
        YMAP_ERROR_AT(f, slot_entry_without_keys, "No keys specified with a list node.");
    yfw_map_add_to_node_hierarchy(f.ctx, in, 2);
    terrno status = yfw_map_update_current_list_node(f.ctx, level.list_path);
    if (status == YMAP_OK) {
        status = level.list(f.ctx, in, out);
        if (status == YMAP_STS_SUBTREE_DONE) { // the callback asks to skip the entry; an update cannot
            yfw_map_remove_from_node_hierarchy(f.ctx, in);
            return status;
        }
    }
    const uint8_t depth = output_list_depth(f.ctx);
    yfw_add_to_output_list_ctx(f.ctx, in, out);
    const bool added = output_list_depth(f.ctx) > depth; // the framework may omit an entry
    if (status == YMAP_OK)
        status = walk_children(f, level, children, out);
    yfw_map_remove_from_node_hierarchy(f.ctx, in);
    if (added)
        yfw_remove_from_output_list_ctx(f.ctx, in, out);
    return status;
}

} // namespace

terrno walk_level(frame &f, const qo_level &level, const node *in, node *out) {
    if (children_missing(in))
        return no_subtrees(f);
    return level.list != nullptr ? walk_entry(f, level, in, out) : walk_container(f, level, in, out);
}

terrno walk_child(frame &f, const qo_level &level, const node *child, node *out) {
    if (child->name == nullptr)
        return no_tag(f);
    if (const qo_child *known = find_child(f, level, child->name))
        return handle(f, *known, child, out);
    return unknown_child(f, level, child, out);
}

} // namespace oclldp

// The engine that walks OpenConfig requests. Tables, one per container or list, say what is walked; the engine
// orders the calls and applies the rules for reads, replaces, deletes and list keys.
#ifndef OCLLDP_OQ_WALKER_H
#define OCLLDP_OQ_WALKER_H

#include <span>

#include "frame.h"

namespace oclldp {

enum oq_child_rules : unsigned {
    get_only = 1, // walked only for a read of configuration and state
    key = 2       // a key of the list
};

struct oq_child {
    const char *tag;
    yfw_map_callback walker;
    unsigned rules = 0;

    bool is_get_only() const { return (rules & get_only) != 0; }
    bool is_key() const { return (rules & key) != 0; }
};

struct oq_container {
    yfw_map_container_callback node_callback;
    std::span<const oq_child> children;
    yfw_map_callback augments;
    // The order for mapping the whole container, where it differs from that of `children`.
    std::span<const oq_child> whole = children;
};

struct oq_list {
    yfw_map_callback node_callback;
    const char *path;
    std::span<const oq_child> children; // keys first
    yfw_map_callback augments;
    bool key_rules = false; // an edit must have exactly one usable key
};

// Each walks `in`; the frame has already rejected NULL nodes.
terrno walk_container(frame &f, const oq_container &table, const node *in, node *out);
terrno walk_list(frame &f, const oq_list &table, const node *in, node *out);
terrno walk_leaf(frame &f, yfw_map_callback callback, const node *in, node *out);
terrno walk_key_leaf(frame &f, yfw_map_callback callback, const node *in, node *out);
terrno walk_leaf_list(frame &f, yfw_map_callback callback, const node *in, node *out);

// Rejects an augment node that the request creates.
terrno refuse_augment(frame &f, const node *in);

} // namespace oclldp

#endif

// The engine that walks native responses. Tables, one level per container or list entry, say what is walked;
// levels below an exported walker are walked inside it.
#ifndef OCLLDP_QO_WALKER_H
#define OCLLDP_QO_WALKER_H

#include <span>

#include "frame.h"

namespace oclldp {

struct qo_level;

enum qo_child_rules : unsigned {
    error_node = 1, // may be an xpath error node, which is noted on the request
    list_entry = 2  // the handler is an entry's walker and may ask to skip the entry
};

// Handled by `handler` (a leaf callback or an exported walker), otherwise walked as `level`.
struct qo_child {
    const char *tag;
    yfw_map_callback handler = nullptr;
    const qo_level *level = nullptr;
    unsigned rules = 0;
};

constexpr qo_child leaf(const char *tag, yfw_map_callback callback, unsigned rules = 0) {
    return {tag, callback, nullptr, rules};
}
constexpr qo_child walker(const char *tag, yfw_map_callback callback, unsigned rules = 0) {
    return {tag, callback, nullptr, rules};
}
constexpr qo_child level(const char *tag, const qo_level &below) {
    return {tag, nullptr, &below};
}

// A container sets `container`; a list entry sets `list` and its native `list_path`.
struct qo_level {
    const char *ns;
    std::span<const qo_child> children;
    yfw_map_callback augments;
    yfw_map_container_callback container = nullptr;
    yfw_map_callback list = nullptr;
    const char *list_path = nullptr;
    bool get_only = false; // children are dispatched only for a read of configuration and state
};

// Walks the node passed to a walker; the frame has already rejected NULL nodes.
terrno walk_level(frame &f, const qo_level &level, const node *in, node *out);

// Dispatches `child` alone, as one of the children of `level`.
terrno walk_child(frame &f, const qo_level &level, const node *child, node *out);

} // namespace oclldp

#endif

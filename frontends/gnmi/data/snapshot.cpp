#include "frontends/gnmi/data/snapshot.h"

#include <chrono>
#include <cstring>

#include "yang/node_kind.h"

namespace yfw::gnmi {

Snapshot::Index Snapshot::child(Index of, const lysc_node *schema) const {
    for (Index at = first_child(of); at < nodes_[of].end; at = nodes_[at].end)
        if (nodes_[at].schema == schema)
            return at;
    return 0;
}

const char *SnapshotWriter::keep(const char *text) {
    const size_t size = std::strlen(text) + 1;
    return static_cast<const char *>(std::memcpy(to_.texts_.allocate(size, 1), text, size));
}

void SnapshotWriter::open(const lysc_node *node) {
    const auto at = to_.size();
    to_.nodes_.push_back({node, nullptr, open_, at + 1});
    open_ = at;
}

void SnapshotWriter::close() {
    const Snapshot::Index closed = open_;
    open_ = to_.nodes_[closed].parent;
    const bool is_empty = closed + 1 == to_.size();
    if (is_empty && (to_.nodes_[closed].schema->flags & LYS_PRESENCE) == 0)
        to_.nodes_.pop_back();
    else
        to_.nodes_[closed].end = to_.size();
    to_.nodes_[Snapshot::root].end = to_.size();
}

void SnapshotWriter::leaf(const lysc_node *node, const char *value) {
    const auto at = to_.size();
    to_.nodes_.push_back({node, keep(value), open_, at + 1});
}

int64_t now_in_nanoseconds() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace yfw::gnmi

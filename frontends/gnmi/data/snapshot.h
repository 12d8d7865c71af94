// The data of a device at one moment, as an array.
#ifndef YFW_FRONTENDS_GNMI_DATA_SNAPSHOT_H
#define YFW_FRONTENDS_GNMI_DATA_SNAPSHOT_H

#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

#include <libyang/libyang.h>

#include "yang/tree_writer.h"

namespace yfw::gnmi {

// Nodes in document order, each followed by what is below it: reading it is a walk through memory, and it is
// shared by everybody who was promised the same moment. Immutable once written. Borrows the schema.
class Snapshot {
public:
    using Index = uint32_t;

    struct Node {
        const lysc_node *schema; // NULL for the root, which is the first node
        const char *value;       // canonical, of a leaf or of one value of a leaf-list; NULL for others
        Index parent;
        Index end; // of what is below it
    };

    Snapshot() = default;
    Snapshot(const Snapshot &) = delete;
    Snapshot &operator=(const Snapshot &) = delete;

    static constexpr Index root = 0;

    const Node &operator[](Index at) const { return nodes_[at]; }
    Index size() const { return static_cast<Index>(nodes_.size()); }
    bool empty() const { return nodes_.size() <= 1; }

    // Of walks over the children: from first_child() to the node's end, each followed by the one at its own
    // end.
    static Index first_child(Index at) { return at + 1; }

    // The first child of this schema; 0, which is nobody's child, when there is none.
    Index child(Index of, const lysc_node *schema) const;

    // When it was read: nanoseconds since the epoch.
    int64_t time() const { return time_; }

private:
    friend class SnapshotWriter;

    std::vector<Node> nodes_{{nullptr, nullptr, 0, 1}};
    std::pmr::monotonic_buffer_resource texts_;
    int64_t time_ = 0;
};

// Fills a snapshot. Containers without content are left out.
class SnapshotWriter final : public yang::TreeWriter {
public:
    // `time`: nanoseconds since the epoch. Borrows the snapshot, which must be new.
    SnapshotWriter(Snapshot &to, int64_t time) : to_(to) { to.time_ = time; }

    void open(const lysc_node *node) override;
    void close() override;
    void leaf(const lysc_node *node, const char *value) override;

private:
    const char *keep(const char *text);

    Snapshot &to_;
    Snapshot::Index open_ = Snapshot::root;
};

// Nanoseconds since the epoch, now.
int64_t now_in_nanoseconds();

} // namespace yfw::gnmi

#endif

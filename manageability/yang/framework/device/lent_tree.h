// A tree that is lent to readers, and changed in place while nobody reads it.
#ifndef YFW_DEVICE_LENT_TREE_H
#define YFW_DEVICE_LENT_TREE_H

#include <atomic>
#include <memory>

#include "yang/data_tree.h"

namespace yfw::device {

// Not thread-safe, but readers may be on any thread, and may outlive this object.
class LentTree {
public:
    explicit LentTree(yang::DataTree tree) : owned_(std::make_shared<Owned>(std::move(tree))) {}

    // Stays as it is until the last copy of the result is gone.
    yang::SharedData lend() const;
    const lyd_node *get() const { return owned_->tree.get(); }

    bool is_lent() const { return owned_->readers.load(std::memory_order_acquire) != 0; }
    // To be changed. Copies the tree first if it is lent.
    yang::DataTree &mine();

private:
    struct Owned {
        explicit Owned(yang::DataTree data) : tree(std::move(data)) {}

        yang::DataTree tree;
        std::atomic<int> readers{0};
    };
    std::shared_ptr<Owned> owned_;
};

} // namespace yfw::device

#endif

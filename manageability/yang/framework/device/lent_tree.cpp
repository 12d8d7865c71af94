#include "device/lent_tree.h"

#include "yang/configuration_text.h"

namespace yfw::device {

// The readers are counted here, not by the pointer: what they have read happens before the tree is changed.
yang::SharedData LentTree::lend() const {
    owned_->readers.fetch_add(1, std::memory_order_relaxed);
    return {owned_->tree.get(),
            [owned = owned_](const lyd_node *) { owned->readers.fetch_sub(1, std::memory_order_release); }};
}

yang::DataTree &LentTree::mine() {
    if (is_lent())
        owned_ = std::make_shared<Owned>(yang::copy_configuration(owned_->tree.get()));
    return owned_->tree;
}

} // namespace yfw::device

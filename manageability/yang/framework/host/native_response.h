// The native response of one model, as the data tree that the plug-in walks.
#ifndef YFW_HOST_NATIVE_RESPONSE_H
#define YFW_HOST_NATIVE_RESPONSE_H

#include <memory_resource>

#include "host/native_selection.h"
#include "yfw_map.h"

namespace yfw::host {

// Built from libyang's tree; values are borrowed from it, so the tree must outlive this.
class NativeResponse {
public:
    // The part of the tree at `top` that `selection` selects.
    NativeResponse(const lyd_node *top, const SelectedNode &selection);
    // An empty container in place of a top node that the device does not have.
    explicit NativeResponse(const lysc_node *absent_top);

    // Never NULL.
    const tidl_yfw_datatree *root() const { return root_; }

private:
    tidl_yfw_datatree *allocate(uint32_t count);
    bool includes(const lyd_node *node, const SelectedNode *selection, bool whole) const;
    void fill(tidl_yfw_datatree &to, const lyd_node *from, const SelectedNode *selection, bool whole);

    std::pmr::monotonic_buffer_resource memory_;
    const tidl_yfw_datatree *root_ = nullptr;
};

} // namespace yfw::host

#endif

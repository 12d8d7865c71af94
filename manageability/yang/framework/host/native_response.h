// The native response of one model, as the data tree that the plug-in walks.
#ifndef YFW_HOST_NATIVE_RESPONSE_H
#define YFW_HOST_NATIVE_RESPONSE_H

#include <functional>
#include <memory_resource>

#include "host/entry_index.h"
#include "host/native_selection.h"
#include "yang/instance_tree.h"
#include "yfw_map.h"

namespace yfw::host {

// Built from native data; values are borrowed from it, so the data must outlive this, and so must the
// selection and the index.
class NativeResponse {
public:
    // The part of the tree at `top` that `selection` selects.
    NativeResponse(const yang::InstanceNode *top, const SelectedNode &selection, EntryIndex &index);
    // An empty container in place of a top node that the device does not have.
    explicit NativeResponse(const lysc_node *absent_top);
    NativeResponse(const NativeResponse &) = delete;
    NativeResponse &operator=(const NativeResponse &) = delete;

    // Never NULL.
    const tidl_yfw_datatree *root() const { return root_; }

    // The data that a node of the response was made of; NULL when the node is not in this response. Takes time
    // in proportion to the response.
    const yang::InstanceNode *data_of(const tidl_yfw_datatree *node) const;

    // Calls `visit` with each list entry, and the data that it was made of.
    using VisitEntry = std::function<void(const tidl_yfw_datatree &node, const yang::InstanceNode &data)>;
    void for_each_list_entry(const VisitEntry &visit) const;

private:
    tidl_yfw_datatree *allocate(uint32_t count);
    bool includes(const yang::InstanceNode *node, const SelectedNode *selection, bool whole) const;
    void fill(tidl_yfw_datatree &to, const yang::InstanceNode *from, const SelectedNode *selection, bool whole);
    // Calls `visit` with each child that the response includes, and with what is selected of it.
    template <class Visit>
    void for_each_included(const yang::InstanceNode *parent, const SelectedNode *selection, bool whole,
                           Visit &&visit) const;
    // Calls `visit`, for as long as it returns true, with each node below, and its data.
    template <class Visit>
    bool walk(const tidl_yfw_datatree &node, const yang::InstanceNode &data, const SelectedNode *selection,
              bool whole, const Visit &visit) const;

    std::pmr::monotonic_buffer_resource memory_;
    const yang::InstanceNode *top_ = nullptr; // NULL when it is absent, like the selection
    const SelectedNode *selection_ = nullptr;
    EntryIndex *index_ = nullptr;
    const tidl_yfw_datatree *root_ = nullptr;
};

} // namespace yfw::host

#endif

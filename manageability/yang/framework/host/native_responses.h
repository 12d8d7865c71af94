// The native data that one pass of a request asks for, tree by tree.
#ifndef YFW_HOST_NATIVE_RESPONSES_H
#define YFW_HOST_NATIVE_RESPONSES_H

#include <map>
#include <memory>

#include "host/device_snapshot.h"
#include "host/native_paths.h"
#include "host/native_response.h"
#include "host/native_selection.h"
#include "yang/schemas.h"

namespace yfw::host {

// Borrows the schemas and the device.
class NativeResponses {
public:
    // `all`: the responses stay where they are until this object ends, so that two walks meet the same nodes.
    // `one`: each is freed before the next is made, which saves memory.
    enum class Keep { one, all };

    // `offer_absent`: a tree that is asked for and that the device does not have is an empty container.
    NativeResponses(const yang::Schemas &schemas, const NativePaths &paths, const DeviceSnapshot &device,
                    bool offer_absent, Keep keep);

    // See NativeSelection::narrow(). Call before the first response is made.
    void narrow(const lysc_node *key, const std::string &value) { selection_.narrow(key, value); }

    // The root of the response for the native tree `top`; NULL when nothing of it is asked for or there.
    const tidl_yfw_datatree *of_tree(const lysc_node *top);

    // Whether native keys narrow the data to some entries of a list.
    bool are_narrowed() const { return selection_.narrows(); }

    // The data that a node of a kept response was made of; NULL when it is in none.
    const yang::InstanceNode *data_of(const tidl_yfw_datatree *node) const;

    // What an outline of a native list selects: see NativeSelection::outline().
    std::unique_ptr<SelectedNode> outline_selection(const lysc_node *list) const {
        return selection_.outline(list);
    }

private:
    NativeSelection selection_;
    const DeviceSnapshot &device_;
    bool offer_absent_;
    Keep keep_;
    std::map<const lysc_node *, std::unique_ptr<NativeResponse>> made_; // by the top node
};

} // namespace yfw::host

#endif

#include "host/native_responses.h"

namespace yfw::host {

NativeResponses::NativeResponses(const yang::Schemas &schemas, const NativePaths &paths,
                                 const DeviceSnapshot &device, bool offer_absent, Keep keep)
    : selection_(schemas), device_(device), offer_absent_(offer_absent), keep_(keep) {
    for (const NativePath &path : paths.paths())
        selection_.add(path);
}

const tidl_yfw_datatree *NativeResponses::of_tree(const lysc_node *top) {
    const SelectedNode *selected = selection_.tree(top);
    const yang::InstanceNode *data = device_.top(top);
    if (selected == nullptr || (data == nullptr && !offer_absent_))
        return nullptr;
    if (keep_ == Keep::one)
        made_.clear();
    std::unique_ptr<NativeResponse> &response = made_[top];
    if (response == nullptr)
        response = data != nullptr
                       ? std::make_unique<NativeResponse>(data, *selected, device_.index().entries())
                       : std::make_unique<NativeResponse>(top);
    return response->root();
}

const yang::InstanceNode *NativeResponses::data_of(const tidl_yfw_datatree *node) const {
    for (const auto &[top, response] : made_)
        if (const yang::InstanceNode *data = response->data_of(node))
            return data;
    return nullptr;
}

} // namespace yfw::host

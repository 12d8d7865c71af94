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
        response = data != nullptr ? std::make_unique<NativeResponse>(data, *selected)
                                   : std::make_unique<NativeResponse>(top);
    return response->root();
}

const yang::InstanceNode *NativeResponses::data_of(const tidl_yfw_datatree *node) const {
    const auto find_in = [&](const NativeResponse &response) { return response.data_of(node); };
    for (const auto &[top, response] : made_)
        if (const yang::InstanceNode *data = find_in(*response))
            return data;
    for (const auto &[selection, response] : outlines_)
        if (const yang::InstanceNode *data = find_in(*response))
            return data;
    return nullptr;
}

const tidl_yfw_datatree *NativeResponses::outline_of(const lysc_node *list) {
    auto selection = selection_.outline(list);
    const yang::InstanceNode *data = device_.top(selection->node);
    if (data == nullptr)
        return nullptr;
    auto response = std::make_unique<NativeResponse>(data, *selection);
    return outlines_.emplace_back(std::move(selection), std::move(response)).second->root();
}

} // namespace yfw::host

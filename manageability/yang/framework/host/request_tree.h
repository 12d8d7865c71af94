// A read request as the data tree that the plug-in walks.
#ifndef YFW_HOST_REQUEST_TREE_H
#define YFW_HOST_REQUEST_TREE_H

#include <memory_resource>

#include "host/request.h"
#include "host/tree_owner.h"

namespace yfw::host {

// Takes what the plug-in adds to the request: list keys that a read did not name.
class RequestTree final : public TreeOwner {
public:
    // Texts are copied.
    explicit RequestTree(const Selection &selection);

    const tidl_yfw_datatree *root() const { return &root_; }

    terrno add(tidl_yfw_datatree &parent, const AddArguments &arguments) override;
    tidl_yfw_datatree *find_or_add_entry(tidl_yfw_datatree &parent, std::string_view list_path,
                                         std::string_view key_name, std::string_view key_value) override;

private:
    const char *copy(const char *text);
    tidl_yfw_datatree *allocate(size_t count);
    void fill(tidl_yfw_datatree &to, const Selection &from);

    std::pmr::monotonic_buffer_resource memory_;
    tidl_yfw_datatree root_{};
};

} // namespace yfw::host

#endif

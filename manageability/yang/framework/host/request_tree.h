// A request as the data tree that the plug-in walks.
#ifndef YFW_HOST_REQUEST_TREE_H
#define YFW_HOST_REQUEST_TREE_H

#include <memory_resource>

#include "host/request.h"
#include "host/tree_owner.h"
#include "yang/edit.h"

namespace yfw::host {

// Accepts what the plug-in adds to the request: list keys that a read did not name.
class RequestTree final : public TreeOwner {
public:
    // Copies texts. Strips the module name from identity values, as the plug-in expects.
    explicit RequestTree(const Selection &selection);
    // `replace_as_merge`: presents replace operations as merge.
    RequestTree(const yang::EditNode &edit, bool replace_as_merge);

    const tidl_yfw_datatree *root() const { return &root_; }

    terrno add(tidl_yfw_datatree &parent, const AddArguments &arguments) override;
    tidl_yfw_datatree *find_or_add_entry(tidl_yfw_datatree &parent, std::string_view list_path,
                                         std::string_view key_name, std::string_view key_value) override;

private:
    const char *copy(const char *text);
    tidl_yfw_datatree *allocate(size_t count);
    void fill_node(tidl_yfw_datatree &to, const lysc_node *node, const std::optional<std::string> &value);
    void make_children(tidl_yfw_datatree &to, size_t count);
    void fill(tidl_yfw_datatree &to, const Selection &from);
    void fill(tidl_yfw_datatree &to, const yang::EditNode &from, bool replace_as_merge);

    std::pmr::monotonic_buffer_resource memory_;
    tidl_yfw_datatree root_{};
};

} // namespace yfw::host

#endif

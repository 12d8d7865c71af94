// Which native data a read fetches: the native paths of a request walk as one tree for each native model.
#ifndef YFW_HOST_NATIVE_SELECTION_H
#define YFW_HOST_NATIVE_SELECTION_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/native_paths.h"
#include "yang/schemas.h"

namespace yfw::host {

struct SelectedNode {
    const lysc_node *node = nullptr;
    bool whole = false;
    std::optional<std::string> value; // of a list key: selects only entries with this value
    std::vector<std::unique_ptr<SelectedNode>> children;

    const SelectedNode *child(const lysc_node *schema) const;
};

// The schema nodes of a selection, each before those below it.
std::vector<const lysc_node *> nodes_of(const SelectedNode &selection);

class NativeSelection {
public:
    explicit NativeSelection(const yang::Schemas &schemas) : schemas_(schemas) {}

    // Adds a path; one ending in a container or list selects the whole subtree. Throws Error for a path that is
    // not in the native models.
    void add(const NativePath &path);

    // Of the list of the leaf `key`, if any of it is selected, selects only the entries with this value.
    void narrow(const lysc_node *key, const std::string &value);

    // The selection below a native top node; NULL when there is none.
    const SelectedNode *tree(const lysc_node *top) const;

    // Whether a key's value is among what was added.
    bool narrows() const { return narrows_; }

    // From the top down to the native list: of it and of the lists around it the keys and what was added as a
    // leaf of theirs, whatever the values; nothing else.
    std::unique_ptr<SelectedNode> outline(const lysc_node *list) const;

private:
    SelectedNode &tree_for(const NativePath &path, std::string_view top);

    const yang::Schemas &schemas_;
    std::vector<std::unique_ptr<SelectedNode>> trees_;
    bool narrows_ = false;
};

} // namespace yfw::host

#endif

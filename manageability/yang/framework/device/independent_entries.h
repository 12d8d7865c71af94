// Which parts of a configuration an edit concerns.
#ifndef YFW_DEVICE_INDEPENDENT_ENTRIES_H
#define YFW_DEVICE_INDEPENDENT_ENTRIES_H

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/mapping_description.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::device {

// The keys of entries, for each kind in the order of the mapping's description.
using EntryNames = std::vector<std::set<std::string>>;

// The lists whose entries the mapping maps independently of one another, by its description. Borrows the
// schemas; immutable.
class IndependentEntries {
public:
    // Throws Error for a description that names nodes missing from the schemas, or other ones than keys.
    IndependentEntries(const yang::Schemas &schemas, const host::MappingDescription &mapping);

    // A list of either model. Lists of the same kind have entries of the same names.
    struct List {
        const lysc_node *list;
        const lysc_node *key; // the leaf with the name
        size_t kind;
    };
    const std::vector<List> &lists() const { return lists_; }
    // The list that the node is; NULL when it is none of them.
    const List *list_at(const lysc_node *node) const;
    // Whether one of the lists is below the node.
    bool is_above(const lysc_node *node) const;

    // The entries that an edit names: besides what is outside of the lists, it concerns only these. Nothing
    // when it concerns lists as a whole, or when the models have constraints between entries.
    std::optional<EntryNames> named_in(const yang::EditNode &edit) const;

private:
    bool add_named(const yang::EditNode &edit, EntryNames &names) const;

    std::vector<List> lists_;
    std::unordered_set<const lysc_node *> above_; // the containers of the lists
    size_t kinds_ = 0;
    bool are_constrained_ = false;
};

} // namespace yfw::device

#endif

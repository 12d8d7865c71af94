// Several edits as one.
#ifndef YFW_FRONTENDS_GNMI_OPERATIONS_COMBINED_EDIT_H
#define YFW_FRONTENDS_GNMI_OPERATIONS_COMBINED_EDIT_H

#include <string>
#include <unordered_map>
#include <vector>

#include "yang/edit.h"

namespace yfw::gnmi {

// Edits of one node as a single one that does what they would do one after another. Operations are merge,
// replace, remove and none. Takes time by the size of the edits, however many there are.
class CombinedEdit {
public:
    explicit CombinedEdit(yang::EditNode first) : edit_(std::move(first)) {}

    // Adds what the next edit would do.
    void add(const yang::EditNode &next) { combine(edit_, index_, next); }

    const yang::EditNode &edit() const { return edit_; }

private:
    // Where the children of a node are, by what tells them apart; made when the first one is looked for.
    struct Index {
        bool is_made = false;
        std::unordered_map<std::string, size_t> places;
        std::vector<Index> below;
    };

    static void combine(yang::EditNode &edit, Index &index, const yang::EditNode &next);
    static void add_child(yang::EditNode &parent, Index &index, const yang::EditNode &next);

    yang::EditNode edit_;
    Index index_;
};

// The same edit without removals of whole leaf-lists beside values that they are set to: each value that
// `running`, which may be NULL, has and that is not set is removed, and values that are there stay.
yang::EditNode with_values_resolved(const yang::EditNode &edit, const lyd_node *running);

} // namespace yfw::gnmi

#endif

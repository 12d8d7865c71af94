// Configuration that is kept but not in force while a leaf has a certain value.
#ifndef YFW_DEVICE_SUSPENSION_H
#define YFW_DEVICE_SUSPENSION_H

#include <string>
#include <vector>

#include "host/mapping_description.h"
#include "yang/data_tree.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::device {

// The suspensions of a mapping's description that hold in an OpenConfig configuration. Borrows the schemas.
class Suspensions {
public:
    // `configuration`: from the top container down; may be NULL. Throws Error for a description that names
    // nodes missing from the schemas.
    Suspensions(const yang::Schemas &schemas, const host::MappingDescription &mapping,
                const lyd_node *configuration);

    bool any() const { return !held_.empty(); }

    // Whether this configuration node is not in force.
    bool holds(const lysc_node *node) const { return reason(node) != nullptr; }
    // What holds it back, such as "PATH is false"; NULL when it is in force.
    const std::string *reason(const lysc_node *node) const;

    // Whether this leaf holds others back.
    bool is_cause(const lysc_node *leaf) const;

    // Takes what would set suspended nodes out of an edit. What takes them away remains where the device has
    // them, given as `present`, so that nothing old comes back into force later.
    void hold_back(yang::EditNode &edit, const lyd_node *present) const;

    // Removes the leaves that hold others back from the configuration.
    void lift(yang::DataTree &configuration) const;

    // Removes from a native configuration what the description says that it is without meanwhile.
    void remove_native(yang::DataTree &native) const;

private:
    struct Held {
        const lysc_node *leaf; // never suspended by itself
        const lysc_node *node; // suspended with all below it
        std::string reason;
    };
    bool hold_back_node(yang::EditNode &edit, const lyd_node *siblings) const;
    bool holds_all_below(const lysc_node *node) const;

    std::vector<Held> held_;
    std::vector<const lysc_node *> native_; // to be removed from native configurations
};

} // namespace yfw::device

#endif

// Makes native configurations of OpenConfig ones.
#ifndef YFW_DEVICE_CONFIGURATION_MAPPER_H
#define YFW_DEVICE_CONFIGURATION_MAPPER_H

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "device/configuration.h"
#include "device/suspension.h"
#include "host/engine.h"
#include "host/mapping_description.h"
#include "host/request.h"
#include "sources/native_source.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::device {

// Everything is borrowed. Thread-safe.
class ConfigurationMapper {
public:
    ConfigurationMapper(const yang::Schemas &schemas, host::Engine &engine,
                        const host::MappingDescription &mapping);

    // A native configuration as the mapping reads it, in OpenConfig terms; NULL when nothing of it is visible.
    // Throws Error.
    yang::DataTree read_back(const lyd_node *native);

    // The values of leaf-lists in it that the mapping does not show beside those that it shows, from the top
    // container down; NULL when there are none. Throws Error.
    yang::DataTree hidden_values(const sources::Snapshot &native);

    // Both together: everything that the native configuration says. Throws Error.
    yang::DataTree translate(const lyd_node *native);

    struct Mapped {
        yang::DataTree native;
        std::vector<host::NativePath> edits; // that led to it
    };
    // Maps `edit` onto the native configuration of `before`. `after`: the OpenConfig configuration that the
    // edit leads to. What it has and the mapping does not read back from the result is mapped again, until that
    // changes nothing more. The result is valid native data. Throws Error.
    Mapped map(const yang::EditNode &edit, const Configuration &before, const lyd_node *after);

    // Whether a change of a part of the configuration leaves the rest as it is: the device is on before and
    // after it, and nothing is suspended.
    bool concerns_only_part(const Configuration &before, const Configuration &after) const;

    // What the configuration would lead to if nothing of it were suspended: nothing when nothing is. Throws
    // Error when that cannot be mapped, or is not valid.
    std::optional<Mapped> map_as_if_in_force(const Configuration &configuration);

    // Those of these leaves, given as leaf_path(), that the native configuration holds: mapping them again
    // changes nothing, though the mapping may not read them back.
    std::set<std::string> held(const Configuration &configuration, const std::set<std::string> &paths);

    // The native edits that set those leaves of an OpenConfig configuration that are given as leaf_path(); none
    // when the mapping refuses them.
    std::vector<host::NativePath> edits_of(const lyd_node *openconfig, const std::set<std::string> &paths,
                                           const lyd_node *native);

private:
    host::ReadRequest whole_configuration() const;
    // Returns whether the edit changes anything.
    bool apply(const yang::EditNode &edit, Mapped &mapped);
    // After an edit from `before`: what a single edit to `after` would have led to.
    void make_independent_of_history(Mapped &mapped, const Configuration &before, const lyd_node *after,
                                     const Suspensions &suspended);
    // Removes what is suspended in `wanted` from the native configuration.
    void take_suspended_away(Mapped &mapped, const lyd_node *wanted, const Suspensions &suspended);
    // Maps what `wanted` has and the mapping does not read back, until that changes nothing more. Returns what
    // the mapping reads back in the end.
    yang::DataTree settle(Mapped &mapped, const lyd_node *wanted, const Suspensions &suspended);
    // Maps the leaves of `wanted` that belong to no list entry; returns whether that changes anything.
    bool map_outside_entries(Mapped &mapped, const lyd_node *wanted);
    // Removes the leaves of list entries that differ from `before`, or all of them, for settle() to map anew.
    void clear_entries(Mapped &mapped, const lyd_node *wanted, const lyd_node *before);
    void clear_all_entries(Mapped &mapped, const lyd_node *wanted) { clear_entries(mapped, wanted, nullptr); }
    // Removes what the mapping reads back (`present`) and nobody configured, unless it comes back.
    void remove_surplus(Mapped &mapped, const lyd_node *present, const lyd_node *wanted,
                        const Suspensions &suspended);
    yang::EditNode surplus(const lyd_node *present, const lyd_node *wanted) const;
    // Throws the error of the first leaf that the mapping rejects by itself.
    void map_leaf_by_leaf(const yang::EditNode &edit, const lyd_node *native);

    const yang::Schemas &schemas_;
    host::Engine &engine_;
    const host::MappingDescription &mapping_;
    const std::optional<host::Selection> leaf_lists_; // the containers of all leaf-lists of configuration
};

} // namespace yfw::device

#endif

// Makes native configurations of OpenConfig ones.
#ifndef YFW_DEVICE_CONFIGURATION_MAPPER_H
#define YFW_DEVICE_CONFIGURATION_MAPPER_H

#include <optional>
#include <vector>

#include "device/configuration.h"
#include "device/suspension.h"
#include "host/engine.h"
#include "host/mapping_description.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::device {

// Everything is borrowed. Thread-safe.
class ConfigurationMapper {
public:
    ConfigurationMapper(const yang::Schemas &schemas, host::Engine &engine,
                        const host::MappingDescription &mapping)
        : schemas_(schemas), engine_(engine), mapping_(mapping) {}

    // A native configuration as the mapping reads it, in OpenConfig terms; NULL when nothing of it is visible.
    // Throws Error.
    yang::DataTree read_back(const lyd_node *native);

    struct Mapped {
        yang::DataTree native;
        std::vector<host::NativePath> edits; // that led to it
    };
    // Maps `edit` onto the native configuration of `before`. `after`: the OpenConfig configuration that the
    // edit leads to. What it has and the mapping does not read back from the result is mapped again, until that
    // changes nothing more. The result is valid native data. Throws Error.
    Mapped map(const yang::EditNode &edit, const Configuration &before, const lyd_node *after);

    // What the configuration would lead to if nothing of it were suspended: nothing when nothing is. Throws
    // Error when that cannot be mapped, or is not valid.
    std::optional<Mapped> map_as_if_in_force(const Configuration &configuration);

private:
    // Returns whether the edit changes anything.
    bool apply(const yang::EditNode &edit, Mapped &mapped);
    // Removes what is suspended in `wanted` from the native configuration.
    void take_suspended_away(Mapped &mapped, const lyd_node *wanted, const Suspensions &suspended);
    // Maps what `wanted` has and the mapping does not read back, until that changes nothing more.
    void settle(Mapped &mapped, const lyd_node *wanted, const Suspensions &suspended);
    // Throws the error of the first leaf that the mapping rejects by itself.
    void map_leaf_by_leaf(const yang::EditNode &edit, const lyd_node *native);

    const yang::Schemas &schemas_;
    host::Engine &engine_;
    const host::MappingDescription &mapping_;
};

} // namespace yfw::device

#endif

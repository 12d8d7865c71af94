// Where a device differs from its configuration.
#ifndef YFW_DEVICE_DRIFT_H
#define YFW_DEVICE_DRIFT_H

#include <optional>
#include <string>
#include <vector>

#include "device/suspension.h"
#include "yang/data_tree.h"

namespace yfw::device {

// A leaf, or a value of a leaf-list, that is not in force as it is configured.
struct Drift {
    std::string path; // with the keys, without module names
    std::optional<std::string> configured;
    std::optional<std::string> applied; // what the device has
    std::string reason;                 // why, where that is known; else empty

    bool operator==(const Drift &) const = default;
};

// Compares an OpenConfig configuration with what was read from the device, and with what a device that runs the
// configuration reads as: both configuration and state. All are from the top container down, and may be NULL. A
// leaf is in force when the device has its value in the configuration, or in the state beside it, which is how
// OpenConfig tells of applied configuration. What the device has and nobody configured counts unless it is
// expected, or the default. In the order of the paths' nodes in the data.
std::vector<Drift> find_drift(const lyd_node *configured, const lyd_node *applied, const lyd_node *expected,
                              const Suspensions &suspended);

} // namespace yfw::device

#endif

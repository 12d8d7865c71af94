// The target that a device's running configuration is applied to.
#ifndef YFW_SOURCES_NATIVE_TARGET_H
#define YFW_SOURCES_NATIVE_TARGET_H

#include <optional>
#include <string>
#include <vector>

#include "yang/data_tree.h"

namespace yfw::sources {

// A setting of a device, as a leaf of its native configuration.
struct PendingSetting {
    std::string path;                  // instance path, with module names
    std::optional<std::string> wanted; // nothing: it is not configured
    std::optional<std::string> now;    // what the device has; it may be more than the leaf's type allows

    bool operator==(const PendingSetting &) const = default;
};

// All functions throw Error naming the offending configuration node or device. Configurations are forests of
// valid native data; NULL is an empty one.
class NativeTarget {
public:
    virtual ~NativeTarget() = default;

    // Rejects what the device does not support. Changes nothing.
    virtual void check(const lyd_node *before, const lyd_node *after) = 0;

    // Changes the device's configuration from `before` to `after`: writes only what differs between the two, or
    // is needed for that. Other settings stay as they are, even those that somebody else has changed on the
    // device. When it throws, it has rolled back what it applied.
    virtual void apply(const lyd_node *before, const lyd_node *after) = 0;

    // Makes the device run the whole configuration, whatever it runs now: it may have restarted, or somebody
    // else may have changed it.
    virtual void restore(const lyd_node *configuration) = 0;

    // What restore() would change now, also what no read tells. Changes nothing.
    virtual std::vector<PendingSetting> pending(const lyd_node *configuration) {
        static_cast<void>(configuration);
        return {};
    }

    // What a read of the device returns as configuration while it runs this one, in `context`: a device may
    // have values of its own where none is configured. Nothing when that is the configuration itself.
    virtual std::optional<yang::DataTree> as_read(const ly_ctx *context, const lyd_node *configuration) {
        static_cast<void>(context), static_cast<void>(configuration);
        return std::nullopt;
    }

    // Identifies the device's present run: changes when the device restarts, and is the same for all processes
    // of the machine until then. Nothing when it cannot be told, for instance while the device is not running.
    virtual std::optional<std::string> instance() { return std::nullopt; }
};

} // namespace yfw::sources

#endif

// What a device's running configuration takes effect on.
#ifndef YFW_SOURCES_NATIVE_TARGET_H
#define YFW_SOURCES_NATIVE_TARGET_H

#include "yang/data_tree.h"

namespace yfw::sources {

// All of it throws Error that names the node of the configuration, or the device, that is at fault.
// Configurations are forests of valid native data; NULL is an empty one.
class NativeTarget {
public:
    virtual ~NativeTarget() = default;

    // Refuses what the device cannot do. Nothing is changed.
    virtual void check(const lyd_node *before, const lyd_node *after) = 0;

    // Makes the device run `after`, which it runs `before` of. When it throws, what was applied is taken back.
    virtual void apply(const lyd_node *before, const lyd_node *after) = 0;

    // Makes the device run the configuration, whatever it runs now: it may have been restarted.
    virtual void restore(const lyd_node *configuration) = 0;
};

} // namespace yfw::sources

#endif

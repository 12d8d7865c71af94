// Wakes a thread that waits for a descriptor.
#ifndef YFW_BASE_WAKEUP_H
#define YFW_BASE_WAKEUP_H

#include "base/descriptor.h"

namespace yfw {

// The descriptor is readable from wake() until clear(). Both may be called from any thread.
class Wakeup {
public:
    // Throws std::system_error when out of descriptors.
    Wakeup();

    int descriptor() const { return counter_.get(); }
    void wake() const;
    void clear() const;

private:
    Descriptor counter_;
};

} // namespace yfw

#endif

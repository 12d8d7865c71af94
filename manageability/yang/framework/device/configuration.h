// A device's configuration on both sides of the mapping.
#ifndef YFW_DEVICE_CONFIGURATION_H
#define YFW_DEVICE_CONFIGURATION_H

#include "yang/data_tree.h"

namespace yfw::device {

// What clients wrote, and what the mapping made of it. Either may be NULL: empty. Both are immutable.
struct Configuration {
    yang::SharedData openconfig;
    yang::SharedData native;
};

} // namespace yfw::device

#endif

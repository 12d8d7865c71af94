// Where native data comes from: a device's running configuration and its operational state.
#ifndef YFW_SOURCES_NATIVE_SOURCE_H
#define YFW_SOURCES_NATIVE_SOURCE_H

#include "host/data_tree.h"

namespace yfw::sources {

// A device as the host reads it.
class NativeSource {
public:
    virtual ~NativeSource() = default;

    // The native data at this moment, as one forest of valid data in `context`. Throws host::Error that names
    // the place of what cannot be read.
    virtual host::DataTree read(const ly_ctx *context) = 0;
};

} // namespace yfw::sources

#endif

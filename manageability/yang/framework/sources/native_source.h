// Where native data comes from: a device's running configuration and its operational state.
#ifndef YFW_SOURCES_NATIVE_SOURCE_H
#define YFW_SOURCES_NATIVE_SOURCE_H

#include <optional>
#include <utility>

#include "yang/data_tree.h"

namespace yfw::sources {

// Native data at one moment.
struct Snapshot {
    yang::SharedData data;
    // The running configuration, where it is not the data's own.
    std::optional<yang::SharedData> configuration = std::nullopt;
};

// A device as the host reads it.
class NativeSource {
public:
    virtual ~NativeSource() = default;

    // The native data at this moment, as one forest of valid data in `context`. Throws Error that names
    // the place of what cannot be read.
    virtual yang::DataTree read(const ly_ctx *context) = 0;

    // The same for somebody who only looks at it: may be given out again as long as the device has not changed.
    // Safe for several threads when read() is.
    virtual Snapshot snapshot(const ly_ctx *context) { return {read(context)}; }
};

} // namespace yfw::sources

#endif

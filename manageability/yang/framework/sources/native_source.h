// Sources of native data: a device's running configuration and operational state.
#ifndef YFW_SOURCES_NATIVE_SOURCE_H
#define YFW_SOURCES_NATIVE_SOURCE_H

#include <optional>
#include <utility>

#include "yang/configuration_text.h"
#include "yang/data_tree.h"
#include "yang/instance_tree.h"

namespace yfw::sources {

// Native data at one moment. The data is never NULL.
struct Snapshot {
    yang::SharedForest data;
    // The running configuration, if it differs from the one in the data.
    std::optional<yang::SharedForest> configuration = std::nullopt;
};

// A device as read by the host. The source of a served device must be thread-safe: requests of several threads
// read it.
class NativeSource {
public:
    virtual ~NativeSource() = default;

    // The current native data, as one forest of valid data in `context`. Throws Error naming what cannot be
    // read.
    virtual yang::DataTree read(const ly_ctx *context) = 0;

    // The same for read-only use: may return the same data again while the device has not changed.
    virtual Snapshot snapshot(const ly_ctx *context) { return {yang::instance_forest(read(context).get())}; }

    // The configuration in the native data.
    virtual yang::DataTree configuration(const ly_ctx *context) {
        yang::DataTree data = read(context);
        return yang::take_configuration(data);
    }
};

} // namespace yfw::sources

#endif

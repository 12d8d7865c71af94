// A device made up of samples, to try a mapping on.
#ifndef YFW_COVERAGE_TRIED_DEVICE_H
#define YFW_COVERAGE_TRIED_DEVICE_H

#include <string>
#include <vector>

#include "coverage/coverage.h"
#include "device/managed_device.h"
#include "sources/native_source.h"

namespace yfw::coverage {

// A device without any data.
class NothingSource final : public sources::NativeSource {
public:
    yang::DataTree read(const ly_ctx *) override { return nullptr; }
};

// Borrows the schemas.
struct TriedDevice {
    TriedDevice(const yang::Schemas &schemas, const host::MappingDescription &mapping);

    // The native path of a request, with the name of its module.
    NativeUse use_of(const host::NativePath &path, bool is_edit) const;
    // The native leaf that an edit writes; NULL when it writes another node.
    const lysc_node *leaf_of(const NativeUse &use) const { return schemas.find(use.module, use.path); }
    // The value of a leaf, which is not in a list, on a device without any data; nothing when it is not there.
    std::optional<std::string> value_without_data(const lysc_node *leaf);

    const yang::Schemas &schemas;
    NothingSource nothing;
    device::ManagedDevice device;
    yang::DataTree whole;        // every node of the native modules
    device::Configuration off{}; // nothing is configured
    device::Configuration on{};  // the protocol is switched on; empty where that cannot be told
};

} // namespace yfw::coverage

#endif

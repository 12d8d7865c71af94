// The recorded device r1 with the shipped mapping, that can be reset for every input.
#ifndef YFW_FUZZ_SUPPORT_FUZZED_DEVICE_H
#define YFW_FUZZ_SUPPORT_FUZZED_DEVICE_H

#include <filesystem>

#include "base/private_directory.h"
#include "device/managed_device.h"
#include "sources/file/file_source.h"

namespace yfw::fuzz {

// The modules of the shipped mapping.
const host::MappingDescription &shipped_mapping();
const yang::Schemas &shipped_schemas();

// Only one per process at a time. It outlives resets: with its single node it keeps the plug-in loaded, and
// with it the fuzzer's coverage counters.
class FuzzedDevice {
public:
    FuzzedDevice();
    FuzzedDevice(const FuzzedDevice &) = delete;
    FuzzedDevice &operator=(const FuzzedDevice &) = delete;

    // Discards all commits. Nobody may use the device meanwhile.
    void begin_anew();

    device::ManagedDevice &device() { return device_; }
    const device::ManagedDevice &device() const { return device_; }

    // Everything the device answers, or its configuration alone.
    yang::DataTree read(host::Content content);

private:
    // A directory for the commit store alone.
    std::filesystem::path store() const { return directory_.path() / "store"; }

    PrivateDirectory directory_{"yfw-fuzz"};
    sources::FileSource recorded_;
    device::ManagedDevice device_;
};

} // namespace yfw::fuzz

#endif

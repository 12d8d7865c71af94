// The configurations of a device: the running one, and those of its commits.
#ifndef YFW_DEVICE_CONFIGURATIONS_H
#define YFW_DEVICE_CONFIGURATIONS_H

#include <cstdint>
#include <optional>

#include "device/configuration.h"
#include "device/configuration_mapper.h"
#include "device/configured_source.h"

namespace yfw::device {

// Reads them from the store, and before the first commit from the device. Everything is borrowed. Thread-safe.
class Configurations {
public:
    Configurations(ConfiguredSource &source, ConfigurationMapper &mapper) : source_(source), mapper_(mapper) {}

    // The last commit's; nothing before the first one. Throws Error.
    std::optional<Configuration> committed();

    // The last commit's or, before the first one, the device's own as the mapping reads it. Throws Error.
    Configuration running();

    // A commit's. One that an earlier version made has no OpenConfig configuration: the mapping's reading of
    // the native one takes its place. Throws Error when there is no such commit.
    Configuration of(int64_t number);
    // The same; nothing when there is no such commit.
    std::optional<Configuration> find(int64_t number);

    // Copies of these entries of a commit, and of everything outside of the lists. Nothing unless the commit is
    // the last one, and stored with its OpenConfig side.
    std::optional<Part> part(int64_t number, const IndependentEntries &entries, const EntryNames &names);

    // The device's own, before the first commit.
    Configuration recorded();

private:
    ConfiguredSource &source_;
    ConfigurationMapper &mapper_;
};

} // namespace yfw::device

#endif

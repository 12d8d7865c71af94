// The configurations of a device: the running one, and those of its commits.
#ifndef YFW_DEVICE_CONFIGURATIONS_H
#define YFW_DEVICE_CONFIGURATIONS_H

#include <mutex>
#include <optional>

#include "device/configuration.h"
#include "device/configuration_mapper.h"
#include "device/configured_source.h"
#include "yang/schemas.h"

namespace yfw::device {

// Reads them from the store, and before the first commit from the device. Everything is borrowed. Thread-safe.
class Configurations {
public:
    Configurations(const yang::Schemas &schemas, ConfiguredSource &source, ConfigurationMapper &mapper)
        : schemas_(schemas), source_(source), mapper_(mapper) {}

    // The last commit's; nothing before the first one. Throws Error.
    std::optional<Configuration> committed();

    // The last commit's or, before the first one, the device's own as the mapping reads it. Throws Error.
    Configuration running();

    // A commit's. One that an earlier version made has no OpenConfig configuration: the mapping's reading of
    // the native one takes its place. Throws Error.
    Configuration of(const commits::Commit &commit);

    // The device's own, before the first commit.
    Configuration recorded();

private:
    const yang::Schemas &schemas_;
    ConfiguredSource &source_;
    ConfigurationMapper &mapper_;

    std::mutex mutex_; // guards the members below
    struct Kept {
        int64_t number = 0;
        yang::SharedData native; // as ConfiguredSource has it: another store may have the same number
        yang::SharedData openconfig;
    };
    std::optional<Kept> kept_; // of the commit read last
};

} // namespace yfw::device

#endif

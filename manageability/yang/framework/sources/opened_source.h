// Opens a device named by a user.
#ifndef YFW_SOURCES_OPENED_SOURCE_H
#define YFW_SOURCES_OPENED_SOURCE_H

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "sources/native_source.h"
#include "sources/native_target.h"
#include "sources/neighbor_watch.h"

namespace yfw::sources {

// Where a device's native data is: in the files, or else at `device`: the directory of a recorded device, or
// "lldpd:SOCKET" for a running daemon; nothing after the colon means this machine's daemon.
struct DeviceAddress {
    std::string device;
    std::vector<std::filesystem::path> files;
};

// Identifies the device among all devices on this machine: its path, without leading and trailing slashes; for
// one given as files "files:" and their paths, whatever their order.
std::string identity_of(const DeviceAddress &address);

struct OpenedSource {
    std::unique_ptr<NativeSource> source;
    NativeTarget *target = nullptr; // the same object, if configuration is applied beyond the store
    std::unique_ptr<NeighborWatch> watch = nullptr; // NULL unless the device reports changes
};

// `serving` caches the data of a recorded device until its files change.
enum class Use { once, serving };

// Throws Error naming the device.
OpenedSource open_source(const DeviceAddress &address, Use use = Use::once);

} // namespace yfw::sources

#endif

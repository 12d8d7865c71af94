// A device as it is named by a user.
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

// Where a device's native data is: in the files, or else where `device` says: a directory of a recorded device,
// or "lldpd:SOCKET" for a running daemon; nothing after the colon means the one of this machine.
struct DeviceAddress {
    std::string device;
    std::vector<std::filesystem::path> files;
};

// Names the device among all devices of this machine: its path, without the slashes around it. Empty for one
// that is given as files.
std::string identity_of(const DeviceAddress &address);

struct OpenedSource {
    std::unique_ptr<NativeSource> source;
    NativeTarget *target = nullptr; // the same object, where configuration takes effect on more than the store
    std::unique_ptr<NeighborWatch> watch = nullptr; // of a device that tells its changes
};

// How long a device is looked at: `serving` keeps what it has read of a recorded one until its files change.
enum class Use { once, serving };

// Throws Error that names the device.
OpenedSource open_source(const DeviceAddress &address, Use use = Use::once);

} // namespace yfw::sources

#endif

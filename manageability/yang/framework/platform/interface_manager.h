// The interface manager: which interfaces exist, and the name and handle by which it knows them.
#ifndef PLATFORM_INTERFACE_MANAGER_H
#define PLATFORM_INTERFACE_MANAGER_H

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/device_view.h"
#include "yfw_map.h"

namespace yfw::platform {

// A look-up carries the name in IMC_NAME_SIZE bytes. The interface manager's spelling is the system-database
// form if it fits; a longer one is cut and ends in "%~" and a digest of the whole name, so that it fits and
// still identifies a single name.
class InterfaceManager {
public:
    // Fills in an entry's handle and status, if it has pointers for them. The status is 0,
    // IMC_STATUS_NO_SUCH_INTERFACE, or status_bad_name for a shortened spelling that `spelling` has not
    // returned and that is therefore unknown. The handle is 0 without an interface, otherwise a nonzero number
    // that identifies the interface for the life of this object.
    void find(const DeviceView &device, const imc_find_request &entry);

    // The spelling of a name; remembers which name a shortened spelling stands for.
    std::string spelling(std::string_view display_name);

    // The same without remembering; *shortened tells whether the name was shortened.
    static std::string spell(std::string_view display_name, bool *shortened);

private:
    struct Answer {
        terrno status;
        std::uint32_t handle;
    };
    Answer look_up(const DeviceView &device, std::string_view spelled);
    std::uint32_t handle_of(const std::string &display_name);

    std::unordered_map<std::string, std::string> shortened_; // spelling to display name
    std::unordered_map<std::uint32_t, std::string> handles_; // handle to display name
};

} // namespace yfw::platform

#endif

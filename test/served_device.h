// A device served over NETCONF in the test's process, assembled as in the program.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace yfw::test {

/// Serves a recorded device on a Unix socket, in its own thread, as long as the object exists. Only one may
/// exist at a time: the plug-in keeps state between its callbacks. The test program must export the operations
/// that the plug-in calls.
class ServedDevice {
public:
    /// `options`: those of `yfw serve`, each with its value, such as {"--nacm", FILE}. The commits are stored
    /// where the program stores them. Throws yfw::Error as the program does, and std::runtime_error for an
    /// option that is not supported here.
    ServedDevice(const std::filesystem::path &device, const std::filesystem::path &socket,
                 const std::map<std::string, std::string> &options);
    /// Ends the server as SIGTERM does.
    ~ServedDevice();
    ServedDevice(const ServedDevice &) = delete;
    ServedDevice &operator=(const ServedDevice &) = delete;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace yfw::test

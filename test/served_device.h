// A device served over NETCONF by the test's own process, put together as the program does it.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace yfw::test {

/// Serves a recorded device on a Unix socket, in a thread of its own, while it lives. One at a time: the
/// plug-in keeps state between its callbacks. The program that has one exports the operations that the plug-in
/// calls.
class ServedDevice {
public:
    /// `options`: of `yfw serve`, each with its value, such as {"--nacm", FILE}. The commits are where the
    /// program keeps them. Throws yfw::Error as the program does, std::runtime_error for an option that is not
    /// known here.
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

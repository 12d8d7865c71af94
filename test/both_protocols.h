// A recorded device that NETCONF and gNMI serve, in the test's own process and without a transport.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include <gnmi.pb.h>

namespace yfw::test {

/// Only one may exist at a time: the plug-in keeps state between its callbacks. The test program must export
/// the operations that the plug-in calls.
class BothProtocols {
public:
    /// The store is `store`, which need not exist.
    BothProtocols(const std::filesystem::path &device, const std::filesystem::path &store);
    ~BothProtocols();
    BothProtocols(const BothProtocols &) = delete;
    BothProtocols &operator=(const BothProtocols &) = delete;

    /// The reply to an operation, as a document.
    std::string netconf(const std::string &operation);

    /// Both throw Refusal or Error.
    ::gnmi::GetResponse get(const ::gnmi::GetRequest &request);
    ::gnmi::SetResponse set(const ::gnmi::SetRequest &request);

    /// The native configuration of the last commit, byte for byte; empty when there is none.
    std::string native() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace yfw::test

// A recorded device, and the target that serves it.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "device/service.h"
#include "frontends/gnmi/messages/refusal.h"
#include "frontends/gnmi/operations/target.h"
#include "support/files.h"
#include "written_paths.h"

namespace yfw::gnmi::test {

/// A copy of the recorded r1 with its own store. Only one may exist at a time: the plug-in keeps state between
/// its callbacks.
class ServedDevice {
public:
    /// `rules`: a <nacm> document; none by default.
    explicit ServedDevice(const std::optional<std::string> &rules = std::nullopt);

    device::Service &service() { return service_; }
    const Target &target() const { return target_; }

    /// A user who may write, to whom the rules apply.
    Caller caller(const std::string &user = "alice");

    /// Replaces a text in the device's recorded state, and tells of the change as a device does. Throws
    /// std::runtime_error when the text is not there.
    void change_state(const std::string &from, const std::string &to);

    /// Leaves nothing to be read of the device.
    void remove_files();

    /// What NETCONF's clients and `yfw get` see: the configuration as compact JSON.
    std::string configuration();

private:
    yfw::test::TemporaryDirectory directory_;
    device::ManagedDevice device_;
    device::Service service_;
    Target target_;
};

/// The code and the message that the call ends with; nothing when it succeeds.
template <class Call> std::optional<Refusal> refusal_of_call(Call &&call) {
    try {
        call();
        return std::nullopt;
    } catch (const Refusal &refusal) {
        return refusal;
    } catch (const Error &error) {
        return refusal_of(error);
    }
}

/// The schemas of the repository's models.
const yang::Schemas &schemas();

} // namespace yfw::gnmi::test

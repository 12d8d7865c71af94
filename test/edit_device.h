// A device that a test edits and observes through the program.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "support/files.h"

namespace yfw::test {

/// Everything that a failed edit must leave unchanged.
struct DeviceState {
    std::string openconfig; // the answer to a read of its configuration
    std::string native{};   // its native configuration, byte for byte; empty before the first commit
    std::string history{};  // its commits
    bool has_store = false;

    bool operator==(const DeviceState &) const = default;
};

/// For the messages of a failed comparison.
void PrintTo(const DeviceState &state, std::ostream *to);

/// A recorded device and its commit store, in a temporary directory.
class EditedDevice {
public:
    /// `native_configuration`: XML. The store does not exist before the first commit.
    explicit EditedDevice(const std::string &native_configuration);

    /// Runs a command of the program on the device.
    Outcome run(std::vector<std::string> arguments) const;

    Outcome set(const std::string &path, const std::string &value) const;
    Outcome erase(const std::string &path) const;
    /// Runs `yfw edit` with a document, XML or JSON, and further arguments.
    Outcome edit(const std::string &document, std::vector<std::string> arguments = {}) const;

    /// The answer to a read of the configuration below a path, XML. Throws std::runtime_error when the read
    /// fails.
    std::string openconfig(const std::string &path = "/lldp") const;

    /// The values that an XPath expression selects in the configuration, in the order of the answer.
    std::vector<std::string> values(const std::string &xpath) const;

    /// The native configuration of the last commit; empty when there is none.
    std::string native() const;

    /// The numbers of its commits, newest first.
    std::vector<int> commits() const;

    DeviceState state() const;

    std::filesystem::path store() const { return directory_.path() / "state" / "commits.db"; }
    const TemporaryDirectory &directory() const { return directory_; }

private:
    Outcome answered(std::vector<std::string> arguments) const;

    TemporaryDirectory directory_;
};

/// The native configuration of a device with many settings, on which LLDP is on.
std::string configured_device();

/// That of a device without configuration.
std::string empty_device();

/// That of a device on which LLDP is off globally but on for some interfaces.
std::string switched_off_device();

/// The native entry of an interface with these LLDP settings.
std::string native_interface(const std::string &name, const std::string &lldp);

/// The native configuration of all interfaces, with these entries.
std::string native_interfaces(const std::string &entries);

/// An OpenConfig document, XML, with this content below /lldp. The prefix "nc" is that of NETCONF's operation
/// attributes.
std::string lldp_document(const std::string &content);

/// The content of an XML document of the OpenConfig modules, in the form of EditedDevice::openconfig().
std::string openconfig_text(const std::string &document);

/// Fails unless the edit was committed with nothing on standard error.
void expect_committed(const Outcome &outcome);

/// Fails unless the edit was refused with one line on standard error that contains the words and ends with the
/// error tag.
void expect_refused(const Outcome &outcome, const std::vector<std::string> &words, const std::string &tag);

} // namespace yfw::test

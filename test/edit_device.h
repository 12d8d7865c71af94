// A device of a test that edits it through the program, and what can be seen of it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "support/files.h"

namespace yfw::test {

/// Everything of a device that a failed edit must leave as it was.
struct DeviceState {
    std::string openconfig; // what a read of its configuration answers
    std::string native{};   // its native configuration, byte for byte; empty before the first commit
    std::string history{};  // its commits
    bool has_store = false;

    bool operator==(const DeviceState &) const = default;
};

/// For the messages of a failed comparison.
void PrintTo(const DeviceState &state, std::ostream *to);

/// A recorded device with a store of its own, in a directory of its own.
class EditedDevice {
public:
    /// The native configuration, XML. The store does not exist before the first commit.
    explicit EditedDevice(const std::string &native_configuration);

    /// Runs a command of the program on the device.
    Outcome run(std::vector<std::string> arguments) const;

    Outcome set(const std::string &path, const std::string &value) const;
    Outcome erase(const std::string &path) const;
    /// An edit document, XML or JSON, with further arguments.
    Outcome edit(const std::string &document, std::vector<std::string> arguments = {}) const;

    /// The configuration below a path as a read answers it, XML. Throws std::runtime_error when it cannot be
    /// read.
    std::string openconfig(const std::string &path = "/lldp") const;

    /// The values of the configuration that an XPath expression selects, in the order of the answer.
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

/// The native configuration of a device on which much is configured and LLDP is on.
std::string configured_device();

/// One on which nothing is configured.
std::string empty_device();

/// One on which LLDP is switched off, with interfaces on which it is on.
std::string switched_off_device();

/// The native entry of an interface with this content of its LLDP settings.
std::string native_interface(const std::string &name, const std::string &lldp);

/// The native entries as the whole of the interfaces' configuration.
std::string native_interfaces(const std::string &entries);

/// The OpenConfig document with this content below /lldp, XML. The prefix "nc" stands for NETCONF's namespace,
/// in which the operation attributes are.
std::string lldp_document(const std::string &content);

/// What an XML document of the OpenConfig modules holds, as EditedDevice::openconfig() says it.
std::string openconfig_text(const std::string &document);

/// Succeeds when the edit was committed without a word on standard error.
void expect_committed(const Outcome &outcome);

/// Fails when the edit was not refused in one line on standard error that holds the words and ends with the
/// error tag.
void expect_refused(const Outcome &outcome, const std::vector<std::string> &words, const std::string &tag);

} // namespace yfw::test

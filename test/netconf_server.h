// A NETCONF server, and the messages that its tests send.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "netconf_client.h"
#include "served_device.h"
#include "support/answers.h"
#include "support/files.h"
#include "support/running_yfw.h"

namespace yfw::test {

/// How many more bytes a server takes with AddressSanitizer, which keeps freed memory for a while and puts red
/// zones around each allocation.
#ifdef YFW_SANITIZED
constexpr size_t kept_by_sanitizer = 256u << 20;
#else
constexpr size_t kept_by_sanitizer = 0;
#endif

/// A device that exists outside the test, as given to --device.
struct LiveDevice {
    std::string name;
};

/// Where a server runs: in the test's process, which starts at once, or as the program, for tests about the
/// process: its end, its memory, its output.
enum class Runs { here, as_program };

/// A server with its own device and state, in a temporary directory. The device is a copy of the recorded r1
/// unless another directory is given. Every local user can reach the socket.
class NetconfServer {
public:
    /// `options`: those of `yfw serve`, each followed by its value.
    explicit NetconfServer(std::vector<std::string> options = {}, Runs runs = Runs::here,
                           const std::filesystem::path &device = YFW_EXAMPLES_DIR "/r1");
    /// Serves a live device; the environment says where its state is kept. `options`: those of `yfw serve`.
    explicit NetconfServer(const LiveDevice &device, std::vector<std::string> options = {});

    /// Starts the server and waits until it accepts connections. If it exits instead, throws std::runtime_error
    /// with its output.
    void start();
    /// Ends a server that runs in the test's process.
    void stop() { served_here_.reset(); }
    /// This and the following members are for a server that runs as the program.
    RunningYfw &process() { return process_.value(); }
    /// Kills it with SIGKILL and starts it again.
    void kill_and_restart();

    /// The largest resident size so far, in bytes.
    size_t peak_memory() const;
    /// The memory of its own at present, in bytes, without what is mapped from files.
    size_t private_memory() const;
    /// The number of open descriptors of the process that the server runs in.
    size_t descriptors() const;

    std::filesystem::path socket() const { return directory_.path() / "netconf.sock"; }
    std::filesystem::path device() const { return directory_.path() / "device"; }
    std::filesystem::path directory() const { return directory_.path(); }

private:
    void start_program();
    void wait_for_hello();
    std::string process_file(const std::string &name) const;
    /// In bytes; `kind` as /proc names it.
    size_t memory(const std::string &kind) const;

    TemporaryDirectory directory_;
    std::string served_; // the value of --device
    std::vector<std::string> options_;
    Runs runs_;
    pid_t number_ = -1; // of the process
    std::optional<ServedDevice> served_here_;
    std::optional<RunningYfw> process_;
};

/// Each test has its own server.
class NetconfTest : public testing::Test {
protected:
    explicit NetconfTest(std::vector<std::string> options = {}, Runs runs = Runs::here)
        : server_(std::move(options), runs) {}
    NetconfServer &server() { return server_; }
    /// The OpenConfig modules of the repository.
    static const ly_ctx *modules();

    /// The data of a reply, strictly parsed with the OpenConfig modules, as text.
    std::string openconfig_of(const Xml &reply) const;
    /// The same for a document.
    std::string openconfig(const std::string &document) const;
    /// The values that an XPath expression selects in a datastore.
    std::vector<std::string> values(NetconfClient &client, const std::string &datastore,
                                    const std::string &xpath) const;
    /// The system name in a datastore, which many tests edit.
    std::string name(NetconfClient &client, const std::string &datastore = "running") const;
    /// All of a datastore as text.
    std::string everything(NetconfClient &client, const std::string &datastore = "running") const;

private:
    NetconfServer server_;
};

/// The same, with the server as a process of its own.
class NetconfProcessTest : public NetconfTest {
protected:
    explicit NetconfProcessTest(std::vector<std::string> options = {})
        : NetconfTest(std::move(options), Runs::as_program) {}
};

/// Fails unless the reply is <ok/>.
void expect_ok(const Xml &reply);
/// The tag of the reply's only <rpc-error>; empty when there is none.
std::string error_tag(const Xml &reply);
/// Fails unless the reply is a single error with this type and tag; returns the error.
Xml expect_error(const Xml &reply, const std::string &type, const std::string &tag);
/// A child of <error-info>; empty when there is none.
std::string error_info(const Xml &error, const std::string &name);

// --- operations ---

/// OpenConfig LLDP with this content; the prefix "nc" is NETCONF's, "types" that of openconfig-lldp-types.
std::string lldp(const std::string &content);
/// An edit that sets the system name.
std::string name_edit(const std::string &name);
/// A leaf of an edit; `operation`, here and below, is that of RFC 6241 section 7.2.
std::string leaf_edit(const std::string &name, const std::string &value, const std::string &operation = "");
/// An edit of the device's configuration with these leaves.
std::string config_edit(const std::string &leaves, const std::string &operation = "");
/// An edit of an interface; if `enabled` is empty, only its key.
std::string interface_edit(const std::string &name, const std::string &enabled,
                           const std::string &operation = "");
std::string get_config(const std::string &datastore, const std::string &filter = "");
/// `options`: the elements between the target and the configuration.
std::string edit_config(const std::string &datastore, const std::string &config,
                        const std::string &options = "");
std::string lock(const std::string &datastore);
std::string unlock(const std::string &datastore);
std::string subtree(const std::string &content);

inline const std::string nmda_namespace = "urn:ietf:params:xml:ns:yang:ietf-netconf-nmda";
inline const std::string datastores_namespace = "urn:ietf:params:xml:ns:yang:ietf-datastores";

/// An operation of RFC 8526; the prefix "ds" is that of ietf-datastores, "oc" that of OpenConfig LLDP.
std::string nmda_operation(const std::string &operation, const std::string &content);
std::string get_data(const std::string &datastore, const std::string &more = "");
std::string edit_data(const std::string &datastore, const std::string &config, const std::string &options = "");

} // namespace yfw::test

// A NETCONF server, and what its tests say to it.
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

/// Bytes that a server takes more with AddressSanitizer: what it has freed and keeps, and what it puts around
/// each piece of memory.
#ifdef YFW_SANITIZED
constexpr size_t kept_by_sanitizer = 256u << 20;
#else
constexpr size_t kept_by_sanitizer = 0;
#endif

/// A device that is not the test's own, as --device takes it.
struct LiveDevice {
    std::string name;
};

/// Where a server runs: in the test's own process, which takes no time to start, or as the program, where the
/// test is about the process: its end, its memory, its output.
enum class Runs { here, as_program };

/// A server with a directory, a device and a state of its own. The device is a copy of the recorded r1 unless
/// another directory is given. Every local user can reach the socket.
class NetconfServer {
public:
    /// `options`: of `yfw serve`, each followed by its value.
    explicit NetconfServer(std::vector<std::string> options = {}, Runs runs = Runs::here,
                           const std::filesystem::path &device = YFW_EXAMPLES_DIR "/r1");
    /// Serves a live device; where its state is kept is as the environment says.
    explicit NetconfServer(const LiveDevice &device);

    /// Starts it and waits until it takes connections. Throws std::runtime_error with what it said when it ends
    /// instead.
    void start();
    /// Ends one that runs here.
    void stop() { served_here_.reset(); }
    /// Of a server that runs as the program, here and below.
    RunningYfw &process() { return process_.value(); }
    /// SIGKILL, and start() again.
    void kill_and_restart();

    /// Bytes, the most that it ever had.
    size_t peak_memory() const;
    /// How many descriptors the process with the server has open.
    size_t descriptors() const;

    std::filesystem::path socket() const { return directory_.path() / "netconf.sock"; }
    std::filesystem::path device() const { return directory_.path() / "device"; }
    std::filesystem::path directory() const { return directory_.path(); }

private:
    void start_program();
    void wait_for_hello();
    std::string process_file(const std::string &name) const;

    TemporaryDirectory directory_;
    std::string served_; // what --device takes
    std::vector<std::string> options_;
    Runs runs_;
    pid_t number_ = -1; // of the process
    std::optional<ServedDevice> served_here_;
    std::optional<RunningYfw> process_;
};

/// Tests with a server of their own.
class NetconfTest : public testing::Test {
protected:
    explicit NetconfTest(std::vector<std::string> options = {}, Runs runs = Runs::here)
        : server_(std::move(options), runs) {}
    NetconfServer &server() { return server_; }
    /// The OpenConfig modules of the repository.
    static const ly_ctx *modules();

    /// What a reply holds, strictly parsed with the OpenConfig modules, as text.
    std::string openconfig_of(const Xml &reply) const;
    /// The same of a document's text.
    std::string openconfig(const std::string &document) const;
    /// The values in a datastore that an XPath expression selects.
    std::vector<std::string> values(NetconfClient &client, const std::string &datastore,
                                    const std::string &xpath) const;
    /// The system's name in a datastore, which the tests edit.
    std::string name(NetconfClient &client, const std::string &datastore = "running") const;
    /// All of a datastore as text.
    std::string everything(NetconfClient &client, const std::string &datastore = "running") const;

private:
    NetconfServer server_;
};

/// The same, of a process of the program.
class NetconfProcessTest : public NetconfTest {
protected:
    explicit NetconfProcessTest(std::vector<std::string> options = {})
        : NetconfTest(std::move(options), Runs::as_program) {}
};

/// Fails when the reply is not <ok/>.
void expect_ok(const Xml &reply);
/// The tag of the only <rpc-error> of the reply; empty when there is none.
std::string error_tag(const Xml &reply);
/// Fails when the reply is not one error with this type and tag; gives the error.
Xml expect_error(const Xml &reply, const std::string &type, const std::string &tag);
/// A child of <error-info>; empty when there is none.
std::string error_info(const Xml &error, const std::string &name);

// --- operations ---

/// OpenConfig LLDP with this content; the prefix "nc" is NETCONF's and "types" that of LLDP's types.
std::string lldp(const std::string &content);
/// The device's name as an edit.
std::string name_edit(const std::string &name);
/// A leaf of an edit; `operation` as of RFC 6241 section 7.2, here and below.
std::string leaf_edit(const std::string &name, const std::string &value, const std::string &operation = "");
/// The device's configuration with these leaves, as an edit.
std::string config_edit(const std::string &leaves, const std::string &operation = "");
/// An interface as an edit; without `enabled` its key alone.
std::string interface_edit(const std::string &name, const std::string &enabled,
                           const std::string &operation = "");
std::string get_config(const std::string &datastore, const std::string &filter = "");
/// `options`: what stands between the target and the configuration.
std::string edit_config(const std::string &datastore, const std::string &config,
                        const std::string &options = "");
std::string lock(const std::string &datastore);
std::string unlock(const std::string &datastore);
std::string subtree(const std::string &content);

inline const std::string nmda_namespace = "urn:ietf:params:xml:ns:yang:ietf-netconf-nmda";
inline const std::string datastores_namespace = "urn:ietf:params:xml:ns:yang:ietf-datastores";

/// An operation of RFC 8526; the prefix "ds" is that of the datastores' names, "oc" that of OpenConfig LLDP.
std::string nmda_operation(const std::string &operation, const std::string &content);
std::string get_data(const std::string &datastore, const std::string &more = "");
std::string edit_data(const std::string &datastore, const std::string &config, const std::string &options = "");

} // namespace yfw::test

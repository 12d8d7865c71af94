// Laboratories of the tests: real daemons in network namespaces, made and removed by the program.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>
#include <sys/types.h>

#include "lab/lab_directory.h"
#include "lab/topology_file.h"
#include "support/child_process.h"
#include "support/files.h"

namespace yfw::test {

/// Why no laboratory can be made here (root, lldpd, iproute2); empty when one can.
std::string lab_obstacle();

/// Whether tests that need a laboratory fail rather than skip without one: in CI, or when YFW_REQUIRE_LAB is
/// set.
bool lab_is_required();

/// Removes the laboratories of tests that were killed before they could: those whose name is `prefix` and the
/// number of a process that is gone.
void remove_laboratories_of_dead_tests(const std::string &prefix);

/// Seconds between a router's frames in the laboratories of the tests; they are forgotten after four times
/// that.
constexpr int lab_interval = 1;

/// A laboratory with a name and a directory of its own; the program's state goes there too. Removed with the
/// object. Throws std::runtime_error with what the program said when it cannot be made. One at a time.
class Laboratory {
public:
    /// The four routers of the recorded devices.
    Laboratory() : Laboratory(lab::default_topology(), "") {}
    /// What a topology file says.
    explicit Laboratory(const std::string &topology);
    ~Laboratory();
    Laboratory(const Laboratory &) = delete;
    Laboratory &operator=(const Laboratory &) = delete;

    const std::filesystem::path &directory() const { return files_.path(); }
    std::string socket(const std::string &router) const { return place_.socket(router).string(); }
    /// What --device takes.
    std::string device(const std::string &router) const { return "lldpd:" + socket(router); }

    /// What lldpcli tells: `lldpcli -f json0 show WORDS`. Throws when it does not.
    nlohmann::json ask(const std::string &router, const std::vector<std::string> &words) const;
    /// lldpcli's neighbors of a router on an interface, with all that it tells of them.
    std::vector<nlohmann::json> neighbors(const std::string &router, const std::string &interface) const;
    /// The system names of these neighbors, sorted.
    std::vector<std::string> names_heard(const std::string &router, const std::string &interface) const;
    /// `lldpcli configure WORDS`, by hand and behind the program's back.
    void configure(const std::string &router, const std::vector<std::string> &words) const;

    /// Runs `ip` in a router's namespace. Throws with what it said.
    void ip(const std::string &router, const std::vector<std::string> &words) const;

    /// Kills the daemon with all that belongs to it.
    void kill_daemon(const std::string &router);
    /// Starts it anew, as it was started first, and waits until it answers; it has forgotten everything.
    void start_daemon(const std::string &router);
    /// Stops and continues the daemon's processes, which stay alive.
    void stop_daemon(const std::string &router) const;
    void continue_daemon(const std::string &router) const;

private:
    Laboratory(lab::Topology topology, const std::string &file);
    Outcome run(const std::string &command, const std::vector<std::string> &more = {}) const;
    std::vector<pid_t> processes(const std::string &router) const;
    void signal(const std::string &router, int number) const;

    lab::Topology topology_;
    TemporaryDirectory files_;
    lab::Place place_;
    std::map<std::string, pid_t> started_; // by this object
};

} // namespace yfw::test

// Laboratories for tests: real daemons in network namespaces, created and removed by the program.
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

/// Why no laboratory can be created here (root, lldpd, iproute2); empty when one can.
std::string lab_obstacle();

/// Whether tests that need a laboratory fail rather than skip without one: in CI, or when YFW_REQUIRE_LAB is
/// set.
bool lab_is_required();

/// Removes laboratories that killed tests left behind: those whose name is `prefix` followed by the number of a
/// process that no longer exists.
void remove_laboratories_of_dead_tests(const std::string &prefix);

/// Seconds between a router's frames in test laboratories; neighbors expire after four times that.
constexpr int lab_interval = 1;

/// A laboratory with its own name and directory, which also holds the program's state. Removed with the object.
/// Only one may exist at a time.
class Laboratory {
public:
    /// The four routers of the recorded devices. Both constructors throw std::runtime_error with the program's
    /// message when the laboratory cannot be created.
    Laboratory() : Laboratory(lab::default_topology(), "") {}
    /// `topology`: the content of a topology file.
    explicit Laboratory(const std::string &topology);
    ~Laboratory();
    Laboratory(const Laboratory &) = delete;
    Laboratory &operator=(const Laboratory &) = delete;

    const std::filesystem::path &directory() const { return files_.path(); }
    std::string socket(const std::string &router) const { return place_.socket(router).string(); }
    /// The value of --device for a router.
    std::string device(const std::string &router) const { return "lldpd:" + socket(router); }

    /// The output of `lldpcli -f json0 show WORDS`. Throws when it fails.
    nlohmann::json ask(const std::string &router, const std::vector<std::string> &words) const;
    /// The neighbors that a router hears on an interface, as lldpcli reports them.
    std::vector<nlohmann::json> neighbors(const std::string &router, const std::string &interface) const;
    /// The system names of these neighbors, sorted.
    std::vector<std::string> names_heard(const std::string &router, const std::string &interface) const;
    /// Runs `lldpcli configure WORDS`, bypassing the program.
    void configure(const std::string &router, const std::vector<std::string> &words) const;

    /// Runs `ip` in a router's namespace. Throws with its message when it fails.
    void ip(const std::string &router, const std::vector<std::string> &words) const;

    /// Sends frames, as they are, from an interface of a router. Throws when they cannot be sent.
    void send(const std::string &router, const std::string &interface,
              const std::vector<std::string> &frames) const;

    /// Kills the daemon and the processes that it started.
    void kill_daemon(const std::string &router);
    /// Starts the daemon again with its original arguments, and waits until it answers. It has no state left.
    void start_daemon(const std::string &router);
    /// Suspends and resumes the daemon's processes.
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
    std::map<std::string, pid_t> started_; // those started by this object
};

} // namespace yfw::test

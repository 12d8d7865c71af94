// A laboratory: real LLDP daemons on routers, each router in its own network namespace on this machine.
#ifndef YFW_LAB_LAB_H
#define YFW_LAB_LAB_H

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "lab/lab_directory.h"
#include "lab/topology_file.h"

namespace yfw::lab {

// Called with one line before each step.
using Progress = std::function<void(const std::string &)>;

// Creates the laboratory and waits until every daemon answers and is configured. First removes what an earlier
// `up` left behind when it was killed. Removes everything it has created when it fails or is interrupted by
// SIGINT, SIGTERM or SIGHUP. `tx_interval` in seconds. Throws Error for what the user can change (no root, no
// lldpd, a laboratory that is already up) and std::runtime_error for anything else. Call while no other thread
// is running.
void up(const Place &place, const Topology &topology, int tx_interval, const Progress &progress);

// Removes everything that the laboratory created; returns false when there was nothing. Throws like `up`.
bool down(const Place &place, const Progress &progress);

struct RouterStatus {
    std::string name;
    std::filesystem::path socket;
    bool running = false; // whether its daemon is running
};

struct Status {
    enum class Phase { none, incomplete, up };

    Phase phase = Phase::none; // incomplete: `up` is running or was killed
    std::vector<RouterStatus> routers;
    std::vector<Link> links;
    std::vector<Segment> segments;
};

// Does not need root. Throws Error when the laboratory's file cannot be read.
Status status(const Place &place);

// Records every router's daemon in five files (ROUTER-neighbors.json and so on) in the directory, which is
// created if missing. First waits up to half a minute until every port has heard the ports it is connected to;
// returns the ports that have not. Throws like `up`.
std::vector<Port> record(const Place &place, const std::filesystem::path &directory, const Progress &progress);

struct LabRouter {
    std::string name;
    std::filesystem::path socket;
};

// The routers of a running laboratory. Throws Error when it is not up. Does not need root.
std::vector<LabRouter> running_lab(const std::string &name = Place().name,
                                   const std::filesystem::path &base = Place().base);

} // namespace yfw::lab

#endif

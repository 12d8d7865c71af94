// A laboratory: real LLDP daemons on routers that are network namespaces of this machine.
#ifndef YFW_LAB_LAB_H
#define YFW_LAB_LAB_H

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "lab/lab_directory.h"
#include "lab/topology_file.h"

namespace yfw::lab {

// Told about each step before it is done, in one line.
using Progress = std::function<void(const std::string &)>;

// Makes the laboratory and waits until every daemon answers and is configured. What an earlier `up` that was
// killed has left is removed first. When it fails, or is interrupted by SIGINT, SIGTERM or SIGHUP, all that it
// made is removed. `tx_interval` in seconds. Throws Error for what the user can change (no root, no
// lldpd, a laboratory that is up already) and std::runtime_error for the rest. To be called while no other
// thread runs.
void up(const Place &place, const Topology &topology, int tx_interval, const Progress &progress);

// Removes everything that the laboratory made; false when there was nothing. Throws like `up`.
bool down(const Place &place, const Progress &progress);

struct RouterStatus {
    std::string name;
    std::filesystem::path socket;
    bool running = false; // its daemon
};

struct Status {
    enum class Phase { none, incomplete, up };

    Phase phase = Phase::none; // incomplete: an `up` is at work or was killed
    std::vector<RouterStatus> routers;
    std::vector<Link> links;
    std::vector<Segment> segments;
};

// Needs no root. Throws Error when the laboratory's file cannot be read.
Status status(const Place &place);

// Writes what every router's daemon says as the five files of a recording, ROUTER-neighbors.json and so on,
// into the directory, which is made when it is missing. Waits, half a minute at the most, until every port has
// heard whom it is connected to; gives the ports that have not. Throws like `up`.
std::vector<Port> record(const Place &place, const std::filesystem::path &directory, const Progress &progress);

struct LabRouter {
    std::string name;
    std::filesystem::path socket;
};

// The routers of a laboratory that is up. Throws Error when it is not. Needs no root.
std::vector<LabRouter> running_lab(const std::string &name = Place().name,
                                   const std::filesystem::path &base = Place().base);

} // namespace yfw::lab

#endif

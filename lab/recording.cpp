#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <thread>

#include <unistd.h>

#include "base/error.h"
#include "lab/daemon_questions.h"
#include "lab/interruption.h"
#include "lab/lab.h"
#include "lab/lab_state.h"

namespace yfw::lab {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

struct Question {
    const char *file; // the part after the router's name
    std::vector<std::string> words;
};

const Question questions[] = {{"neighbors", {"neighbors", "details"}},
                              {"interfaces", {"interfaces", "details"}},
                              {"statistics", {"statistics"}},
                              {"chassis", {"chassis", "details"}},
                              {"configuration", {"configuration"}}};

std::vector<Port> ports_that_miss_neighbors(const Place &place, const Topology &topology) {
    std::map<std::string, std::map<std::string, size_t>> heard;
    for (const Router &router : topology.routers)
        heard[router.name] = neighbors_heard(place.socket(router.name));
    std::vector<Port> missing;
    for (const auto &[port, expected] : topology.peers())
        if (heard[port.router][port.interface] < expected)
            missing.push_back(port);
    return missing;
}

std::vector<Port> wait_for_neighbors(const Place &place, const LabState &state) {
    constexpr std::chrono::milliseconds pause{200};
    const auto deadline = Clock::now() + std::chrono::seconds(std::max(30, 3 * state.tx_interval));
    for (;;) {
        std::vector<Port> missing = ports_that_miss_neighbors(place, state.topology);
        Interruption::check();
        if (missing.empty() || Clock::now() >= deadline)
            return missing;
        std::this_thread::sleep_for(pause);
    }
}

void write(const fs::path &file, const std::string &text) {
    std::ofstream stream(file, std::ios::binary);
    if (!(stream << text).flush())
        throw std::runtime_error(file.string() + ": cannot be written");
}

} // namespace

std::vector<Port> record(const Place &given, const fs::path &directory, const Progress &progress) {
    if (::geteuid() != 0)
        throw Error(ErrorTag::resource_denied, "",
                    "recording needs root to query the daemons: run it with sudo");
    const Place place = checked(given);
    const std::vector<LabRouter> routers = running_lab(place.name, place.base);
    const Interruption interruption;
    progress("waiting until every router has heard its neighbors");
    std::vector<Port> missing = wait_for_neighbors(place, *load(place));
    // Queries everything before writing anything, so that an old recording is never mixed with half of a new
    // one.
    std::vector<std::pair<fs::path, std::string>> files;
    for (const LabRouter &router : routers) {
        progress("recording " + router.name);
        for (const Question &question : questions)
            files.emplace_back(directory / (router.name + "-" + question.file + ".json"),
                               ask_daemon(router.socket, question.words));
    }
    fs::create_directories(directory);
    for (const auto &[file, text] : files)
        write(file, text);
    return missing;
}

} // namespace yfw::lab

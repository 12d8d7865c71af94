#include "lab/removal.h"

#include <stdexcept>

#include "lab/daemon.h"
#include "lab/lab_state.h"
#include "lab/network.h"

namespace yfw::lab {
namespace {

namespace fs = std::filesystem;

ino_t recorded_inode(const LabState &state, const std::string &name) {
    for (const NamespaceRecord &record : state.namespaces)
        if (record.name == name)
            return record.inode;
    return 0;
}

void end_processes(const Place &place, const LabState &state, const Progress &progress) {
    if (state.daemons.empty() || state.boot != boot_identity())
        return;
    progress("ending the daemons");
    std::vector<StartedDaemon> daemons;
    for (const DaemonRecord &daemon : state.daemons)
        daemons.emplace_back(daemon.process, recorded_inode(state, place.namespace_of(daemon.router)));
    stop_daemons(daemons);
}

void remove_namespaces(const Place &place, const LabState &state, const LabDirectory &directory,
                       const Progress &progress) {
    for (const NamespaceRecord &record : state.namespaces) {
        const ino_t inode = inode_of_namespace(record.name);
        if (!fs::exists(namespace_file(record.name)))
            continue;
        // Someone else's namespace now has the name. Inodes from an earlier boot mean nothing, but then no
        // namespace of ours has survived either.
        if (state.boot != boot_identity() || (record.inode != 0 && record.inode != inode)) {
            progress("leaving the namespace " + record.name + " alone, which somebody else created");
            continue;
        }
        progress("removing the namespace " + record.name);
        Network(place, directory.lock()).remove_namespace(record.name);
    }
}

void remove_files(const Place &place, const LabState &state) {
    for (const Router &router : state.topology.routers)
        for (const fs::path &file : {place.socket(router.name), place.socket_lock(router.name),
                                     place.configuration(router.name), place.log(router.name)})
            fs::remove(file);
}

} // namespace

void remove_made(const Place &place, const LabDirectory &directory, const Progress &progress) {
    if (const std::optional<LabState> state = load(place)) {
        end_processes(place, *state, progress);
        remove_namespaces(place, *state, directory, progress);
        remove_files(place, *state);
    }
    fs::remove(place.new_state_file());
    fs::remove(place.state_file()); // last: until then, the removal can be repeated
}

void remove_all(const Place &place, LabDirectory &directory, const Progress &progress) {
    remove_made(place, directory, progress);
    if (!directory.remove())
        throw std::runtime_error(place.directory().string() +
                                 ": not removed, it contains files that the laboratory did not create");
}

} // namespace yfw::lab

#include "lab/lab_state.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "base/error.h"
#include "lab/json_reader.h"

namespace yfw::lab {
namespace {

using nlohmann::json;
constexpr long long largest = 0x7fffffffffffffff;
constexpr long long largest_process = 0x7fffffff;

json to_json(const LabState &state) {
    json namespaces = json::array(), daemons = json::array();
    for (const NamespaceRecord &record : state.namespaces)
        namespaces.push_back({{"name", record.name}, {"inode", record.inode}});
    for (const DaemonRecord &record : state.daemons)
        daemons.push_back(
            {{"router", record.router}, {"process", record.process.number}, {"start", record.process.start}});
    return {{"complete", state.complete},        {"boot", state.boot},       {"tx-interval", state.tx_interval},
            {"topology", state.topology.source}, {"namespaces", namespaces}, {"daemons", daemons}};
}

LabState from_json(const json &value, const std::string &file) {
    const JsonReader reader(value, file);
    reader.is_object_of({"complete", "boot", "tx-interval", "topology", "namespaces", "daemons"});
    LabState state;
    state.complete = value.value("complete", json()) == json(true);
    state.boot = reader.member("boot", "a text").text("a text");
    state.tx_interval = static_cast<int>(reader.member("tx-interval", "a number").number(1, largest_process));
    reader.member("topology", "a topology");
    state.topology = read_topology(value["topology"], file + ": topology");
    for (const JsonReader &item : reader.member("namespaces", "an array").items("an array"))
        state.namespaces.push_back({item.member("name", "a text").text("a text"),
                                    static_cast<ino_t>(item.member("inode", "a number").number(0, largest))});
    for (const JsonReader &item : reader.member("daemons", "an array").items("an array"))
        state.daemons.push_back(
            {item.member("router", "a text").text("a text"),
             {static_cast<pid_t>(item.member("process", "a number").number(1, largest_process)),
              static_cast<unsigned long long>(item.member("start", "a number").number(0, largest))}});
    return state;
}

} // namespace

const DaemonRecord *LabState::daemon_of(const std::string &router) const {
    const auto found = std::find_if(daemons.begin(), daemons.end(),
                                    [&](const DaemonRecord &daemon) { return daemon.router == router; });
    return found == daemons.end() ? nullptr : &*found;
}

bool LabState::runs(const std::string &router) const {
    const DaemonRecord *daemon = daemon_of(router);
    return daemon != nullptr && boot == boot_identity() && is_running(daemon->process);
}

void save(const LabState &state, const Place &place) {
    {
        std::ofstream stream(place.new_state_file(), std::ios::binary);
        if (!(stream << to_json(state).dump(2) << '\n').flush())
            throw std::runtime_error(place.new_state_file().string() + ": cannot be written");
    }
    std::filesystem::rename(place.new_state_file(), place.state_file());
}

std::optional<LabState> load(const Place &place) {
    const std::string file = place.state_file().string();
    check_owner(place);
    if (!std::filesystem::exists(file))
        return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad())
        throw Error(ErrorTag::operation_failed, file, "cannot be read");
    return from_json(parse_json(text, file), file);
}

} // namespace yfw::lab

#include "lab/daemon_questions.h"

#include <stdexcept>

#include <nlohmann/json.hpp>

#include "base/run_program.h"
#include "lab/programs.h"

namespace yfw::lab {
namespace {

using nlohmann::json;

json answer(const std::filesystem::path &socket, const std::vector<std::string> &words) {
    json parsed = json::parse(ask_daemon(socket, words), nullptr, false);
    if (parsed.is_discarded())
        throw std::runtime_error(socket.string() + ": lldpcli did not print JSON");
    return parsed;
}

} // namespace

std::string ask_daemon(const std::filesystem::path &socket, const std::vector<std::string> &words) {
    constexpr std::chrono::seconds limit{10};
    std::vector<std::string> arguments{lldpcli_program(), "-u", socket.string(), "-f", "json0", "show"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    Finished finished = run(arguments, -1, limit);
    if (finished.status != 0)
        throw std::runtime_error(socket.string() + ": the daemon does not answer: " + finished.reason());
    return std::move(finished.output);
}

std::optional<std::string> configured_name(const std::filesystem::path &socket) {
    try {
        const json name =
            answer(socket, {"configuration"}).at("/configuration/0/config/0/hostname/0/value"_json_pointer);
        return name.get<std::string>();
    } catch (const json::exception &) { // no name yet
        return std::nullopt;
    } catch (const std::runtime_error &) { // no answer yet
        return std::nullopt;
    }
}

std::map<std::string, size_t> neighbors_heard(const std::filesystem::path &socket) {
    std::map<std::string, size_t> heard;
    const json parsed = answer(socket, {"neighbors"});
    const json::json_pointer list("/lldp/0/interface");
    if (parsed.contains(list))
        for (const json &neighbor : parsed.at(list))
            ++heard[neighbor.value("name", "")];
    return heard;
}

std::vector<std::string> silent_interfaces(const std::filesystem::path &socket) {
    std::vector<std::string> silent;
    const json parsed = answer(socket, {"statistics"});
    const json::json_pointer list("/lldp/0/interface");
    const json::json_pointer sent("/tx/0/tx");
    if (parsed.contains(list))
        for (const json &interface : parsed.at(list))
            if (interface.value(sent, "0") == "0")
                silent.push_back(interface.value("name", ""));
    return silent;
}

} // namespace yfw::lab

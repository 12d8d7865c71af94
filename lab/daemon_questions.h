// Queries to a router's daemon through lldpcli.
#ifndef YFW_LAB_DAEMON_QUESTIONS_H
#define YFW_LAB_DAEMON_QUESTIONS_H

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace yfw::lab {

// Runs `lldpcli -u SOCKET -f json0 show WORDS` and returns its output. Throws std::runtime_error with the
// socket and the reason.
std::string ask_daemon(const std::filesystem::path &socket, const std::vector<std::string> &words);

// The system name that the daemon is configured with; nothing while it does not answer or has no name yet.
std::optional<std::string> configured_name(const std::filesystem::path &socket);

// The number of neighbors that the daemon has heard on each interface. Throws std::runtime_error.
std::map<std::string, size_t> neighbors_heard(const std::filesystem::path &socket);

// The interfaces on which the daemon has not yet sent a frame. Throws std::runtime_error.
std::vector<std::string> silent_interfaces(const std::filesystem::path &socket);

} // namespace yfw::lab

#endif

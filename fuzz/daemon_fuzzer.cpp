// The fuzz target for a daemon's answers: whatever neighbors, and those who configure the daemon, can make an
// lldpd say. An input is read from its start, and at its end there are zeros:
//
//   bytes 0 and 1  where the connection is closed, counted in bytes from the end of the answers, little-endian;
//                  0: after the last one
//   the rest       the values in the answers, see daemon_answers()
//
// Only values change: numbers, texts, octets and their lengths, how many elements lists have, and which fields
// are missing. The structure of the messages, such as pointers and the sizes that belong to them, is always
// that of a daemon. liblldpctl trusts it, as its peer is a process of root, and would crash by itself; this
// tests the code behind it.
//
// All answers are in the socket before the first question, so that no run waits for another thread.
#include <algorithm>
#include <optional>
#include <string>

#include <lldp-const.h>
#include <sys/socket.h>

#include "base/descriptor.h"
#include "base/error.h"
#include "fuzz/support/daemon_answers.h"
#include "fuzz/support/fuzz_target.h"
#include "fuzz/support/fuzzed_device.h"
#include "sources/lldpd/connection.h"
#include "sources/lldpd/native_data.h"
#include "sources/lldpd/reader.h"
#include "yang/tree_text.h"
#include "yang/yang_text.h"

namespace yfw::fuzz {
namespace {

namespace lldpd = sources::lldpd;

constexpr const char *socket_name = "/run/lldpd.socket";

// The client's end of a connection whose other end has sent these bytes.
Descriptor connection_with(std::string_view bytes) {
    int ends[2];
    require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0, "There are no sockets.", "");
    Descriptor client(ends[0]);
    static Descriptor daemon; // stays open for the client's questions until the next connection
    daemon = Descriptor(ends[1]);
    constexpr int buffer = 1 << 20;
    setsockopt(daemon.get(), SOL_SOCKET, SO_SNDBUF, &buffer, sizeof buffer);
    const ssize_t sent = send(daemon.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    require(sent == static_cast<ssize_t>(bytes.size()), "The answers are too long.", "");
    shutdown(daemon.get(), SHUT_WR);
    return client;
}

// What is read from a daemon that answers so; nothing when it is refused.
std::optional<lldpd::State> read(std::string_view answers) {
    const lldpd::Connection connection(socket_name, connection_with(answers));
    try {
        return lldpd::read_state(connection);
    } catch (const Error &error) {
        require(error.path() == connection.place(), "A refusal does not name the daemon.", error.path());
        require(is_one_line(error.what()), "A refusal is not one line.", error.what());
        return std::nullopt;
    }
}

// A text that is empty reads like one that is missing.
void check_text(const std::optional<std::string> &read, const std::optional<std::string> &said) {
    require(read.value_or("") == said.value_or(""), "A text differs.", read.value_or(""));
}

void check_chassis(const lldpd::Chassis &read, const ChassisAnswer &said) {
    require(read.id_octets == said.id, "The octets of a chassis id differ.", read.id_octets);
    check_text(read.name, said.name);
    check_text(read.description, said.description);
    require(read.capabilities.has_value() == (said.structure.available != 0), "Capabilities are missing.", "");
}

void check_neighbors(const lldpd::Port &read, std::vector<PortAnswer> &said) {
    const ChassisAnswer *chassis = nullptr;
    auto neighbor = read.neighbors.rbegin();
    for (auto port = said.rbegin(); port != said.rend(); ++port) {
        chassis = port->chassis.has_value() ? &*port->chassis : chassis;
        if (port->structure.protocol != LLDPD_MODE_LLDP)
            continue;
        require(neighbor != read.neighbors.rend(), "A neighbor is missing.", "");
        check_chassis(neighbor->chassis, *chassis);
        require(neighbor->port_id_octets == port->id, "The octets of a port id differ.", "");
        check_text(neighbor->port_description, port->description);
        require(neighbor->changed_at == static_cast<uint64_t>(port->structure.changed_at), "A time differs.",
                "");
        require(neighbor->tlvs.size() >= port->unknown.size(), "A TLV is missing.", "");
        ++neighbor;
    }
    require(neighbor == read.neighbors.rend(), "There is a neighbor too many.", "");
}

// The library returns counters as signed numbers.
std::optional<uint64_t> counted(uint64_t counter) {
    return counter <= INT64_MAX ? std::optional(counter) : std::nullopt;
}

void check_port(const lldpd::Port &read, InterfaceAnswer &said) {
    const uint8_t flags = said.structure.port.flags;
    require(read.status == lldpd::PortStatus{(flags & transmits_nothing) == 0, (flags & receives_nothing) == 0},
            "The status of a port differs.", read.name);
    require(read.counters.transmitted == counted(said.structure.transmitted) &&
                read.counters.aged_out == counted(said.structure.aged_out),
            "The counters of a port differ.", read.name);
    check_neighbors(read, said.neighbors);
}

void check_state(const lldpd::State &state, DaemonAnswers &said) {
    check_chassis(state.local, said.chassis);
    require(state.settings.paused == (said.configuration.structure.paused != 0), "A setting differs.", "");
    auto port = state.ports.begin();
    for (size_t i = 0; i < said.names.size(); i++)
        if (yang::is_yang_text(said.names[i].name)) {
            require(port != state.ports.end(), "A port is missing.", "");
            check_port(*port++, *said.interfaces[i]);
        }
    require(port == state.ports.end(), "There is a port too many.", "");
}

void check_allowed(yang::DataTree data) {
    lyd_node *first = data.release();
    const LY_ERR status = lyd_validate_all(&first, nullptr, LYD_VALIDATE_PRESENT, nullptr);
    data.reset(first);
    require(status == LY_SUCCESS, "The models do not allow the data.",
            yang::printed(first, LYD_XML, LYD_PRINT_WITHSIBLINGS).c_str());
}

// Whether no interface has vanished before it was asked for.
bool are_there(const DaemonAnswers &answers) {
    for (size_t i = 0; i < answers.names.size(); i++)
        if (yang::is_yang_text(answers.names[i].name) && !answers.interfaces[i].has_value())
            return false;
    return true;
}

} // namespace

void run(std::string_view bytes) {
    static const bool is_known = std::string_view(YFW_LLDPCTL_VERSION) == known_lldpd;
    if (!is_known) // its structures are others
        return;
    Input input(bytes);
    const size_t missing = input.number();
    DaemonAnswers answers = daemon_answers(input);
    std::string messages = messages_of(answers);
    messages.resize(messages.size() - std::min(missing, messages.size()));
    const std::optional<lldpd::State> state = read(messages);
    const bool is_complete = missing == 0 && are_there(answers);
    require(state.has_value() == is_complete, "Answers are refused, or half of them are taken.", "");
    if (!state.has_value())
        return;
    check_state(*state, answers);
    check_allowed(lldpd::operational_data(shipped_schemas().context(), *state));
    check_allowed(lldpd::configuration_data(shipped_schemas().context(), *state));
}

} // namespace yfw::fuzz

// The fuzz target for a daemon's answers. An input is a list of changes to the answers that an lldpd gave,
// recorded from its control socket in recorded-answers. The first change is to the first answer that is asked
// for, and so on. Each has four bytes:
//
//   byte 0         the size of the pieces in which the answer arrives, in bytes; 0: in one piece
//   byte 1         the change: see AnswerChange
//   bytes 2 and 3  the number that it takes, little-endian
//
// The content of an answer is not changed: liblldpctl trusts the pointers in it, and frees what two of them
// share twice.
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "base/error.h"
#include "fuzz/support/answering_daemon.h"
#include "fuzz/support/fuzz_target.h"
#include "fuzz/support/fuzzed_device.h"
#include "sources/lldpd/connection.h"
#include "sources/lldpd/native_data.h"
#include "sources/lldpd/reader.h"
#include "yang/forest.h"
#include "yang/tree_text.h"

namespace yfw::fuzz {
namespace {

namespace lldpd = sources::lldpd;

// A daemon here answers at once or closes the connection, so no wait takes as long.
constexpr std::chrono::seconds bound{5};

AnswerChange change_of(Input &input) {
    AnswerChange change;
    change.portion = input.byte();
    const uint8_t kind = input.byte();
    change.number = input.number();
    change.kind = static_cast<AnswerChange::Kind>(kind % AnswerChange::kinds);
    return change;
}

std::vector<AnswerChange> changes_of(std::string_view bytes) {
    constexpr size_t most = 16;
    Input input(bytes);
    std::vector<AnswerChange> changes;
    while (!input.is_empty() && changes.size() < most)
        changes.push_back(change_of(input));
    return changes;
}

// Without what changes with time.
std::string text_of(lldpd::State state) {
    for (lldpd::Port &port : state.ports)
        for (lldpd::Neighbor &neighbor : port.neighbors) {
            neighbor.age.reset();
            neighbor.last_update.reset();
        }
    const ly_ctx *context = shipped_schemas().context();
    yang::DataTree data = lldpd::operational_data(context, state);
    yang::join(data, lldpd::configuration_data(context, state));
    return yang::printed(data.get(), LYD_XML, LYD_PRINT_WITHSIBLINGS).c_str();
}

// What is read from a daemon with these changes; nothing when it is refused.
std::optional<std::string> read(const ControlSocket &socket, std::vector<AnswerChange> changes) {
    const AnsweringDaemon daemon(socket, std::move(changes));
    const lldpd::Connection connection(socket.path(), bound);
    try {
        return text_of(lldpd::read_state(connection));
    } catch (const Error &error) {
        require(error.path() == connection.place(), "A refusal does not name the daemon.", error.path());
        require(is_one_line(error.what()), "A refusal is not one line.", error.what());
        return std::nullopt;
    }
}

} // namespace

void run(std::string_view bytes) {
    static const ControlSocket socket(read_file(YFW_RECORDED_ANSWERS));
    // Nothing where this machine's liblldpctl does not understand the recording.
    static const std::optional<std::string> whole = read(socket, {});
    const auto start = std::chrono::steady_clock::now();
    const std::optional<std::string> state = read(socket, changes_of(bytes));
    require(!state.has_value() || state == whole, "A daemon's state differs from what it has said.",
            state.value_or(""));
    require(std::chrono::steady_clock::now() - start < bound, "Reading takes too long.", "");
}

} // namespace yfw::fuzz

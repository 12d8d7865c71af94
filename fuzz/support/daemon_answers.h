// Everything that a daemon answers when its state is read, made from a fuzzer's input.
#ifndef YFW_FUZZ_SUPPORT_DAEMON_ANSWERS_H
#define YFW_FUZZ_SUPPORT_DAEMON_ANSWERS_H

#include <optional>
#include <string>
#include <vector>

#include "fuzz/support/daemon_messages.h"
#include "fuzz/support/fuzz_target.h"

namespace yfw::fuzz {

struct DaemonAnswers {
    ChassisAnswer chassis;
    Configuration configuration;
    std::vector<InterfaceName> names;
    // Nothing for an interface that has vanished since its name was told. liblldpctl takes the daemon's answer
    // to that for an error of the connection.
    std::vector<std::optional<InterfaceAnswer>> interfaces;
};

// Reads each value where its structure is filled: numbers as they are, before a text or octets the length,
// before the elements of a list how many there are. At the end of the input there are zeros.
DaemonAnswers daemon_answers(Input &input);

// The messages, in the order in which they are asked for.
std::string messages_of(DaemonAnswers &answers);

} // namespace yfw::fuzz

#endif

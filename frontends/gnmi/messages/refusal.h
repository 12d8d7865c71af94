// Why a request is refused, as its status says.
#ifndef YFW_FRONTENDS_GNMI_MESSAGES_REFUSAL_H
#define YFW_FRONTENDS_GNMI_MESSAGES_REFUSAL_H

#include <stdexcept>
#include <string>

#include "base/error.h"

namespace yfw::gnmi {

// The canonical codes of gRPC that requests end with, by their numbers.
enum class Code {
    invalid_argument = 3,
    not_found = 5,
    already_exists = 6,
    permission_denied = 7,
    resource_exhausted = 8,
    failed_precondition = 9,
    unimplemented = 12,
    internal = 13,
    unavailable = 14,
    unauthenticated = 16
};

class Refusal : public std::runtime_error {
public:
    Refusal(Code code, const std::string &message) : std::runtime_error(message), code_(code) {}

    Code code() const { return code_; }

private:
    Code code_;
};

// The refusal that tells a client of an error: its path, if any, and its message. `place`: what the error
// happened in, such as an operation of a Set.
Refusal refusal_of(const Error &error, const std::string &place = "");

} // namespace yfw::gnmi

#endif

#include "frontends/gnmi/transport/request_log.h"

#include <array>

#include "device/events/actor_text.h"
#include "yang/yang_text.h"

namespace yfw::gnmi {
namespace {

constexpr size_t longest_line = 2000; // octets

constexpr std::array<const char *, 17> code_names{
    "OK",        "CANCELLED",      "UNKNOWN",           "INVALID_ARGUMENT",   "DEADLINE_EXCEEDED",
    "NOT_FOUND", "ALREADY_EXISTS", "PERMISSION_DENIED", "RESOURCE_EXHAUSTED", "FAILED_PRECONDITION",
    "ABORTED",   "OUT_OF_RANGE",   "UNIMPLEMENTED",     "INTERNAL",           "UNAVAILABLE",
    "DATA_LOSS", "UNAUTHENTICATED"};

std::string text_of(const grpc::Status &status) {
    const auto code = static_cast<size_t>(status.error_code());
    return std::string(code < code_names.size() ? code_names[code] : "UNKNOWN") +
           (status.error_message().empty() ? "" : ": " + status.error_message());
}

} // namespace

void RequestLog::line(const Credentials &by, const std::string &text) const {
    const std::string user = by.certified.value_or(by.user);
    const std::string who = !user.empty() ? events::described({0, user, by.host})
                                          : "a client" + (by.host.empty() ? "" : " from " + by.host);
    say_(yang::shortened(who + ": " + text, longest_line));
}

void RequestLog::refused(const Credentials &by, std::string_view rpc, const grpc::Status &status) const {
    line(by, std::string(rpc) + " is refused: " + text_of(status));
}

void RequestLog::done(const Credentials &by, std::string_view rpc) const {
    line(by, std::string(rpc) + " is done");
}

void RequestLog::stream_begins(const Credentials &by) const {
    line(by, "a stream begins");
}

void RequestLog::stream_ends(const Credentials &by, const grpc::Status &status) const {
    line(by, "a stream ends: " + (status.ok() ? "the client has enough" : text_of(status)));
}

} // namespace yfw::gnmi

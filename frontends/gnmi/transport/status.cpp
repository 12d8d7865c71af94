#include "frontends/gnmi/transport/status.h"

#include <exception>

#include "base/interruption.h"
#include "base/printable.h"

namespace yfw::gnmi {
namespace {

// Clients limit the size of headers, and a status travels in them.
constexpr size_t longest_message = 2048;

// A message may quote what a client sent.
grpc::Status status_with(Code code, const std::string &text) {
    std::string message = printable(text);
    if (message.size() > longest_message)
        message.replace(longest_message, std::string::npos, "...");
    return {static_cast<grpc::StatusCode>(code), message};
}

} // namespace

grpc::Status status_of(const Refusal &refusal) {
    return status_with(refusal.code(), refusal.what());
}

grpc::Status status_of(const std::function<void()> &work) {
    try {
        work();
        return grpc::Status::OK;
    } catch (const Refusal &refusal) {
        return status_of(refusal);
    } catch (const Error &error) {
        return status_of(refusal_of(error));
    } catch (const Interrupted &) {
        return grpc::Status(grpc::StatusCode::CANCELLED, "the client has cancelled it, or the server ends");
    } catch (const std::exception &error) {
        return status_with(Code::internal, error.what());
    }
}

} // namespace yfw::gnmi

// What the server tells its operator: one line for each Set, for each refusal, and for the begin and the end of
// each stream that lasts.
#ifndef YFW_FRONTENDS_GNMI_TRANSPORT_REQUEST_LOG_H
#define YFW_FRONTENDS_GNMI_TRANSPORT_REQUEST_LOG_H

#include <functional>
#include <string>
#include <string_view>

#include <grpcpp/support/status.h>

#include "frontends/gnmi/transport/authentication.h"

namespace yfw::gnmi {

// Immutable: any thread may call any member.
class RequestLog {
public:
    // `say`: takes one line at a time, on any thread.
    explicit RequestLog(std::function<void(const std::string &)> say) : say_(std::move(say)) {}

    void refused(const Credentials &by, std::string_view rpc, const grpc::Status &status) const;
    void done(const Credentials &by, std::string_view rpc) const;
    void stream_begins(const Credentials &by) const;
    void stream_ends(const Credentials &by, const grpc::Status &status) const;

private:
    void line(const Credentials &by, const std::string &text) const;

    const std::function<void(const std::string &)> say_;
};

} // namespace yfw::gnmi

#endif

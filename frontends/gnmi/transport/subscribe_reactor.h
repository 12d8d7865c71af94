// A client's Subscribe on gRPC.
#ifndef YFW_FRONTENDS_GNMI_TRANSPORT_SUBSCRIBE_REACTOR_H
#define YFW_FRONTENDS_GNMI_TRANSPORT_SUBSCRIBE_REACTOR_H

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include <grpcpp/support/byte_buffer.h>
#include <grpcpp/support/server_callback.h>

#include "base/worker_pool.h"
#include "frontends/gnmi/operations/target.h"
#include "frontends/gnmi/subscriptions/publisher.h"
#include "frontends/gnmi/subscriptions/stream.h"
#include "frontends/gnmi/transport/authentication.h"
#include "frontends/gnmi/transport/request_log.h"

namespace yfw::gnmi {

// What all streams use; borrowed.
struct StreamSurroundings {
    const Target &target;
    Publisher &publisher;
    const Authentication &authentication;
    const RequestLog &log;
    WorkerPool &workers;
};

using SubscribeReactorBase = grpc::ServerBidiReactor<grpc::ByteBuffer, grpc::ByteBuffer>;

// Joins a Stream to gRPC. Whatever may take long is a worker's job; gRPC's threads only move messages that are
// at hand. Lives until gRPC is done with it and its last job has ended.
class SubscribeReactor final : public SubscribeReactorBase,
                               public std::enable_shared_from_this<SubscribeReactor> {
public:
    // The reactor owns itself.
    static SubscribeReactor *start(const StreamSurroundings &surroundings,
                                   grpc::CallbackServerContext &context);
    // On a worker's thread.
    ~SubscribeReactor() override;

    void OnReadDone(bool ok) override;
    void OnWriteDone(bool ok) override;
    void OnCancel() override;
    void OnDone() override;

private:
    SubscribeReactor(const StreamSurroundings &surroundings, Credentials credentials)
        : with_(surroundings), credentials_(std::move(credentials)),
          turn_(credentials_.certified.value_or(credentials_.user)) {}

    void add_job(Lane lane, void (SubscribeReactor::*work)());
    void begin();
    void receive();
    void receive_end();
    // Sends what there is to send, one message at a time. Only one thread does so at a time, and none while a
    // message is on its way.
    void send();
    void wake();
    void read_more();
    void end_with(const grpc::Status &status);
    void log_begin();
    void log_end(const grpc::Status &status);
    std::optional<grpc::Status> end();

    const StreamSurroundings with_;
    const Credentials credentials_;
    const std::string turn_; // whose turn a job takes
    std::shared_ptr<SubscribeReactor> self_;
    std::unique_ptr<Stream> stream_; // once the client is known
    grpc::ByteBuffer received_;
    grpc::ByteBuffer sent_;

    std::mutex mutex_;       // guards what follows; held only for moments
    bool is_sending_ = true; // begin() does, so that nothing ends before it
    bool is_woken_ = false;  // meanwhile
    bool is_finished_ = false;
    bool is_begun_ = false;           // for the log
    std::optional<grpc::Status> end_; // with which it has to end
};

} // namespace yfw::gnmi

#endif

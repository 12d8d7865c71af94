#include "frontends/gnmi/transport/subscribe_reactor.h"

#include <grpcpp/support/proto_buffer_reader.h>

#include "frontends/gnmi/transport/status.h"

namespace yfw::gnmi {
namespace {

using Guard = std::lock_guard<std::mutex>;

::gnmi::SubscribeRequest parsed(grpc::ByteBuffer &buffer) {
    ::gnmi::SubscribeRequest request;
    grpc::ProtoBufferReader reader(&buffer);
    if (!request.ParseFromZeroCopyStream(&reader))
        throw Refusal(Code::invalid_argument, "the message is malformed");
    return request;
}

// The message's bytes without a copy: all streams that send it share them.
grpc::ByteBuffer buffer_of(const SharedMessage &message) {
    const std::string &bytes = message->bytes();
    const auto release = [](void *kept) { delete static_cast<SharedMessage *>(kept); };
    const grpc::Slice slice(const_cast<char *>(bytes.data()), bytes.size(), release,
                            new SharedMessage(message));
    return {&slice, 1};
}

} // namespace

SubscribeReactor *SubscribeReactor::start(const StreamSurroundings &surroundings,
                                          grpc::CallbackServerContext &context) {
    const std::shared_ptr<SubscribeReactor> made(new SubscribeReactor(surroundings, credentials_of(context)));
    made->self_ = made;
    made->add_job(Lane::quick, &SubscribeReactor::begin);
    return made.get();
}

// Does nothing once the last job has ended.
void SubscribeReactor::add_job(Lane lane, void (SubscribeReactor::*work)()) {
    if (std::shared_ptr<SubscribeReactor> self = weak_from_this().lock())
        with_.workers.add(lane, turn_, [self = std::move(self), work]() -> WorkerPool::Finish {
            (*self.*work)();
            return {};
        });
}

void SubscribeReactor::begin() {
    const grpc::Status status = status_of([this] {
        KnownUser user = with_.authentication.user_of(credentials_);
        stream_ = std::make_unique<Stream>(with_.target, with_.publisher, std::move(user.caller),
                                           std::move(user.groups), [this] { wake(); });
    });
    if (status.ok()) {
        read_more();
    } else {
        const Guard guard(mutex_);
        if (!end_.has_value())
            end_ = status;
    }
    send();
}

// The stream leaves its feeds first. Until then, it may be told of changes.
SubscribeReactor::~SubscribeReactor() {
    stream_.reset();
}

// Nothing may be started once the end has been.
void SubscribeReactor::read_more() {
    const Guard guard(mutex_);
    if (!is_finished_)
        StartRead(&received_);
}

void SubscribeReactor::OnReadDone(bool ok) {
    add_job(ok ? Lane::costly : Lane::quick, ok ? &SubscribeReactor::receive : &SubscribeReactor::receive_end);
}

void SubscribeReactor::receive() {
    const grpc::Status status = status_of([this] { stream_->receive(parsed(received_)); });
    received_.Clear();
    if (status.ok() && stream_->lasts())
        log_begin();
    if (status.ok())
        read_more();
    else
        end_with(status);
}

void SubscribeReactor::receive_end() {
    const grpc::Status status = status_of([this] { stream_->receive_end(); });
    if (!status.ok())
        end_with(status);
}

void SubscribeReactor::wake() {
    {
        const Guard guard(mutex_);
        if (is_finished_ || std::exchange(is_sending_, true)) {
            is_woken_ = true;
            return;
        }
    }
    add_job(Lane::quick, &SubscribeReactor::send);
}

void SubscribeReactor::end_with(const grpc::Status &status) {
    {
        const Guard guard(mutex_);
        if (!end_.has_value())
            end_ = status;
    }
    wake();
}

// How it ends now; nothing when it goes on.
std::optional<grpc::Status> SubscribeReactor::end() {
    {
        const Guard guard(mutex_);
        if (end_.has_value())
            return end_;
    }
    if (const auto failure = stream_->failure())
        return status_of(*failure);
    return std::nullopt;
}

void SubscribeReactor::log_begin() {
    {
        const Guard guard(mutex_);
        if (is_finished_ || std::exchange(is_begun_, true))
            return;
    }
    with_.log.stream_begins(credentials_);
}

void SubscribeReactor::log_end(const grpc::Status &status) {
    bool is_begun = false;
    {
        const Guard guard(mutex_);
        is_begun = is_begun_;
    }
    if (is_begun)
        with_.log.stream_ends(credentials_, status);
    else if (!status.ok() && status.error_code() != grpc::StatusCode::CANCELLED)
        with_.log.refused(credentials_, "Subscribe", status);
}

void SubscribeReactor::send() {
    for (;;) {
        std::optional<grpc::Status> status = end();
        if (!status.has_value()) {
            if (const SharedMessage message = stream_->take()) {
                sent_ = buffer_of(message);
                StartWrite(&sent_);
                return; // goes on when it has been written
            }
            if (stream_->is_over())
                status = grpc::Status::OK;
        }
        {
            const Guard guard(mutex_);
            if (!status.has_value() && !std::exchange(is_woken_, false)) {
                is_sending_ = false;
                return;
            }
            is_finished_ = status.has_value();
        }
        if (status.has_value()) {
            log_end(*status);
            return Finish(*status);
        }
    }
}

// Passing it to a worker takes longer than sending what is at hand.
void SubscribeReactor::OnWriteDone(bool ok) {
    {
        const Guard guard(mutex_);
        if (!ok && !end_.has_value())
            end_ = grpc::Status::CANCELLED;
    }
    if (ok && stream_->is_quick())
        send();
    else
        add_job(Lane::quick, &SubscribeReactor::send);
}

void SubscribeReactor::OnCancel() {
    end_with(grpc::Status::CANCELLED);
}

// Leaving the feeds may take as long as a reading of the device.
void SubscribeReactor::OnDone() {
    with_.workers.add(Lane::quick, turn_, [self = std::move(self_)]() -> WorkerPool::Finish { return {}; });
}

} // namespace yfw::gnmi

#include "gnmi_clients.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <mutex>
#include <stdexcept>
#include <vector>

#include <grpcpp/create_channel.h>
#include <grpcpp/support/channel_arguments.h>
#include <grpcpp/support/client_callback.h>
#include <unistd.h>

namespace yfw::bench {
namespace {

constexpr const char *flag = "--clients";

int64_t monotonic_now() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

::gnmi::SubscribeRequest list(::gnmi::SubscriptionList::Mode mode) {
    ::gnmi::SubscribeRequest request;
    request.mutable_subscribe()->set_mode(mode);
    request.mutable_subscribe()->set_encoding(::gnmi::PROTO);
    ::gnmi::Subscription &subscription = *request.mutable_subscribe()->add_subscription();
    subscription.mutable_path()->add_elem()->set_name("lldp");
    subscription.set_mode(::gnmi::ON_CHANGE);
    return request;
}

void tell(int64_t number) {
    std::cout << number << std::endl;
}

int ask_once(const std::string &address) {
    const auto stub = stub_of(address);
    const auto context = call_context();
    const auto stream = stub->Subscribe(context.get());
    stream->Write(list(::gnmi::SubscriptionList::ONCE));
    stream->WritesDone();
    int64_t leaves = 0;
    ::gnmi::SubscribeResponse response;
    while (stream->Read(&response))
        leaves += response.update().update_size();
    if (!stream->Finish().ok())
        return 1;
    tell(leaves);
    return 0;
}

// Counts what all subscribers are told, and says when the last one is.
class Progress {
public:
    Progress(int count, int changes) : count_(count), changes_(changes) {}

    void add_sync() {
        if (++synced_ == count_)
            tell(0);
    }

    void add_change() {
        const int64_t now = monotonic_now();
        const int told = ++told_;
        if (told % count_ != 0)
            return;
        tell(now);
        if (told / count_ < changes_)
            return;
        const std::lock_guard<std::mutex> guard(mutex_);
        is_over_ = true;
        over_.notify_all();
    }

    void wait() {
        std::unique_lock<std::mutex> lock(mutex_);
        over_.wait(lock, [this] { return is_over_; });
    }

private:
    const int count_;
    const int changes_;
    std::atomic<int> synced_{0};
    std::atomic<int> told_{0};
    std::mutex mutex_;
    std::condition_variable over_;
    bool is_over_ = false;
};

class Subscriber final : public grpc::ClientBidiReactor<::gnmi::SubscribeRequest, ::gnmi::SubscribeResponse> {
public:
    Subscriber(::gnmi::gNMI::Stub &stub, Progress &progress)
        : progress_(progress), context_(call_context()), request_(list(::gnmi::SubscriptionList::STREAM)) {
        stub.async()->Subscribe(context_.get(), this);
        StartWrite(&request_);
        StartRead(&response_);
        StartCall();
    }

    void OnReadDone(bool ok) override {
        if (!ok)
            return;
        if (response_.sync_response())
            progress_.add_sync();
        else if (is_in_sync_)
            progress_.add_change();
        is_in_sync_ = is_in_sync_ || response_.sync_response();
        StartRead(&response_);
    }
    void OnDone(const grpc::Status &) override {}

private:
    Progress &progress_;
    std::unique_ptr<grpc::ClientContext> context_;
    ::gnmi::SubscribeRequest request_;
    ::gnmi::SubscribeResponse response_;
    bool is_in_sync_ = false;
};

int subscribe(const std::string &address, int count, int connections, int changes) {
    Progress progress(count, changes);
    std::vector<std::unique_ptr<::gnmi::gNMI::Stub>> stubs;
    for (int i = 0; i < connections; i++)
        stubs.push_back(stub_of(address));
    std::vector<std::unique_ptr<Subscriber>> all;
    for (int i = 0; i < count; i++)
        all.push_back(std::make_unique<Subscriber>(*stubs[static_cast<size_t>(i % connections)], progress));
    progress.wait();
    std::_Exit(0); // the streams end with the process
}

} // namespace

std::unique_ptr<::gnmi::gNMI::Stub> stub_of(const std::string &address,
                                            const std::shared_ptr<grpc::ChannelCredentials> &credentials) {
    grpc::ChannelArguments arguments;
    arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1); // or stubs would share a connection
    return ::gnmi::gNMI::NewStub(grpc::CreateCustomChannel(address, credentials, arguments));
}

std::unique_ptr<grpc::ClientContext> call_context() {
    auto context = std::make_unique<grpc::ClientContext>();
    context->set_deadline(std::chrono::system_clock::now() + std::chrono::minutes(5));
    context->AddMetadata("username", "root");
    context->AddMetadata("password", "");
    return context;
}

bool Clients::is_meant(int argc, char **argv) {
    return argc > 2 && std::string(argv[1]) == flag;
}

int Clients::clients_main(int argc, char **argv) {
    if (argc == 3)
        return ask_once(argv[2]);
    if (argc == 6)
        return subscribe(argv[2], std::atoi(argv[3]), std::atoi(argv[4]), std::atoi(argv[5]));
    return 2;
}

Clients::Clients(const std::string &arguments)
    : output_(
          ::popen(
              (std::filesystem::read_symlink("/proc/self/exe").string() + " " + flag + " " + arguments).c_str(),
              "r"),
          ::pclose) {
    if (output_ == nullptr)
        throw std::runtime_error("the clients cannot be started");
}

Clients Clients::once(const std::string &address) {
    return Clients(address);
}

Clients Clients::subscribers(const std::string &address, int count, int connections, int changes) {
    return Clients(address + " " + std::to_string(count) + " " + std::to_string(connections) + " " +
                   std::to_string(changes));
}

int64_t Clients::next() {
    char line[64];
    if (std::fgets(line, sizeof line, output_.get()) == nullptr)
        throw std::runtime_error("the clients have ended");
    return std::atoll(line);
}

} // namespace yfw::bench

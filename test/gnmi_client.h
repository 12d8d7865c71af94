// A gNMI client of `yfw serve --gnmi`.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gnmi.grpc.pb.h>
#include <grpcpp/client_context.h>

namespace yfw::test {

std::string current_user();

/// Certificates in PEM; those of the client may be missing.
struct ClientFiles {
    std::filesystem::path authority;
    std::filesystem::path certificate;
    std::filesystem::path key;
};

/// The files of throw-away certificates in this directory.
ClientFiles files_in(const std::filesystem::path &directory);

/// What the line says that `yfw serve --gnmi` prints: where it listens, and where its certificates are.
std::string address_of(const std::string &line);
std::filesystem::path certificates_of(const std::string &line);

/// One client on a connection of its own. No call takes longer than 20 seconds.
class GnmiClient {
public:
    GnmiClient(const std::string &address, const ClientFiles &files);

    grpc::Status set_name(const std::string &name);
    grpc::Status get_name(std::string &name);

    std::unique_ptr<::gnmi::gNMI::Stub> &stub() { return stub_; }
    static std::unique_ptr<grpc::ClientContext>
    context(std::chrono::seconds deadline = std::chrono::seconds(20));

private:
    std::unique_ptr<::gnmi::gNMI::Stub> stub_;
};

/// A subscriber of changes, which collects what it is told on a thread of its own for at most two minutes.
class GnmiSubscriber {
public:
    /// Of everything below the elements. Borrows the client.
    GnmiSubscriber(GnmiClient &client, const std::vector<std::string> &elements);
    /// Cancels the stream.
    ~GnmiSubscriber();
    GnmiSubscriber(const GnmiSubscriber &) = delete;
    GnmiSubscriber &operator=(const GnmiSubscriber &) = delete;

    /// Whether it has been told all that there was at first.
    bool is_in_sync() const;
    /// What it was told since then, in order: "/path = value" and "- /path".
    std::vector<std::string> told() const;

private:
    void read();

    std::unique_ptr<grpc::ClientContext> context_;
    std::unique_ptr<grpc::ClientReaderWriter<::gnmi::SubscribeRequest, ::gnmi::SubscribeResponse>> stream_;
    mutable std::mutex mutex_; // guards what follows
    bool is_in_sync_ = false;
    std::vector<std::string> told_;
    std::thread reader_;
};

} // namespace yfw::test

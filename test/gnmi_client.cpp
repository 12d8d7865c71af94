#include "gnmi_client.h"

#include <grpcpp/create_channel.h>
#include <grpcpp/security/credentials.h>
#include <pwd.h>
#include <unistd.h>

#include "frontends/gnmi/paths/path_text.h"
#include "support/files.h"

namespace yfw::test {
namespace {

using Guard = std::lock_guard<std::mutex>;

std::shared_ptr<grpc::ChannelCredentials> credentials_of(const ClientFiles &files) {
    grpc::SslCredentialsOptions options;
    options.pem_root_certs = read_file(files.authority);
    if (!files.certificate.empty()) {
        options.pem_cert_chain = read_file(files.certificate);
        options.pem_private_key = read_file(files.key);
    }
    return grpc::SslCredentials(options);
}

::gnmi::Path path_of(const std::vector<std::string> &elements) {
    ::gnmi::Path path;
    for (const std::string &name : elements)
        path.add_elem()->set_name(name);
    return path;
}

const std::vector<std::string> name_leaf{"lldp", "config", "system-name"};

// The text between two others; the second may be missing.
std::string between(const std::string &text, const std::string &begin, const std::string &end) {
    const size_t at = text.find(begin);
    if (at == std::string::npos)
        return "";
    const size_t from = at + begin.size();
    return text.substr(from, text.find_first_of(end, from) - from);
}

} // namespace

std::string current_user() {
    return getpwuid(geteuid())->pw_name;
}

ClientFiles files_in(const std::filesystem::path &directory) {
    return {directory / "ca.pem", directory / "client.pem", directory / "client.key"};
}

std::string address_of(const std::string &line) {
    return between(line, "gNMI on ", ",\r\n");
}

std::filesystem::path certificates_of(const std::string &line) {
    return between(line, "certificates in ", "\r\n");
}

GnmiClient::GnmiClient(const std::string &address, const ClientFiles &files)
    : stub_(::gnmi::gNMI::NewStub(grpc::CreateChannel(address, credentials_of(files)))) {}

std::unique_ptr<grpc::ClientContext> GnmiClient::context(std::chrono::seconds deadline) {
    auto made = std::make_unique<grpc::ClientContext>();
    made->set_deadline(std::chrono::system_clock::now() + deadline);
    return made;
}

grpc::Status GnmiClient::set_name(const std::string &name) {
    ::gnmi::SetRequest request;
    ::gnmi::Update &update = *request.add_update();
    *update.mutable_path() = path_of(name_leaf);
    update.mutable_val()->set_string_val(name);
    ::gnmi::SetResponse response;
    return stub_->Set(context().get(), request, &response);
}

grpc::Status GnmiClient::get_name(std::string &name) {
    ::gnmi::GetRequest request;
    *request.add_path() = path_of(name_leaf);
    request.set_encoding(::gnmi::PROTO);
    ::gnmi::GetResponse response;
    const grpc::Status status = stub_->Get(context().get(), request, &response);
    if (status.ok())
        name = response.notification(0).update(0).val().string_val();
    return status;
}

GnmiSubscriber::GnmiSubscriber(GnmiClient &client, const std::vector<std::string> &elements)
    : context_(GnmiClient::context(std::chrono::seconds(120))),
      stream_(client.stub()->Subscribe(context_.get())) {
    ::gnmi::SubscribeRequest request;
    request.mutable_subscribe()->set_encoding(::gnmi::PROTO);
    ::gnmi::Subscription &subscription = *request.mutable_subscribe()->add_subscription();
    *subscription.mutable_path() = path_of(elements);
    subscription.set_mode(::gnmi::ON_CHANGE);
    stream_->Write(request);
    reader_ = std::thread([this] { read(); });
}

GnmiSubscriber::~GnmiSubscriber() {
    context_->TryCancel();
    reader_.join();
    stream_->Finish();
}

void GnmiSubscriber::read() {
    ::gnmi::SubscribeResponse response;
    while (stream_->Read(&response)) {
        const Guard guard(mutex_);
        if (response.sync_response()) {
            is_in_sync_ = true;
            continue;
        }
        if (!is_in_sync_)
            continue;
        const ::gnmi::Notification &notification = response.update();
        for (const ::gnmi::Path &path : notification.delete_())
            told_.push_back("- " + gnmi::to_text(notification.prefix(), path));
        for (const ::gnmi::Update &update : notification.update())
            told_.push_back(gnmi::to_text(notification.prefix(), update.path()) + " = " +
                            update.val().string_val());
    }
}

bool GnmiSubscriber::is_in_sync() const {
    const Guard guard(mutex_);
    return is_in_sync_;
}

std::vector<std::string> GnmiSubscriber::told() const {
    const Guard guard(mutex_);
    return told_;
}

} // namespace yfw::test

// The server, through the stubs that are generated for clients.
#include <algorithm>
#include <chrono>
#include <future>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gnmi.grpc.pb.h>
#include <grpcpp/create_channel.h>
#include <grpcpp/security/credentials.h>
#include <pwd.h>
#include <unistd.h>

#include "frontends/gnmi/transport/gnmi_server.h"
#include "gnmi_fixture.h"
#include "support/eventually.h"

namespace yfw::gnmi::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::SizeIs;

std::string current_user() {
    return getpwuid(geteuid())->pw_name;
}

ServerOptions options_for(const std::string &address) {
    ServerOptions options;
    options.address = read_listen_address(address, "--gnmi", "127.0.0.1");
    options.groups.owner = geteuid();
    options.is_password_of = [](const std::string &, const std::string &password) {
        return password == "right";
    };
    return options;
}

void ignore(const std::string &) {}

// A client of a server in plaintext.
class AServer : public testing::Test {
protected:
    std::unique_ptr<grpc::ClientContext> context(const std::string &user = current_user(),
                                                 const std::string &password = "right") {
        auto made = std::make_unique<grpc::ClientContext>();
        made->set_deadline(std::chrono::system_clock::now() + 20s);
        if (!user.empty()) {
            made->AddMetadata("username", user);
            made->AddMetadata("password", password);
        }
        return made;
    }

    grpc::StatusCode capabilities_for(const std::string &user, const std::string &password) {
        ::gnmi::CapabilityResponse response;
        return stub_->Capabilities(context(user, password).get(), {}, &response).error_code();
    }

    grpc::Status get(const std::string &at, ::gnmi::GetResponse &response) {
        ::gnmi::GetRequest request;
        *request.add_path() = path(at);
        request.set_encoding(::gnmi::PROTO);
        return stub_->Get(context().get(), request, &response);
    }

    grpc::Status set_name(const std::string &name) { return set_name(name, *context()); }

    grpc::Status set_name(const std::string &name, grpc::ClientContext &in) {
        ::gnmi::SetRequest request;
        ::gnmi::Update &update = *request.add_update();
        *update.mutable_path() = path("/lldp/config/system-name");
        update.mutable_val()->set_string_val(name);
        ::gnmi::SetResponse response;
        return stub_->Set(&in, request, &response);
    }

    static ::gnmi::SubscribeRequest list(::gnmi::SubscriptionList::Mode mode, const std::string &at) {
        ::gnmi::SubscribeRequest request;
        request.mutable_subscribe()->set_mode(mode);
        request.mutable_subscribe()->set_encoding(::gnmi::PROTO);
        ::gnmi::Subscription &subscription = *request.mutable_subscribe()->add_subscription();
        *subscription.mutable_path() = path(at);
        subscription.set_mode(::gnmi::ON_CHANGE);
        return request;
    }

    // Waits for a line of the server's log.
    bool says(const std::string &line) {
        return yfw::test::eventually([&] {
            const std::lock_guard<std::mutex> guard(said_mutex_);
            return std::find(said_.begin(), said_.end(), line) != said_.end();
        });
    }
    std::vector<std::string> said() {
        const std::lock_guard<std::mutex> guard(said_mutex_);
        return said_;
    }

    std::mutex said_mutex_;
    std::vector<std::string> said_;
    ServedDevice device_;
    std::optional<GnmiServer> server_{std::in_place, options_for("0"), device_.service(),
                                      [this](const std::string &line) {
                                          const std::lock_guard<std::mutex> guard(said_mutex_);
                                          said_.push_back(line);
                                      }};
    const std::string address_ = "127.0.0.1:" + std::to_string(server_->port());
    std::unique_ptr<::gnmi::gNMI::Stub> stub_ =
        ::gnmi::gNMI::NewStub(grpc::CreateChannel(address_, grpc::InsecureChannelCredentials()));
};

TEST_F(AServer, AnswersCapabilities) {
    ::gnmi::CapabilityResponse response;
    ASSERT_TRUE(stub_->Capabilities(context().get(), {}, &response).ok());
    EXPECT_EQ(response.gnmi_version(), "0.10.0");
}

TEST_F(AServer, AnswersAGet) {
    ::gnmi::GetResponse response;
    const grpc::Status status = get("/lldp/config/enabled", response);
    ASSERT_TRUE(status.ok()) << status.error_message();
    EXPECT_EQ(written(response.notification(0)), "/lldp/config/enabled = true\n");
}

TEST_F(AServer, SaysWhyAGetFails) {
    ::gnmi::GetResponse response;
    const grpc::Status status = get("/lldp/colour", response);
    EXPECT_EQ(status.error_code(), grpc::StatusCode::INVALID_ARGUMENT);
    EXPECT_THAT(status.error_message(), HasSubstr("unknown node \"colour\""));
    EXPECT_EQ(get("/lldp/config/hello-timer", response).error_code(), grpc::StatusCode::NOT_FOUND);
}

TEST_F(AServer, EscapesWhatAMessageQuotes) {
    ::gnmi::GetResponse response;
    EXPECT_THAT(get("/lldp/co\x1blour", response).error_message(), HasSubstr("co\\x1b"));
}

TEST_F(AServer, CommitsASetInTheUsersName) {
    const grpc::Status status = set_name("x");
    ASSERT_TRUE(status.ok()) << status.error_message();
    EXPECT_EQ(device_.service().device().history().front().who, current_user());
}

TEST_F(AServer, KnowsUsersByTheirPasswords) {
    EXPECT_EQ(capabilities_for(current_user(), "right"), grpc::StatusCode::OK);
    EXPECT_EQ(capabilities_for(current_user(), "wrong"), grpc::StatusCode::UNAUTHENTICATED);
    EXPECT_EQ(capabilities_for("", ""), grpc::StatusCode::UNAUTHENTICATED);
    EXPECT_EQ(capabilities_for("nobody", "right"), grpc::StatusCode::PERMISSION_DENIED);
}

TEST_F(AServer, TurnsASubscriberWithoutACredentialAway) {
    const auto unknown = context("");
    const auto stream = stub_->Subscribe(unknown.get());
    ::gnmi::SubscribeResponse response;
    EXPECT_FALSE(stream->Read(&response));
    EXPECT_EQ(stream->Finish().error_code(), grpc::StatusCode::UNAUTHENTICATED);
}

TEST_F(AServer, EndsASubscriptionOnce) {
    const auto once = context();
    const auto stream = stub_->Subscribe(once.get());
    ASSERT_TRUE(stream->Write(list(::gnmi::SubscriptionList::ONCE, "/lldp/config/enabled")));
    ::gnmi::SubscribeResponse response;
    ASSERT_TRUE(stream->Read(&response));
    EXPECT_EQ(response.update().update_size(), 1);
    ASSERT_TRUE(stream->Read(&response));
    EXPECT_TRUE(response.sync_response());
    EXPECT_FALSE(stream->Read(&response));
    EXPECT_TRUE(stream->Finish().ok());
}

TEST_F(AServer, StreamsChanges) {
    const auto streaming = context();
    const auto stream = stub_->Subscribe(streaming.get());
    ASSERT_TRUE(stream->Write(list(::gnmi::SubscriptionList::STREAM, "/lldp/config/system-name")));
    ::gnmi::SubscribeResponse response;
    do
        ASSERT_TRUE(stream->Read(&response));
    while (!response.sync_response());
    for (const std::string name : {"x", "y"}) {
        ASSERT_TRUE(set_name(name).ok());
        ASSERT_TRUE(stream->Read(&response));
        EXPECT_EQ(response.update().update(0).val().string_val(), name);
    }
    streaming->TryCancel();
    while (stream->Read(&response)) {
    }
    EXPECT_EQ(stream->Finish().error_code(), grpc::StatusCode::CANCELLED);
}

TEST_F(AServer, AnswersPollsUntilTheClientHasEnough) {
    const auto polling = context();
    const auto stream = stub_->Subscribe(polling.get());
    ASSERT_TRUE(stream->Write(list(::gnmi::SubscriptionList::POLL, "/lldp/config/enabled")));
    ::gnmi::SubscribeRequest poll;
    poll.mutable_poll();
    ::gnmi::SubscribeResponse response;
    for (int i = 0; i < 2; i++) {
        ASSERT_TRUE(stream->Write(poll));
        ASSERT_TRUE(stream->Read(&response));
        EXPECT_TRUE(response.update().update(0).val().bool_val());
        ASSERT_TRUE(stream->Read(&response));
        EXPECT_TRUE(response.sync_response());
    }
    stream->WritesDone();
    EXPECT_FALSE(stream->Read(&response));
    EXPECT_TRUE(stream->Finish().ok());
}

TEST_F(AServer, RefusesAStreamThatBeginsWithAPoll) {
    const auto polling = context();
    const auto stream = stub_->Subscribe(polling.get());
    ::gnmi::SubscribeRequest poll;
    poll.mutable_poll();
    ASSERT_TRUE(stream->Write(poll));
    ::gnmi::SubscribeResponse response;
    EXPECT_FALSE(stream->Read(&response));
    EXPECT_EQ(stream->Finish().error_code(), grpc::StatusCode::INVALID_ARGUMENT);
}

TEST_F(AServer, RefusesAStreamThatEndsBeforeItBegins) {
    const auto silent = context();
    const auto stream = stub_->Subscribe(silent.get());
    stream->WritesDone();
    EXPECT_EQ(stream->Finish().error_code(), grpc::StatusCode::INVALID_ARGUMENT);
}

TEST_F(AServer, TellsManySubscribers) {
    constexpr size_t count = 100;
    std::vector<std::unique_ptr<grpc::ClientContext>> contexts;
    std::vector<std::unique_ptr<grpc::ClientReaderWriter<::gnmi::SubscribeRequest, ::gnmi::SubscribeResponse>>>
        streams;
    ::gnmi::SubscribeResponse response;
    for (size_t i = 0; i < count; i++) {
        contexts.push_back(context());
        streams.push_back(stub_->Subscribe(contexts.back().get()));
        ASSERT_TRUE(streams.back()->Write(list(::gnmi::SubscriptionList::STREAM, "/lldp/config/system-name")));
    }
    for (const auto &stream : streams)
        do
            ASSERT_TRUE(stream->Read(&response));
        while (!response.sync_response());
    ASSERT_TRUE(set_name("x").ok());
    for (const auto &stream : streams) {
        ASSERT_TRUE(stream->Read(&response));
        EXPECT_EQ(response.update().update(0).val().string_val(), "x");
    }
    for (const auto &each : contexts)
        each->TryCancel();
    for (const auto &stream : streams) {
        while (stream->Read(&response)) {
        }
        EXPECT_EQ(stream->Finish().error_code(), grpc::StatusCode::CANCELLED);
    }
}

TEST_F(AServer, EndsWithSubscribersOnIt) {
    const auto streaming = context();
    const auto stream = stub_->Subscribe(streaming.get());
    ASSERT_TRUE(stream->Write(list(::gnmi::SubscriptionList::STREAM, "/lldp")));
    ::gnmi::SubscribeResponse response;
    ASSERT_TRUE(stream->Read(&response));
    const auto before = std::chrono::steady_clock::now();
    server_.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - before, 10s);
    while (stream->Read(&response)) {
    }
    EXPECT_FALSE(stream->Finish().ok());
}

// ---- Sets that nobody waits for

// An edit of somebody else that takes until it is let go.
class EditInTheWay {
public:
    explicit EditInTheWay(device::Service &service) : thread_([this, &service] { hold(service); }) {
        begun_.get_future().wait();
    }
    ~EditInTheWay() { let_go(); }
    EditInTheWay(const EditInTheWay &) = delete;
    EditInTheWay &operator=(const EditInTheWay &) = delete;

    void let_go() {
        if (!thread_.joinable())
            return;
        end_.set_value();
        thread_.join();
    }

private:
    void hold(device::Service &service) {
        const auto make = [&](const lyd_node *) -> yang::EditNode {
            begun_.set_value();
            end_.get_future().wait();
            throw Error(ErrorTag::operation_failed, "", "let go");
        };
        EXPECT_THROW(service.datastores().edit_running({}, make, std::nullopt), Error);
    }

    std::promise<void> begun_;
    std::promise<void> end_;
    std::thread thread_;
};

TEST_F(AServer, EndsASetWhoseClientHasCancelledIt) {
    EditInTheWay edit(device_.service());
    const auto setting = context();
    auto outcome = std::async(std::launch::async, [&] { return set_name("x", *setting); });
    std::this_thread::sleep_for(300ms); // until it waits for its turn
    setting->TryCancel();
    EXPECT_EQ(outcome.get().error_code(), grpc::StatusCode::CANCELLED);
    EXPECT_EQ(capabilities_for(current_user(), "right"), grpc::StatusCode::OK) << "it is told after that";
    std::this_thread::sleep_for(300ms);
    edit.let_go();
    EXPECT_TRUE(says("user " + current_user() + " from 127.0.0.1: Set is refused: CANCELLED: the client has " +
                     "cancelled it, or the server ends"));
    EXPECT_THAT(device_.configuration(), HasSubstr("r1.example.net"));
    EXPECT_TRUE(set_name("y").ok());
}

TEST_F(AServer, EndsWithASetThatIsNotDone) {
    EditInTheWay edit(device_.service());
    const auto setting = context();
    auto outcome = std::async(std::launch::async, [&] { return set_name("x", *setting); });
    std::this_thread::sleep_for(300ms); // until it waits for its turn
    auto ended = std::async(std::launch::async, [&] { server_.reset(); });
    EXPECT_FALSE(outcome.get().ok());
    std::this_thread::sleep_for(1s);
    edit.let_go();
    EXPECT_EQ(ended.wait_for(10s), std::future_status::ready);
    EXPECT_THAT(device_.configuration(), HasSubstr("r1.example.net"));
}

// ---- the log

const std::string me = "user " + current_user() + " from 127.0.0.1: ";

TEST_F(AServer, LogsEachSetAndEachRefusal) {
    ::gnmi::GetResponse response;
    ASSERT_TRUE(get("/lldp/config/enabled", response).ok());
    EXPECT_EQ(get("/lldp/config/hello-timer", response).error_code(), grpc::StatusCode::NOT_FOUND);
    EXPECT_TRUE(set_name("x").ok());
    EXPECT_FALSE(set_name(std::string(300, 'x')).ok());
    EXPECT_TRUE(says(me + "Set is done"));
    EXPECT_THAT(said(), SizeIs(3)) << "reads that succeed are not logged";
    EXPECT_EQ(said()[0],
              me + "Get is refused: NOT_FOUND: /lldp/config/hello-timer: the device has no data there");
    EXPECT_THAT(said()[2], HasSubstr(me + "Set is refused: INVALID_ARGUMENT: update /lldp/config/system-name"));
}

TEST_F(AServer, LogsWhoIsTurnedAway) {
    capabilities_for(current_user(), "wrong");
    capabilities_for("", "");
    EXPECT_TRUE(says(me + "Capabilities is refused: UNAUTHENTICATED: the username or the password is wrong"));
    EXPECT_TRUE(says("a client from 127.0.0.1: Capabilities is refused: UNAUTHENTICATED: a client certificate, "
                     "or a username and a password, are required"));
}

TEST_F(AServer, LogsTheBeginAndTheEndOfAStream) {
    const auto streaming = context();
    const auto stream = stub_->Subscribe(streaming.get());
    ASSERT_TRUE(stream->Write(list(::gnmi::SubscriptionList::STREAM, "/lldp/config/system-name")));
    EXPECT_TRUE(says(me + "a stream begins"));
    streaming->TryCancel();
    ::gnmi::SubscribeResponse response;
    while (stream->Read(&response)) {
    }
    stream->Finish();
    EXPECT_TRUE(says(me + "a stream ends: CANCELLED"));
    EXPECT_THAT(said(), SizeIs(2));
}

TEST_F(AServer, LogsARefusedStream) {
    const auto streaming = context();
    const auto stream = stub_->Subscribe(streaming.get());
    ASSERT_TRUE(stream->Write(list(::gnmi::SubscriptionList::STREAM, "/lldp/colour")));
    ::gnmi::SubscribeResponse response;
    EXPECT_FALSE(stream->Read(&response));
    stream->Finish();
    ASSERT_THAT(said(), SizeIs(1));
    EXPECT_THAT(said()[0], HasSubstr(me + "Subscribe is refused: INVALID_ARGUMENT: "));
}

TEST_F(AServer, DoesNotShareItsPort) {
    try {
        const GnmiServer second(options_for(address_), device_.service(), ignore);
        FAIL() << "two servers on one port";
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), ErrorTag::in_use);
        EXPECT_EQ(error.path(), address_);
    }
}

TEST_F(AServer, RollsBackWhatIsNotConfirmedInTime) {
    ::gnmi::SetRequest request;
    ::gnmi::Update &update = *request.add_update();
    *update.mutable_path() = path("/lldp/config/system-name");
    update.mutable_val()->set_string_val("x");
    gnmi_ext::Commit &commit = *request.add_extension()->mutable_commit();
    commit.set_id("a");
    commit.mutable_commit()->mutable_rollback_duration()->set_seconds(1);
    ::gnmi::SetResponse response;
    const auto streaming = context();
    const auto stream = stub_->Subscribe(streaming.get());
    ASSERT_TRUE(stream->Write(list(::gnmi::SubscriptionList::STREAM, "/lldp/config/system-name")));
    ::gnmi::SubscribeResponse told;
    do
        ASSERT_TRUE(stream->Read(&told));
    while (!told.sync_response());
    ASSERT_TRUE(stub_->Set(context().get(), request, &response).ok());
    for (const std::string name : {"x", "r1.example.net"}) {
        ASSERT_TRUE(stream->Read(&told));
        EXPECT_EQ(told.update().update(0).val().string_val(), name);
    }
    streaming->TryCancel();
    while (stream->Read(&told)) {
    }
    stream->Finish();
}

TEST(AServerOnAUnixSocket, Answers) {
    ServedDevice device;
    const yfw::test::TemporaryDirectory directory;
    const std::string address = "unix:" + (directory.path() / "gnmi.sock").string();
    const GnmiServer server(options_for(address), device.service(), ignore);
    const auto stub = ::gnmi::gNMI::NewStub(grpc::CreateChannel(address, grpc::InsecureChannelCredentials()));
    grpc::ClientContext context;
    context.set_deadline(std::chrono::system_clock::now() + 20s);
    context.AddMetadata("username", current_user());
    context.AddMetadata("password", "right");
    ::gnmi::CapabilityResponse response;
    EXPECT_TRUE(stub->Capabilities(&context, {}, &response).ok());
    EXPECT_THROW(GnmiServer(options_for(address), device.service(), ignore), Error) << "the socket is taken";
}

TEST(AServerInPlaintext, StaysOnThisMachine) {
    ServedDevice device;
    EXPECT_THROW(GnmiServer(options_for("192.0.2.1:9339"), device.service(), ignore), Error);
    EXPECT_THROW(GnmiServer(options_for("[::]:9339"), device.service(), ignore), Error);
}

TEST(AUser, IsKnownByTheWholeName) {
    access::AccessGroups groups;
    groups.owner = geteuid();
    EXPECT_TRUE(access::user_named(current_user(), groups).has_value());
    EXPECT_FALSE(access::user_named(current_user() + '\0' + "x", groups).has_value());
    EXPECT_FALSE(access::user_named("no-such-user", groups).has_value());
}

// ---- addresses

struct Address {
    std::string text;
    std::string listens;
    bool is_local;
};

class AnAddress : public testing::TestWithParam<Address> {};

TEST_P(AnAddress, IsRead) {
    const ListenAddress address = read_listen_address(GetParam().text, "--gnmi");
    EXPECT_EQ(address.text(), GetParam().listens);
    EXPECT_EQ(address.is_local(), GetParam().is_local);
}

INSTANTIATE_TEST_SUITE_P(Like, AnAddress,
                         testing::Values(Address{"9339", "[::]:9339", false},
                                         Address{"127.0.0.1:9339", "127.0.0.1:9339", true},
                                         Address{"127.9.9.9:1", "127.9.9.9:1", true},
                                         Address{"localhost:9339", "localhost:9339", true},
                                         Address{"[::1]:9339", "[::1]:9339", true},
                                         Address{"[2001:db8::1]:9339", "[2001:db8::1]:9339", false},
                                         Address{"router:9339", "router:9339", false},
                                         Address{"127.example.net:9339", "127.example.net:9339", false},
                                         Address{"unix:/run/x", "unix:/run/x", true}));

TEST(AnAddress, ThatIsWrongIsRefused) {
    for (const char *text : {"", "x", ":", "127.0.0.1", "127.0.0.1:65536", "127.0.0.1:-1", "::1:9339", "unix:"})
        EXPECT_THROW(read_listen_address(text, "--gnmi"), Error) << text;
}

} // namespace
} // namespace yfw::gnmi::test

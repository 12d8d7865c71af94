// `yfw serve --gnmi`, as a user runs it.
#include <chrono>
#include <csignal>
#include <optional>
#include <string>

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "base/descriptor.h"
#include "frontends/cli/gnmi/tls_tryout.h"
#include "gnmi_client.h"
#include "netconf_client.h"
#include "support/child_process.h"
#include "support/eventually.h"
#include "support/files.h"
#include "support/running_yfw.h"

namespace yfw::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

namespace fs = std::filesystem;

class ServingGnmi : public testing::Test {
protected:
    ServingGnmi() {
        fs::copy(YFW_EXAMPLES_DIR "/r1", device());
        setenv("XDG_STATE_HOME", (directory_.path() / "state").c_str(), 1);
        fs::permissions(directory_.path(), fs::perms(0755));
    }

    fs::path device() const { return directory_.path() / "device"; }
    std::string socket() const { return (directory_.path() / "netconf.sock").string(); }

    // Returns where it listens.
    std::string serve(const std::vector<std::string> &options) {
        std::vector<std::string> words{"serve", "--device", device().string(), "--socket", socket()};
        words.insert(words.end(), options.begin(), options.end());
        process_.emplace(words);
        line_ = process_->line_with({"gNMI on "}).value_or("");
        EXPECT_NE(line_, "") << process_->errors();
        return address_of(line_);
    }

    TemporaryDirectory directory_;
    std::optional<RunningYfw> process_;
    std::string line_;
};

TEST_F(ServingGnmi, PrintsHowToConnectWithThrowAwayCertificates) {
    const std::string address = serve({"--gnmi"});
    const fs::path files = certificates_of(line_);
    ASSERT_TRUE(process_->line_with({"gnmic -a " + address, "--tls-ca", "get --path /lldp"}).has_value());
    ASSERT_TRUE(process_->line_with({"print(client.get("}).has_value());
    EXPECT_EQ(fs::status(files).permissions(), fs::perms(0700));
    std::string name;
    GnmiClient client(address, files_in(files));
    const grpc::Status status = client.get_name(name);
    EXPECT_TRUE(status.ok()) << status.error_message();
    EXPECT_EQ(name, "r1.example.net");
    process_->signal(SIGTERM);
    EXPECT_EQ(process_->wait(), 0);
    EXPECT_FALSE(fs::exists(files));
}

TEST_F(ServingGnmi, TurnsAClientWithoutACertificateAway) {
    const std::string address = serve({"--gnmi"});
    ClientFiles files = files_in(certificates_of(line_));
    files.certificate.clear();
    std::string name;
    EXPECT_EQ(GnmiClient(address, files).get_name(name).error_code(), grpc::StatusCode::UNAVAILABLE);
}

TEST_F(ServingGnmi, ShowsAClientOfNetconfWhatAnotherOneSet) {
    const std::string address = serve({"--gnmi"});
    GnmiClient client(address, files_in(certificates_of(line_)));
    ASSERT_TRUE(client.set_name("by-gnmi").ok());
    NetconfClient netconf(socket());
    EXPECT_THAT(netconf.rpc("<get-config><source><running/></source></get-config>").printed,
                HasSubstr("by-gnmi"));
    netconf.rpc("<lock><target><running/></target></lock>");
    const grpc::Status locked = client.set_name("locked");
    EXPECT_EQ(locked.error_code(), grpc::StatusCode::FAILED_PRECONDITION);
    EXPECT_THAT(locked.error_message(), HasSubstr("locked by session 1 of " + current_user()));
}

TEST_F(ServingGnmi, StreamsWhatAChangedFileSays) {
    const std::string address = serve({"--gnmi"});
    GnmiClient client(address, files_in(certificates_of(line_)));
    const auto context = GnmiClient::context();
    const auto stream = client.stub()->Subscribe(context.get());
    ::gnmi::SubscribeRequest request;
    request.mutable_subscribe()->set_encoding(::gnmi::PROTO);
    ::gnmi::Subscription &subscription = *request.mutable_subscribe()->add_subscription();
    for (const char *name : {"...", "port-description"})
        subscription.mutable_path()->add_elem()->set_name(name);
    subscription.set_mode(::gnmi::ON_CHANGE);
    ASSERT_TRUE(stream->Write(request));
    ::gnmi::SubscribeResponse response;
    do
        ASSERT_TRUE(stream->Read(&response));
    while (!response.sync_response());
    std::string text = read_file(device() / "oper.xml");
    const std::string before = "<port-description>eth1<";
    write_file(device() / "oper.xml",
               text.replace(text.find(before), before.size(), "<port-description>changed<"));
    ASSERT_TRUE(stream->Read(&response));
    EXPECT_EQ(response.update().update(0).val().string_val(), "changed");
    context->TryCancel();
    while (stream->Read(&response)) {
    }
    stream->Finish();
}

TEST_F(ServingGnmi, UsesCertificatesThatAreReplaced) {
    const fs::path files = directory_.path() / "tls";
    fs::create_directory(files);
    const auto copy_all = [&](const cli::TlsTryout &from) {
        for (const auto &file : fs::directory_iterator(from.authority().parent_path()))
            if (file.path().extension() == ".pem" || file.path().extension() == ".key") {
                fs::copy_file(file, files / (file.path().filename().string() + ".new"));
                fs::rename(files / (file.path().filename().string() + ".new"), files / file.path().filename());
            }
    };
    copy_all(cli::TlsTryout(current_user()));
    const std::string address =
        serve({"--gnmi", "127.0.0.1:0", "--cert", files / "server.pem", "--key", files / "server.key",
               "--client-ca", files / "ca.pem", "--writers", "root"});
    std::string name;
    ASSERT_TRUE(GnmiClient(address, files_in(files)).get_name(name).ok());
    const cli::TlsTryout second(current_user());
    copy_all(second);
    EXPECT_TRUE(eventually([&] { return GnmiClient(address, files_in(files)).get_name(name).ok(); }));
}

struct WrongOptions {
    std::string name;
    std::vector<std::string> options;
    std::string says;
};

class WrongGnmiOptions : public testing::TestWithParam<WrongOptions> {};

TEST_P(WrongGnmiOptions, AreRefused) {
    std::vector<std::string> words{"serve", "--device", YFW_EXAMPLES_DIR "/r1"};
    words.insert(words.end(), GetParam().options.begin(), GetParam().options.end());
    const Outcome outcome = run_yfw({words});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.errors, HasSubstr(GetParam().says));
    EXPECT_EQ(outcome.output, "");
}

INSTANTIATE_TEST_SUITE_P(
    Like, WrongGnmiOptions,
    testing::Values(
        WrongOptions{"AnAddressThatIsNone", {"--gnmi", "here:there"}, "expected [HOST:]PORT"},
        WrongOptions{"ACertificateWithoutAKey", {"--gnmi", "--cert", "c.pem"}, "--key"},
        WrongOptions{"AKeyWithoutACertificate", {"--gnmi", "--key", "k.pem"}, "--cert"},
        WrongOptions{"ACertificateWithoutGnmi", {"--cert", "c.pem"}, "--gnmi"},
        WrongOptions{"PlaintextForOthers", {"--gnmi", "0.0.0.0:9339", "--insecure"}, "--insecure"},
        WrongOptions{"ThrowAwayCertificatesForOthers", {"--gnmi", "0.0.0.0:9339"}, "without --cert and --key"},
        WrongOptions{"PlaintextAndACertificate",
                     {"--gnmi", "--insecure", "--cert", "c.pem", "--key", "k.pem"},
                     "contradicts --cert"}),
    [](const auto &row) { return row.param.name; });

// The program's answer to these options besides those of a server.
Outcome served_with(const TemporaryDirectory &directory, const std::vector<std::string> &options) {
    std::vector<std::string> arguments{"serve",
                                       "--device",
                                       YFW_EXAMPLES_DIR "/r1",
                                       "--store",
                                       (directory.path() / "store.db").string(),
                                       "--socket",
                                       (directory.path() / "socket").string(),
                                       "--gnmi"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run_yfw({arguments});
}

TEST(ACertificateThatCannotBeRead, IsNamed) {
    const TemporaryDirectory directory;
    const std::string file = directory.add("server.pem", "no certificate");
    const Outcome outcome = served_with(directory, {"127.0.0.1:0", "--cert", file, "--key", file});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.errors, HasSubstr(file + " is not a certificate in PEM"));
}

TEST(ACertificateThatIsNotThere, IsNamed) {
    const TemporaryDirectory directory;
    const std::string file = (directory.path() / "server.pem").string();
    const Outcome outcome = served_with(directory, {"127.0.0.1:0", "--cert", file, "--key", file});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("--cert: " + file + ": No such file or directory"));
}

TEST(ATakenPort, IsToldInOneLine) {
    const TemporaryDirectory directory;
    const Descriptor listening(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    ASSERT_EQ(bind(listening.get(), reinterpret_cast<const sockaddr *>(&address), size), 0);
    ASSERT_EQ(listen(listening.get(), 1), 0);
    ASSERT_EQ(getsockname(listening.get(), reinterpret_cast<sockaddr *>(&address), &size), 0);
    const std::string taken = "127.0.0.1:" + std::to_string(ntohs(address.sin_port));
    const Outcome outcome = served_with(directory, {taken, "--insecure"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(lines_of(outcome.errors),
                ElementsAre("yfw: " + taken +
                            ": cannot listen there: the address is in use, or not one of this machine"));
}

} // namespace
} // namespace yfw::test

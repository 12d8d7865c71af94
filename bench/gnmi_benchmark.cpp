// What gNMI's clients wait for and what they cost the server. Gets are over TLS, with a client certificate, and
// compared with a bare gRPC server that returns the same bytes; streams are in plaintext on the loopback.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>
#include <grpcpp/server.h>
#include <grpcpp/server_builder.h>
#include <sys/resource.h>
#include <unistd.h>

#include "base/private_directory.h"
#include "device/service.h"
#include "frontends/cli/gnmi/tls_tryout.h"
#include "frontends/gnmi/transport/gnmi_server.h"
#include "generated_source.h"
#include "gnmi_clients.h"
#include "host/mapping_description.h"

namespace {

using namespace yfw;
using Seconds = std::chrono::duration<double>;
using Clock = std::chrono::steady_clock;

constexpr bench::DeviceSize small{4, 4, 1};
constexpr bench::DeviceSize ten_thousand_neighbors{2500, 10000, 10};

const host::MappingDescription &mapping() {
    static const host::MappingDescription read = host::read_mapping(YFW_PLUGINS);
    return read;
}

const yang::Schemas &schemas() {
    static const yang::Schemas loaded(YFW_MODELS_DIR, YFW_MODELS_DIR, mapping().modules);
    return loaded;
}

// A device with one neighbor that changes.
class ChangingSource final : public sources::NativeSource {
public:
    explicit ChangingSource(const bench::DeviceSize &size)
        : one_(schemas(), bench::generated_device(size)), other_(schemas(), changed(size)) {}

    void change() { is_other_ = !is_other_; }

    yang::DataTree read(const ly_ctx *context) override { return now().read(context); }
    sources::Snapshot snapshot(const ly_ctx *context) override { return now().snapshot(context); }

private:
    static std::string changed(const bench::DeviceSize &size) {
        std::string xml = bench::generated_device(size);
        const std::string before = "uplink 1 to the core";
        return xml.replace(xml.find(before), before.size(), "uplink X to the core");
    }
    bench::GeneratedSource &now() { return is_other_ ? other_ : one_; }

    bench::GeneratedSource one_, other_;
    std::atomic<bool> is_other_{false};
};

yfw::gnmi::ServerOptions any_user(const cli::TlsTryout *tls = nullptr) {
    yfw::gnmi::ServerOptions options;
    options.address = yfw::gnmi::read_listen_address("127.0.0.1:0", "");
    options.groups.owner = geteuid();
    if (tls != nullptr)
        options.tls = yfw::gnmi::TlsFiles{tls->certificate(), tls->key(), tls->authority()};
    options.is_password_of = [](const std::string &, const std::string &) { return true; };
    return options;
}

// A source, served. Borrows it.
class Served {
public:
    explicit Served(sources::NativeSource &source, const cli::TlsTryout *tls = nullptr)
        : device_(schemas(), source, directory_.path() / "commits.db", mapping()), service_(device_),
          server_(any_user(tls), service_, [](const std::string &) {}) {}

    std::string address() const { return "127.0.0.1:" + std::to_string(server_.port()); }
    device::Service &service() { return service_; }

private:
    PrivateDirectory directory_{"yfw-bench"};
    device::ManagedDevice device_;
    device::Service service_;
    yfw::gnmi::GnmiServer server_;
};

// Returns the same bytes for every Get.
class Echo final : public ::gnmi::gNMI::WithRawCallbackMethod_Get<::gnmi::gNMI::Service> {
public:
    Echo(const ::gnmi::GetResponse &response, const cli::TlsTryout &tls) {
        const grpc::Slice slice(response.SerializeAsString());
        bytes_ = grpc::ByteBuffer(&slice, 1);
        grpc::ServerBuilder builder;
        builder.AddListeningPort(
            "127.0.0.1:0", yfw::gnmi::credentials_of({tls.certificate(), tls.key(), tls.authority()}), &port_);
        builder.RegisterService(this);
        server_ = builder.BuildAndStart();
    }
    ~Echo() override { server_->Shutdown(); }

    std::string address() const { return "127.0.0.1:" + std::to_string(port_); }

    grpc::ServerUnaryReactor *Get(grpc::CallbackServerContext *context, const grpc::ByteBuffer *,
                                  grpc::ByteBuffer *response) override {
        *response = bytes_;
        grpc::ServerUnaryReactor *reactor = context->DefaultReactor();
        reactor->Finish(grpc::Status::OK);
        return reactor;
    }

private:
    grpc::ByteBuffer bytes_;
    int port_ = 0;
    std::unique_ptr<grpc::Server> server_;
};

std::string content_of(const std::filesystem::path &file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::shared_ptr<grpc::ChannelCredentials> client_of(const cli::TlsTryout &tls) {
    const std::filesystem::path directory = tls.authority().parent_path();
    return grpc::SslCredentials({content_of(tls.authority()), content_of(directory / "client.key"),
                                 content_of(directory / "client.pem")});
}

::gnmi::GetResponse get(::gnmi::gNMI::Stub &stub, const ::gnmi::GetRequest &request) {
    ::gnmi::GetResponse response;
    const auto context = bench::call_context();
    if (!stub.Get(context.get(), request, &response).ok())
        throw std::runtime_error("the server refuses a Get");
    return response;
}

double processor_seconds() {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

double median(std::vector<double> all) {
    std::sort(all.begin(), all.end());
    return all[all.size() / 2];
}

double seconds_of(const auto &work) {
    const auto start = Clock::now();
    work();
    return Seconds(Clock::now() - start).count();
}

// Alternates with the bare server, so that both see the same machine.
void get_of_one_leaf(benchmark::State &state) {
    bench::GeneratedSource source(schemas(), small);
    const cli::TlsTryout tls("root");
    const Served served(source, &tls);
    ::gnmi::GetRequest request;
    ::gnmi::Path &path = *request.add_path();
    for (const char *name : {"lldp", "state", "system-name"})
        path.add_elem()->set_name(name);
    const auto stub = bench::stub_of(served.address(), client_of(tls));
    const Echo echo(get(*stub, request), tls);
    const auto bare = bench::stub_of(echo.address(), client_of(tls));
    get(*bare, request);
    std::vector<double> gets;
    std::vector<double> echos;
    for (auto _ : state) {
        gets.push_back(seconds_of([&] { get(*stub, request); }));
        echos.push_back(seconds_of([&] { get(*bare, request); }));
        state.SetIterationTime(gets.back());
    }
    state.counters["median_us"] = median(gets) * 1e6;
    state.counters["ratio_to_echo"] = median(gets) / median(echos);
}

// All leaves by Subscribe with the mode ONCE, by the processor time that the server needs.
void once_of_10000_neighbors(benchmark::State &state) {
    bench::GeneratedSource source(schemas(), ten_thousand_neighbors);
    const Served served(source);
    bench::Clients::once(served.address()).next();
    int64_t leaves = 0;
    double used = 0;
    for (auto _ : state) {
        const double before = processor_seconds();
        state.SetIterationTime(seconds_of([&] { leaves += bench::Clients::once(served.address()).next(); }));
        used += processor_seconds() - before;
    }
    state.counters["leaves"] = static_cast<double>(leaves) / static_cast<double>(state.iterations());
    state.counters["leaves_per_processor_s"] = static_cast<double>(leaves) / used;
}

// One change of a neighbor for so many subscribers on so many connections.
void change_for_subscribers(benchmark::State &state) {
    constexpr int changes = 20;
    constexpr auto idle = std::chrono::seconds(3);
    const auto count = static_cast<int>(state.range(0));
    ChangingSource source(small);
    Served served(source);
    bench::Clients clients =
        bench::Clients::subscribers(served.address(), count, static_cast<int>(state.range(1)), changes);
    clients.next();
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    const double before_idle = processor_seconds();
    std::this_thread::sleep_for(idle);
    state.counters["idle_percent"] = (processor_seconds() - before_idle) / Seconds(idle).count() * 100;
    std::vector<double> waits;
    const double before = processor_seconds();
    for (auto _ : state) {
        const auto start = Clock::now();
        source.change();
        served.service().events().tell_state_change();
        const Clock::time_point last{std::chrono::nanoseconds(clients.next())};
        waits.push_back(Seconds(last - start).count());
        state.SetIterationTime(waits.back());
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    state.counters["last_told_ms"] = median(waits) * 1e3;
    state.counters["server_us_each"] = (processor_seconds() - before) / (changes * count) * 1e6;
}

} // namespace

BENCHMARK(get_of_one_leaf)->UseManualTime()->MinTime(2)->Unit(benchmark::kMicrosecond);
BENCHMARK(once_of_10000_neighbors)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(change_for_subscribers)
    ->Args({1000, 1})
    ->Args({1000, 1000})
    ->UseManualTime()
    ->Iterations(20)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char **argv) {
    if (bench::Clients::is_meant(argc, argv))
        return bench::Clients::clients_main(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

// The latency a NETCONF client sees, over the server's Unix socket and without SSH, as percentiles of single
// requests. Gets and edits have a baseline measured in the same run.
#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "base/error.h"
#include "generated_source.h"
#include "netconf_client.h"
#include "served_device.h"
#include "sources/file/kept_file_source.h"
#include "yang/tree_text.h"

namespace {

using namespace yfw;

const yang::Schemas &schemas() {
    static const yang::Schemas loaded(YFW_MODELS_DIR, YFW_MODELS_DIR, host::read_mapping(YFW_PLUGINS).modules);
    return loaded;
}

constexpr bench::DeviceSize small{4, 4, 1};
constexpr bench::DeviceSize ten_thousand_interfaces{10000, 10000, 10};
constexpr bench::DeviceSize hundred_thousand_interfaces{100000, 100000, 10};
constexpr bench::DeviceSize ten_thousand_neighbors{2500, 10000, 10};

// The durations of repeated runs, one by one.
class Durations {
public:
    template <class Work> void measure(Work &&work) {
        const auto start = std::chrono::steady_clock::now();
        work();
        all_.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }

    double last() const { return all_.back(); }

    // In seconds. `part`: 0.5 for the median.
    double percentile(double part) const {
        std::vector<double> sorted = all_;
        std::sort(sorted.begin(), sorted.end());
        return sorted[static_cast<size_t>(part * static_cast<double>(sorted.size() - 1))];
    }

private:
    std::vector<double> all_;
};

void report_latency(benchmark::State &state, const Durations &durations) {
    state.counters["median_ms"] = durations.percentile(0.5) * 1e3;
    state.counters["p99_ms"] = durations.percentile(0.99) * 1e3;
}

std::string get(const std::string &lldp_content) {
    return "<get><filter><lldp xmlns=\"http://openconfig.net/yang/lldp\">" + lldp_content +
           "</lldp></filter></get>";
}

const std::string one_leaf = get("<state><system-name/></state>");
const std::string one_interface = get("<interfaces><interface><name>eth7</name></interface></interfaces>");
const std::string all_neighbors = get("<interfaces><interface><neighbors/></interface></interfaces>");

// The data of a reply as a libyang tree.
yang::DataTree data_of(const std::string &reply) {
    const size_t begin = reply.find("<data>") + 6;
    const std::string content = reply.substr(begin, reply.rfind("</data>") - begin);
    return yang::parse_data(schemas().context(), content, LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_STRICT);
}

void print(const lyd_node *data) {
    benchmark::DoNotOptimize(yang::printed(data, LYD_XML, LYD_PRINT_SHRINK | LYD_PRINT_WITHSIBLINGS).c_str());
}

constexpr size_t baseline_runs = 5;

// The latency of one request; the baselines are libyang printing the answer, and reading the device alone.
void measure_get(benchmark::State &state, sources::NativeSource &source, const std::string &operation) {
    const bench::ServedDevice device(schemas(), source);
    bench::NetconfClient client(device.socket());
    const std::string reply = client.ask(operation);
    const yang::DataTree answer = data_of(reply);
    if (!answer) {
        state.SkipWithError("the answer is empty");
        return;
    }
    Durations gets;
    Durations prints;
    Durations reads;
    for (size_t i = 0; i < baseline_runs; i++) {
        prints.measure([&] { print(answer.get()); });
        reads.measure([&] { source.read(schemas().context()); });
    }
    for (auto _ : state) {
        gets.measure([&] { benchmark::DoNotOptimize(client.ask(operation)); });
        state.SetIterationTime(gets.last());
    }
    report_latency(state, gets);
    state.counters["ratio_to_read"] = gets.percentile(0.5) / reads.percentile(0.5);
    state.counters["ratio_to_print"] = gets.percentile(0.5) / prints.percentile(0.5);
    state.counters["answer_kB"] = static_cast<double>(reply.size()) / 1e3;
}

void get_from_memory(benchmark::State &state, const bench::DeviceSize &size, const std::string &operation) {
    bench::GeneratedSource source(schemas(), size);
    measure_get(state, source, operation);
}

// A device given as files, as it is served: files are reread only when they change, which they do not here.
void get_from_file(benchmark::State &state, const bench::DeviceSize &size, const std::string &operation) {
    const PrivateDirectory directory("yfw-bench");
    const std::filesystem::path file = directory.path() / "device.xml";
    std::ofstream stream(file);
    bench::write_device(stream, size);
    stream.close();
    sources::KeptFileSource source(sources::FileSource({file}));
    measure_get(state, source, operation);
}

std::string timer_edit(int seconds) {
    return "<edit-config><target><running/></target><config><lldp "
           "xmlns=\"http://openconfig.net/yang/lldp\"><config>"
           "<hello-timer>" +
           std::to_string(seconds) + "</hello-timer></config></lldp></config></edit-config>";
}

// Each edit is a separate commit, on disk before the reply. The baseline is the disk: an empty commit.
void edit_running(benchmark::State &state) {
    bench::GeneratedSource source(schemas(), small);
    const bench::ServedDevice device(schemas(), source);
    bench::NetconfClient client(device.socket());
    commits::CommitLog rows(device.directory() / "rows.db", true);
    client.ask(timer_edit(30)); // creates the store
    Durations edits;
    Durations syncs;
    int seconds = 10;
    for (auto _ : state) {
        seconds = seconds == 10 ? 20 : 10;
        edits.measure([&] { client.ask(timer_edit(seconds)); });
        syncs.measure([&] {
            rows.commit([](const auto &) { return std::optional<commits::Commit>(commits::Commit{}); });
        });
        state.SetIterationTime(edits.last());
    }
    report_latency(state, edits);
    state.counters["edits_per_s"] = 1 / edits.percentile(0.5);
    state.counters["sync_ms"] = syncs.percentile(0.5) * 1e3;
    state.counters["ratio_to_sync"] = edits.percentile(0.5) / syncs.percentile(0.5);
}

// Connects, exchanges hellos, closes the session and waits until the server has closed the connection.
void open_and_close_session(benchmark::State &state) {
    bench::GeneratedSource source(schemas(), small);
    const bench::ServedDevice device(schemas(), source);
    Durations sessions;
    for (auto _ : state) {
        sessions.measure([&] { bench::NetconfClient(device.socket()).close_session(); });
        state.SetIterationTime(sessions.last());
    }
    report_latency(state, sessions);
    state.counters["sessions_per_s"] = 1 / sessions.percentile(0.5);
}

} // namespace

BENCHMARK_CAPTURE(get_from_memory, one_leaf, small, one_leaf)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(get_from_memory, one_of_10000_interfaces, ten_thousand_interfaces, one_interface)
    ->UseManualTime()
    ->MinTime(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(get_from_memory, one_of_100000_interfaces, hundred_thousand_interfaces, one_interface)
    ->UseManualTime()
    ->MinTime(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(get_from_file, one_of_10000_interfaces, ten_thousand_interfaces, one_interface)
    ->UseManualTime()
    ->MinTime(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(get_from_memory, all_of_10000_neighbors, ten_thousand_neighbors, all_neighbors)
    ->UseManualTime()
    ->MinTime(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(edit_running)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(open_and_close_session)->UseManualTime()->Unit(benchmark::kMicrosecond);

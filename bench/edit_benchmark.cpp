// The parts of an edit: mapping alone, with validation, and with the synced commit; for one leaf and for the
// given number of interfaces. The baseline for a commit is the time the disk takes for one synced row.
#include <filesystem>
#include <string>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "device/managed_device.h"
#include "yang/configuration_text.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace {

using namespace yfw;

const yang::Schemas &schemas() {
    static const yang::Schemas loaded(YFW_MODELS_DIR, YFW_MODELS_DIR, host::read_mapping(YFW_PLUGINS).modules);
    return loaded;
}

// A device with LLDP enabled and this many interfaces, each with its own settings.
std::string configuration(int64_t interfaces) {
    std::string xml = "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\"><enable>true</enable></lldp>"
                      "<interface-configurations xmlns=\"urn:tarvo:yang:Tarvo-QD-ifmgr-cfg\">";
    for (int64_t i = 0; i < interfaces; i++)
        xml +=
            "<interface-configuration><active>act</active><interface-name>eth" + std::to_string(i) +
            "</interface-name><lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\"><enable>true</enable>"
            "</lldp></interface-configuration>";
    return xml + "</interface-configurations>";
}

class FixedSource final : public sources::NativeSource {
public:
    explicit FixedSource(std::string xml) : xml_(std::move(xml)) {}
    yang::DataTree read(const ly_ctx *) override { return yang::parse_configuration(schemas(), xml_, "bench"); }

private:
    std::string xml_;
};

// A device with a store in a temporary directory.
struct Device {
    explicit Device(int64_t interfaces)
        : directory(std::filesystem::temp_directory_path() / ("yfw-bench-" + std::to_string(getpid()))),
          files(configuration(interfaces)), engine(schemas(), files, host::read_mapping(YFW_PLUGINS)),
          managed(schemas(), files, directory / "commits.db", host::read_mapping(YFW_PLUGINS)) {
        std::filesystem::create_directories(directory);
    }
    ~Device() { std::filesystem::remove_all(directory); }
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;

    std::filesystem::path directory;
    FixedSource files;
    host::Engine engine; // for the mapping alone
    device::ManagedDevice managed;
};

yang::EditNode timer_edit(int64_t seconds) {
    yang::EditNode root;
    root.node = schemas().openconfig_root();
    yang::add_edit(root, yang::parse_path(root.node, "/lldp/config/hello-timer"), std::to_string(seconds),
                   yang::Operation::merge);
    return root;
}

yang::EditNode interfaces_edit(int64_t interfaces, bool enabled) {
    std::string xml = "<lldp xmlns=\"http://openconfig.net/yang/lldp\"><interfaces>";
    for (int64_t i = 0; i < interfaces; i++) {
        const std::string name = "<name>eth" + std::to_string(i) + "</name>";
        xml += "<interface>" + name + "<config>" + name + "<enabled>" + (enabled ? "true" : "false") +
               "</enabled></config></interface>";
    }
    return yang::parse_edit(schemas(), xml + "</interfaces></lldp>", yang::Operation::merge);
}

void map_one_leaf(benchmark::State &state) {
    Device device(1);
    const yang::EditNode edit = timer_edit(30);
    for (auto _ : state)
        benchmark::DoNotOptimize(device.engine.map_edit(edit, device.managed.running_configuration().native));
}

void validate_one_leaf(benchmark::State &state) {
    Device device(1);
    const yang::EditNode edit = timer_edit(30);
    const device::Configuration running = device.managed.running_configuration();
    for (auto _ : state)
        benchmark::DoNotOptimize(device.managed.apply(edit, running));
}

// Besides as many interfaces.
void commit_one_leaf(benchmark::State &state) {
    Device device(state.range(0));
    int64_t seconds = 10;
    device.managed.edit(timer_edit(30), {"bench", ""}); // creates the store
    for (auto _ : state) {
        seconds = seconds == 10 ? 20 : 10;
        benchmark::DoNotOptimize(device.managed.edit(timer_edit(seconds), {"bench", ""}));
    }
}

void store_one_row(benchmark::State &state) {
    Device device(1);
    commits::CommitLog store(device.managed.store(), true);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            store.commit([](const auto &) { return std::optional<commits::Commit>(commits::Commit{}); }));
}

void map_interfaces(benchmark::State &state) {
    Device device(state.range(0));
    const yang::EditNode edit = interfaces_edit(state.range(0), true);
    for (auto _ : state)
        benchmark::DoNotOptimize(device.engine.map_edit(edit, device.managed.running_configuration().native));
    state.SetComplexityN(state.range(0));
}

void commit_interfaces(benchmark::State &state) {
    Device device(state.range(0));
    bool enabled = true;
    device.managed.edit(timer_edit(30), {"bench", ""}); // creates the store
    for (auto _ : state) {
        enabled = !enabled;
        benchmark::DoNotOptimize(device.managed.edit(interfaces_edit(state.range(0), enabled), {"bench", ""}));
    }
    state.SetComplexityN(state.range(0));
}

} // namespace

BENCHMARK(map_one_leaf)->Unit(benchmark::kMicrosecond);
BENCHMARK(validate_one_leaf)->Unit(benchmark::kMicrosecond);
BENCHMARK(commit_one_leaf)->Arg(1)->Arg(10)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(store_one_row)->Unit(benchmark::kMicrosecond);
BENCHMARK(map_interfaces)->RangeMultiplier(2)->Range(500, 8000)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(commit_interfaces)->RangeMultiplier(2)->Range(500, 8000)->Complexity()->Unit(benchmark::kMillisecond);

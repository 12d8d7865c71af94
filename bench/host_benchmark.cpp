// The parts of a read, by number of neighbors: mapping alone (request walk, native response, native walks,
// libyang's answer tree), and libyang printing the answer as the baseline.
#include <benchmark/benchmark.h>

#include "generated_source.h"
#include "host/engine.h"
#include "yang/path.h"
#include "yang/tree_text.h"

namespace {

using namespace yfw;

const yang::Schemas &schemas() {
    static const yang::Schemas loaded(YFW_MODELS_DIR, YFW_MODELS_DIR, host::read_mapping(YFW_PLUGINS).modules);
    return loaded;
}

bench::GeneratedSource source_with(int64_t neighbors) {
    const auto count = static_cast<unsigned>(neighbors);
    return {schemas(), bench::DeviceSize{count / 4, count, count / 1000 + 1}};
}

host::ReadRequest request_for(const char *path) {
    host::ReadRequest request;
    request.paths.push_back(yang::parse_path(schemas().openconfig_root(), path));
    return request;
}

void map_everything(benchmark::State &state) {
    bench::GeneratedSource source = source_with(state.range(0));
    host::Engine engine(schemas(), source, host::read_mapping(YFW_PLUGINS));
    const host::ReadRequest request = request_for("/lldp");
    for (auto _ : state)
        benchmark::DoNotOptimize(engine.read(request).data);
    state.SetComplexityN(state.range(0));
}

void map_one_interface(benchmark::State &state) {
    bench::GeneratedSource source = source_with(state.range(0));
    host::Engine engine(schemas(), source, host::read_mapping(YFW_PLUGINS));
    const host::ReadRequest request = request_for("/lldp/interfaces/interface[name='eth7']");
    for (auto _ : state)
        benchmark::DoNotOptimize(engine.read(request).data);
    state.SetComplexityN(state.range(0));
}

void copy_native_data(benchmark::State &state) {
    bench::GeneratedSource source = source_with(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(source.read(schemas().context()));
    state.SetComplexityN(state.range(0));
}

void print_answer(benchmark::State &state) {
    bench::GeneratedSource source = source_with(state.range(0));
    host::Engine engine(schemas(), source, host::read_mapping(YFW_PLUGINS));
    const host::Answer answer = engine.read(request_for("/lldp"));
    for (auto _ : state)
        benchmark::DoNotOptimize(yang::printed(answer.data.get(), LYD_XML, LYD_PRINT_WITHSIBLINGS).c_str());
    state.SetComplexityN(state.range(0));
}

} // namespace

BENCHMARK(copy_native_data)
    ->RangeMultiplier(4)
    ->Range(1000, 16000)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(map_everything)->RangeMultiplier(4)->Range(1000, 16000)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(map_one_interface)
    ->RangeMultiplier(4)
    ->Range(1000, 16000)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(print_answer)->RangeMultiplier(4)->Range(1000, 16000)->Complexity()->Unit(benchmark::kMillisecond);

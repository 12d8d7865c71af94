// The parts of a read, by the number of neighbors: mapping alone (request walk, native response, native walks,
// libyang's tree of the answer), and libyang printing that answer, as the peer.
#include <sstream>

#include <benchmark/benchmark.h>

#include "device_generator.h"
#include "host/engine.h"
#include "host/error.h"
#include "host/path.h"

namespace {

using namespace yfw;

const host::Schemas &schemas() {
    static const host::Schemas loaded(YFW_MODELS_DIR, YFW_MODELS_DIR);
    return loaded;
}

// Gives out copies of one device, so that parsing is not measured.
class GeneratedSource final : public sources::NativeSource {
public:
    explicit GeneratedSource(unsigned neighbors) {
        std::ostringstream xml;
        bench::write_device(xml, {neighbors / 4, neighbors, neighbors / 1000 + 1});
        lyd_node *data = nullptr;
        if (lyd_parse_data_mem(schemas().context(), xml.str().c_str(), LYD_XML,
                               LYD_PARSE_ONLY | LYD_PARSE_ORDERED, 0, &data) != LY_SUCCESS)
            throw host::Error(host::ErrorTag::operation_failed, "", host::take_yang_error(schemas().context()));
        data_.reset(data);
    }

    host::DataTree read(const ly_ctx *) override {
        lyd_node *copy = nullptr;
        lyd_dup_siblings(data_.get(), nullptr, LYD_DUP_RECURSIVE, &copy);
        return host::DataTree(copy);
    }

private:
    host::DataTree data_;
};

host::ReadRequest request_for(const char *path) {
    host::ReadRequest request;
    request.paths.push_back(host::parse_path(schemas().openconfig_root(), path));
    return request;
}

void map_everything(benchmark::State &state) {
    GeneratedSource source(static_cast<unsigned>(state.range(0)));
    host::Engine engine(schemas(), source, YFW_PLUGIN_LIBRARY);
    const host::ReadRequest request = request_for("/lldp");
    for (auto _ : state)
        benchmark::DoNotOptimize(engine.read(request).data);
    state.SetComplexityN(state.range(0));
}

void map_one_interface(benchmark::State &state) {
    GeneratedSource source(static_cast<unsigned>(state.range(0)));
    host::Engine engine(schemas(), source, YFW_PLUGIN_LIBRARY);
    const host::ReadRequest request = request_for("/lldp/interfaces/interface[name='eth7']");
    for (auto _ : state)
        benchmark::DoNotOptimize(engine.read(request).data);
    state.SetComplexityN(state.range(0));
}

void copy_native_data(benchmark::State &state) {
    GeneratedSource source(static_cast<unsigned>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(source.read(schemas().context()));
    state.SetComplexityN(state.range(0));
}

void print_answer(benchmark::State &state) {
    GeneratedSource source(static_cast<unsigned>(state.range(0)));
    host::Engine engine(schemas(), source, YFW_PLUGIN_LIBRARY);
    const host::Answer answer = engine.read(request_for("/lldp"));
    for (auto _ : state) {
        char *text = nullptr;
        lyd_print_mem(&text, answer.data.get(), LYD_XML, LYD_PRINT_WITHSIBLINGS);
        benchmark::DoNotOptimize(text);
        std::free(text);
    }
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

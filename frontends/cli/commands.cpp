#include "frontends/cli/commands.h"

#include <cstdio>
#include <iostream>
#include <memory>

#include "frontends/cli/print.h"
#include "host/engine.h"
#include "host/path.h"
#include "sources/file/file_source.h"

namespace yfw::cli {
namespace {

sources::FileSource open_device(const DeviceOptions &options) {
    if (!options.native_files.empty())
        return sources::FileSource(options.native_files);
    return sources::FileSource::of_device(options.device);
}

host::ReadRequest read_request(const host::Schemas &schemas, const GetOptions &options) {
    host::ReadRequest request;
    request.content = options.content;
    for (const std::string &path : options.paths)
        request.paths.push_back(host::parse_path(schemas.openconfig_root(), path));
    return request;
}

// The process ends when the command does. What is large is left to the operating system then, which takes it
// back at once; node by node that takes as long as a good part of the read.
template <class T> const T &until_exit(std::unique_ptr<T> object) {
    static T *kept = nullptr;
    kept = object.release();
    return *kept;
}

} // namespace

void run_get(const DeviceOptions &device, const GetOptions &get) {
    const auto &schemas =
        until_exit(std::make_unique<host::Schemas>(device.native_models, device.openconfig_models));
    const host::ReadRequest request = read_request(schemas, get);
    sources::FileSource source = open_device(device);
    host::Engine engine(schemas, source, device.plugin);
    engine.set_trace(device.trace);
    const auto &answer = until_exit(std::make_unique<host::Answer>(engine.read(request)));
    for (const std::string &warning : answer.warnings)
        std::cerr << "yfw: warning: " << warning << '\n';
    prepare_output(stdout);
    print_data(stdout, schemas, answer.data.get(), get.format);
}

} // namespace yfw::cli

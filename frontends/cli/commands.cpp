#include "frontends/cli/commands.h"

#include <cstdio>
#include <iostream>

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


} // namespace

void run_get(const DeviceOptions &device, const GetOptions &get) {
    const host::Schemas schemas(device.native_models, device.openconfig_models);
    const host::ReadRequest request = read_request(schemas, get);
    sources::FileSource source = open_device(device);
    host::Engine engine(schemas, source, device.plugin);
    engine.set_trace(device.trace);
    const host::Answer answer = engine.read(request);
    for (const std::string &warning : answer.warnings)
        std::cerr << "yfw: warning: " << warning << '\n';
    print_data(stdout, schemas, answer.data.get(), get.format);
}

} // namespace yfw::cli

#include "frontends/cli/commands/commands.h"

#include <cstdio>
#include <iostream>
#include <memory>

#include "frontends/cli/options/named_device.h"
#include "frontends/cli/output/print.h"
#include "yang/path.h"

namespace yfw::cli {
namespace {

host::ReadRequest read_request(const yang::Schemas &schemas, const GetOptions &options) {
    host::ReadRequest request;
    request.content = options.content;
    for (const std::string &path : options.paths)
        request.paths.push_back(yang::parse_path(schemas.openconfig_root(), path));
    return request;
}

// The process ends with the command, so large objects are left to the operating system, which reclaims them at
// once; freeing them node by node takes about as long as much of the read.
template <class T> T &until_exit(std::unique_ptr<T> object) {
    static T *volatile kept = nullptr; // volatile, so that leak checkers find it
    kept = object.release();
    return *kept;
}

} // namespace

void run_get(const DeviceOptions &device, const GetOptions &get) {
    NamedDevice &named = until_exit(std::make_unique<NamedDevice>(device));
    const host::ReadRequest request = read_request(named.schemas, get);
    const host::Answer &answer = until_exit(std::make_unique<host::Answer>(
        get.applied ? named.device.read_applied(request) : named.device.read(request)));
    for (const std::string &warning : answer.warnings)
        std::cerr << "yfw: warning: " << warning << '\n';
    prepare_output(stdout);
    print_data(stdout, named.schemas, answer.data.get(), get.format);
}

} // namespace yfw::cli

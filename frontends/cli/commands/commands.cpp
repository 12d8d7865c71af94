#include "frontends/cli/commands/commands.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <utility>

#include "base/say.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/cli/output/print.h"
#include "frontends/cli/output/progress.h"
#include "yang/typed_path.h"

namespace yfw::cli {
namespace {

host::ReadRequest read_request(const yang::Schemas &schemas, const GetOptions &options) {
    host::ReadRequest request;
    request.content = options.content;
    for (const std::string &path : options.paths)
        for (yang::Path &node : yang::parse_typed_path(schemas.openconfig_root(), path).nodes)
            request.paths.push_back(std::move(node));
    return request;
}

struct Reading {
    explicit Reading(const DeviceOptions &options) : named(options) {}

    NamedDevice named;
    host::SettledAnswer answer;
};

// The process ends with the command, so what was read is left to the operating system, which reclaims it at
// once; freeing it node by node takes about as long as much of the read. A second command in the same process,
// as in tests, first frees what the first one has read.
Reading &reading_until_exit(const DeviceOptions &options) {
    static Reading *volatile kept = nullptr; // volatile, so that leak checkers find it
    delete kept;
    kept = nullptr;
    kept = std::make_unique<Reading>(options).release();
    return *kept;
}

} // namespace

void run_get(const DeviceOptions &device, const GetOptions &get) {
    std::optional<Progress> progress(std::in_place, "reading " + device.device.string());
    auto &[named, answer] = reading_until_exit(device);
    const host::ReadRequest request = read_request(named.schemas, get);
    answer = get.applied ? named.device.answer_applied(request) : named.device.answer(request);
    progress.reset();
    for (const std::string &warning : answer.warnings())
        warn(warning);
    print_answer(stdout, named.schemas, answer, get.format);
}

} // namespace yfw::cli

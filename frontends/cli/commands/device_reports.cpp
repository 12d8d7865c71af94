#include "frontends/cli/commands/device_reports.h"

#include <string>

#include "base/error.h"
#include "base/say.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/cli/output/progress.h"
#include "frontends/pictures/topology_answer.h"
#include "yang/path.h"

namespace yfw::cli {
namespace {

pictures::Report read_device(const std::string &place, DeviceOptions options) {
    options.device = place;
    NamedDevice named(options);
    host::ReadRequest request;
    request.paths.push_back(yang::parse_path(named.schemas.openconfig_root(), "/lldp"));
    const host::Answer answer = named.device.read(request);
    for (const std::string &warning : answer.warnings)
        warn(place + ": " + warning);
    return pictures::read_answer(place, answer.data.get());
}

// A place that cannot be opened is the error's path already.
std::string reason(const std::string &place, const Error &error) {
    std::string text = place;
    if (!error.path().empty() && error.path() != place)
        text += ": " + error.path();
    return text + ": " + error.what();
}

} // namespace

DeviceReports read_devices(const std::vector<std::filesystem::path> &devices, const DeviceOptions &options) {
    DeviceReports read;
    Progress progress("reading");
    for (size_t i = 0; i < devices.size(); i++) {
        const std::string place = devices[i].string();
        progress.now("reading device " + std::to_string(i + 1) + " of " + std::to_string(devices.size()) +
                     ": " + place);
        try {
            read.reports.push_back(read_device(place, options));
        } catch (const Error &error) {
            if (i + 1 == devices.size() && read.reports.empty())
                throw;
            say(reason(place, error) + "; it is left out");
            read.is_complete = false;
        }
    }
    return read;
}

} // namespace yfw::cli

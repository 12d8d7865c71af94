#include "frontends/cli/serving/gnmi_program.h"

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <unistd.h>

#include "base/error.h"
#include "base/system_error.h"
#include "frontends/cli/options/installation.h"

namespace yfw::cli {
namespace {

// Each ends with a zero byte.
std::string own_arguments() {
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<char *> pointers_to(std::string &arguments) {
    std::vector<char *> pointers;
    for (size_t at = 0; at < arguments.size(); at = arguments.find('\0', at) + 1)
        pointers.push_back(&arguments[at]);
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

void continue_with_gnmi() {
    const std::filesystem::path program = installation().gnmi_program;
    std::string arguments = own_arguments();
    ::execv(program.c_str(), pointers_to(arguments).data());
    throw Error(ErrorTag::operation_not_supported, "--gnmi",
                "cannot run the program that serves gNMI, " + program.string() + ": " + system_error_text());
}

} // namespace yfw::cli

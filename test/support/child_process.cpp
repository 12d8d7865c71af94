#include "support/child_process.h"

#include <chrono>
#include <cstring>

#include <fcntl.h>

#include "base/run_program.h"

namespace yfw::test {
namespace {

constexpr std::chrono::minutes longest_run{2};

bool is_setting_of(const char *entry, const char *name) {
    const std::size_t length = std::strlen(name);
    return std::strncmp(entry, name, length) == 0 && entry[length] == '=';
}

// The test's environment, but with the invocation's time zone and untranslated messages.
std::vector<std::string> environment(const Invocation &invocation) {
    std::vector<std::string> result{"TZ=" + invocation.timezone, "LC_ALL=C"};
    for (char **entry = environ; *entry != nullptr; ++entry)
        if (!is_setting_of(*entry, "TZ") && !is_setting_of(*entry, "LC_ALL"))
            result.emplace_back(*entry);
    return result;
}

} // namespace

Program program_under_test(const std::vector<std::string> &arguments) {
    Program program{.arguments = {YFW_PROGRAM}};
    program.arguments.insert(program.arguments.end(), arguments.begin(), arguments.end());
    return program;
}

Outcome run_yfw(const Invocation &invocation) {
    Program program = program_under_test(invocation.arguments);
    program.directory = invocation.working_directory;
    program.environment = environment(invocation);
    Descriptor device;
    if (!invocation.output_device.empty())
        device = Descriptor(::open(invocation.output_device.c_str(), O_WRONLY | O_CLOEXEC));
    program.output = device.get();
    Finished finished = run(program, "", longest_run);
    return {finished.status, std::move(finished.output), std::move(finished.errors)};
}

} // namespace yfw::test

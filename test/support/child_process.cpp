#include "support/child_process.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <stdexcept>

#include <fcntl.h>

#include "base/run_program.h"
#include "support/files.h"

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

int (*main_function)(int argc, char **argv) = nullptr;

Descriptor opened(const std::string &path, int flags) {
    Descriptor file(::open(path.c_str(), flags | O_CLOEXEC));
    if (!file.is_open())
        throw std::runtime_error(path + " cannot be opened");
    return file;
}

// Directs a standard stream to a file for as long as it lives.
class Redirected {
public:
    Redirected(int stream, const std::string &file, int flags)
        : stream_(stream), before_(::fcntl(stream, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
        flush();
        ::dup2(opened(file, flags).get(), stream_);
    }
    ~Redirected() {
        flush();
        ::dup2(before_.get(), stream_);
    }
    Redirected(const Redirected &) = delete;
    Redirected &operator=(const Redirected &) = delete;

private:
    static void flush() {
        std::cout.flush();
        std::fflush(nullptr);
    }

    int stream_;
    Descriptor before_;
};

class ChangedDirectory {
public:
    explicit ChangedDirectory(const std::filesystem::path &directory)
        : before_(std::filesystem::current_path()) {
        if (!directory.empty())
            std::filesystem::current_path(directory);
    }
    ~ChangedDirectory() { std::filesystem::current_path(before_); }
    ChangedDirectory(const ChangedDirectory &) = delete;
    ChangedDirectory &operator=(const ChangedDirectory &) = delete;

private:
    std::filesystem::path before_;
};

int call_main(const Invocation &invocation) {
    const ChangedDirectory directory(invocation.working_directory);
    ::setenv("TZ", invocation.timezone.c_str(), 1);
    ::tzset();
    std::vector<std::string> arguments = program_under_test(invocation.arguments).arguments;
    std::vector<char *> pointers;
    for (std::string &argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    return main_function(static_cast<int>(arguments.size()), pointers.data());
}

Outcome run_in_this_process(const Invocation &invocation) {
    const TemporaryDirectory files;
    Outcome outcome;
    {
        const Redirected input(STDIN_FILENO, "/dev/null", O_RDONLY);
        const Redirected output(STDOUT_FILENO, files.add("output", ""), O_WRONLY);
        const Redirected errors(STDERR_FILENO, files.add("errors", ""), O_WRONLY);
        outcome.status = call_main(invocation);
    }
    outcome.output = read_file(files.path() / "output");
    outcome.errors = read_file(files.path() / "errors");
    return outcome;
}

} // namespace

void run_yfw_in_this_process(int (*main)(int argc, char **argv)) {
    main_function = main;
}

Program program_under_test(const std::vector<std::string> &arguments) {
    Program program{.arguments = {YFW_PROGRAM}};
    program.arguments.insert(program.arguments.end(), arguments.begin(), arguments.end());
    return program;
}

Outcome run_yfw(const Invocation &invocation) {
    if (main_function != nullptr && invocation.output_device.empty())
        return run_in_this_process(invocation);
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

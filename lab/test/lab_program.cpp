#include "lab/test/lab_program.h"

#include <charconv>
#include <cstdlib>
#include <stdexcept>

#include <poll.h>

#include "lab/programs.h"
#include "support/lab.h"

namespace yfw::lab::test {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds longest{30};
constexpr const char *prefix =
    "yt"; // prefix of the test laboratories' names, followed by the test's process number

std::vector<pid_t> all_processes() {
    std::vector<pid_t> result;
    for (const auto &entry : fs::directory_iterator("/proc")) {
        const std::string name = entry.path().filename().string();
        pid_t number = 0;
        if (std::from_chars(name.data(), name.data() + name.size(), number).ptr == name.data() + name.size())
            result.push_back(number);
    }
    return result;
}

bool holds_file_in(pid_t process, const std::string &directory) {
    std::error_code error;
    for (fs::directory_iterator file("/proc/" + std::to_string(process) + "/fd", error), end;
         !error && file != end; file.increment(error)) {
        std::error_code gone;
        if (fs::read_symlink(file->path(), gone).string().starts_with(directory + "/"))
            return true;
    }
    return false;
}

} // namespace

const char *const two_routers = R"({
  "routers": [
    {"name": "a", "system-name": "a.example.net", "system-description": "The \"first\" router",
     "custom-tlvs": [{"oui": "00:80:c2", "subtype": 9, "value": "61:00:63"}]},
    {"name": "b", "system-name": "b.example.net"}],
  "links": [["a:eth1", "b:eth7"]]})";

RunningProgram::RunningProgram(const std::vector<std::string> &arguments) {
    Pipe errors;
    Program program = yfw::test::program_under_test(arguments);
    program.errors = errors.write_end.get();
    process_ = Process(program);
    stream_ = std::move(errors.read_end);
}

bool RunningProgram::read_more(std::chrono::milliseconds limit) {
    pollfd open{stream_.get(), POLLIN, 0};
    return poll(&open, 1, static_cast<int>(limit.count())) > 0 && append_from(stream_.get(), errors_);
}

bool RunningProgram::says_lines(size_t count) {
    const auto lines = [&] { return static_cast<size_t>(std::count(errors_.begin(), errors_.end(), '\n')); };
    while (lines() < count)
        if (!read_more(longest))
            return false;
    return true;
}

int RunningProgram::wait() {
    eventually([&] {
        while (read_more(std::chrono::milliseconds(0))) {
        }
        return !process_.runs();
    });
    const int status = process_.kill();
    while (read_more(std::chrono::milliseconds(0))) { // its last output
    }
    return status;
}

void LabTest::SetUp() {
    if (const std::string reason = yfw::test::lab_obstacle(); !reason.empty()) {
        if (yfw::test::lab_is_required())
            FAIL() << reason;
        GTEST_SKIP() << reason;
    }
    setenv("XDG_STATE_HOME", files_.path().c_str(), 1);
    fs::permissions(files_.path(), fs::perms(0755)); // lldpd's user must be able to enter it
    yfw::test::remove_laboratories_of_dead_tests(prefix);
    place_ = {prefix + std::to_string(getpid()), files_.path()};
}

void LabTest::TearDown() {
    if (!place_.base.empty() && place_.base == files_.path() && geteuid() == 0)
        lab("down");
}

std::vector<std::string> LabTest::words(const std::string &command,
                                        const std::vector<std::string> &more) const {
    std::vector<std::string> result{"lab", command, "--name", place_.name, "--dir", place_.base.string()};
    result.insert(result.end(), more.begin(), more.end());
    return result;
}

yfw::test::Outcome LabTest::lab(const std::string &command, const std::vector<std::string> &more) const {
    return yfw::test::run_yfw({words(command, more)});
}

nlohmann::json LabTest::status() const {
    return nlohmann::json::parse(lab("status", {"--json"}).output);
}

std::vector<nlohmann::json> LabTest::neighbors(const std::string &router, const std::string &interface) const {
    const Finished said =
        run({lldpcli_program(), "-u", place_.socket(router).string(), "-f", "json0", "show", "neighbors"});
    const nlohmann::json parsed = nlohmann::json::parse(said.output, nullptr, false);
    const nlohmann::json::json_pointer list("/lldp/0/interface");
    std::vector<nlohmann::json> result;
    if (!parsed.is_discarded() && parsed.contains(list))
        for (const nlohmann::json &neighbor : parsed.at(list))
            if (neighbor.at("name") == interface)
                result.push_back(neighbor);
    return result;
}

std::vector<std::string> LabTest::names_heard(const std::string &router, const std::string &interface) const {
    std::vector<std::string> names;
    for (const nlohmann::json &neighbor : neighbors(router, interface))
        names.push_back(neighbor.at("/chassis/0/name/0/value"_json_pointer));
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<pid_t> LabTest::processes() const {
    std::vector<pid_t> result;
    for (const pid_t process : all_processes())
        if (process != getpid() && holds_file_in(process, place_.directory().string()))
            result.push_back(process);
    return result;
}

std::vector<std::string> LabTest::left_over() const {
    std::vector<std::string> left;
    std::error_code error;
    for (fs::directory_iterator entry("/run/netns", error), end; !error && entry != end; entry.increment(error))
        if (entry->path().filename().string().starts_with(place_.name + "-"))
            left.push_back("namespace " + entry->path().filename().string());
    for (const pid_t process : processes())
        left.push_back("process " + std::to_string(process));
    for (const std::string &mount : yfw::test::lines_of(yfw::test::read_file("/proc/self/mounts")))
        if (mount.find(place_.name) != std::string::npos)
            left.push_back("mount " + mount);
    if (fs::exists(place_.directory()))
        left.push_back("directory " + place_.directory().string());
    return left;
}

} // namespace yfw::lab::test

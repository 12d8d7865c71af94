#include "support/program_process.h"

#include <cerrno>
#include <csignal>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

#include "support/eventually.h"

namespace yfw::test {
namespace {

void check(int error, const char *what) {
    if (error != 0)
        throw std::system_error(error, std::generic_category(), what);
}

std::vector<char *> pointers(std::vector<std::string> &texts) {
    std::vector<char *> result;
    for (std::string &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

} // namespace

FileActions::FileActions() {
    check(posix_spawn_file_actions_init(&actions_), "posix_spawn_file_actions_init");
}

FileActions::~FileActions() {
    posix_spawn_file_actions_destroy(&actions_);
}

void FileActions::duplicate(int from, int to) {
    check(posix_spawn_file_actions_adddup2(&actions_, from, to), "posix_spawn_file_actions_adddup2");
}

void FileActions::open(int number, const std::string &path, int flags) {
    check(posix_spawn_file_actions_addopen(&actions_, number, path.c_str(), flags, 0),
          "posix_spawn_file_actions_addopen");
}

void FileActions::change_directory(const std::filesystem::path &directory) {
    check(posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str()),
          "posix_spawn_file_actions_addchdir_np");
}

pid_t start_program(const std::vector<std::string> &arguments, const FileActions &actions,
                    std::vector<std::string> environment) {
    std::vector<std::string> words{YFW_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const std::vector<char *> settings = pointers(environment);
    pid_t child = -1;
    check(posix_spawn(&child, YFW_PROGRAM, actions.get(), nullptr, pointers(words).data(),
                      environment.empty() ? environ : settings.data()),
          "posix_spawn of " YFW_PROGRAM);
    return child;
}

int exit_status_of(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

ProgramProcess::ProgramProcess(const std::vector<std::string> &arguments, const FileActions &actions)
    : child_(start_program(arguments, actions)) {}

ProgramProcess::~ProgramProcess() {
    kill();
}

void ProgramProcess::signal(int number) const {
    if (!status_.has_value())
        ::kill(child_, number);
}

bool ProgramProcess::runs() {
    int status = 0;
    if (!status_.has_value() && waitpid(child_, &status, WNOHANG) == child_)
        status_ = exit_status_of(status);
    return !status_.has_value();
}

std::optional<int> ProgramProcess::wait(std::chrono::milliseconds limit) {
    eventually([this] { return !runs(); }, limit);
    return status_;
}

int ProgramProcess::kill() {
    if (!runs())
        return *status_;
    signal(SIGKILL);
    int status = 0;
    while (waitpid(child_, &status, 0) < 0 && errno == EINTR) {
    }
    status_ = exit_status_of(status);
    return *status_;
}

} // namespace yfw::test

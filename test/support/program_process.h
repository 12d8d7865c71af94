// Starts the program under test, for all that runs it.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <spawn.h>
#include <sys/types.h>

namespace yfw::test {

/// What becomes of a process's streams, and where it works. Throws std::system_error.
class FileActions {
public:
    FileActions();
    ~FileActions();
    FileActions(const FileActions &) = delete;
    FileActions &operator=(const FileActions &) = delete;

    void duplicate(int from, int to);
    /// `flags` as of open().
    void open(int number, const std::string &path, int flags);
    void change_directory(const std::filesystem::path &directory);
    const posix_spawn_file_actions_t *get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

/// Starts the program; `environment`: its settings, the test's own when there are none. The caller waits for
/// the process. Throws std::system_error.
pid_t start_program(const std::vector<std::string> &arguments, const FileActions &actions,
                    std::vector<std::string> environment = {});

/// The exit status, or 128 + the signal that ended a process, from what waitpid() tells.
int exit_status_of(int status);

/// The program while it runs. Killed with the object.
class ProgramProcess {
public:
    ProgramProcess(const std::vector<std::string> &arguments, const FileActions &actions);
    ~ProgramProcess();
    ProgramProcess(const ProgramProcess &) = delete;
    ProgramProcess &operator=(const ProgramProcess &) = delete;

    /// Does nothing to one that has ended and was waited for.
    void signal(int number) const;
    bool runs();
    /// The exit status of exit_status_of(); nothing when it still runs after the time.
    std::optional<int> wait(std::chrono::milliseconds limit);
    /// SIGKILL, unless it has ended. The exit status.
    int kill();

private:
    pid_t child_;
    std::optional<int> status_;
};

} // namespace yfw::test

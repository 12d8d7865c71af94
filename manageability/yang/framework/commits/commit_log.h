// The commits of a device's native configuration, in one SQLite file.
#ifndef YFW_COMMITS_COMMIT_LOG_H
#define YFW_COMMITS_COMMIT_LOG_H

#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

struct sqlite3;

namespace yfw::commits {

// The store cannot be opened, read or written; the message names the file.
class StoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Commit {
    int64_t number = 0; // from 0, the configuration before the first commit
    std::string time;   // UTC, RFC 3339
    std::string who;
    std::string comment;
    std::string edit;          // in OpenConfig terms, XML
    std::string difference;    // native, one line per node
    std::string configuration; // native, XML
};

// The steps of a commit, for tests that kill the process at each of them.
enum class Step { begun, read, prepared, inserted, committed };

// Any thread may read and commit; commits are serialized, among threads and among processes that share the
// file. A commit waits up to 10 seconds for one of another process, then throws StoreError. Every commit is on
// disk before it is reported (write-ahead log, full synchronisation).
class CommitLog {
public:
    // Opens the file; `create` creates it and its directory if missing. Throws StoreError.
    CommitLog(const std::filesystem::path &file, bool create);
    ~CommitLog();
    CommitLog(const CommitLog &) = delete;
    CommitLog &operator=(const CommitLog &) = delete;

    // The last commit; nothing when there is none.
    std::optional<Commit> last() const;
    std::optional<Commit> find(int64_t number) const;
    // Number of the last commit; nothing when there is none.
    std::optional<int64_t> last_number() const;
    // All commits, newest first, without edit, difference and configuration.
    std::vector<Commit> history() const;

    // Commits what `make` returns when called, on this thread, with the last commit. If it throws or returns
    // nothing, nothing is stored. No other commit can intervene, and `make` must not commit itself. It may be
    // slow: meanwhile anybody can read, and sees the previous state. Returns the commit with its number and
    // time.
    std::optional<Commit>
    commit(const std::function<std::optional<Commit>(const std::optional<Commit> &last)> &make);

    // Called at each step of a commit, on the committing thread; from `inserted` on, it must not use the log.
    // Set it while no commit is running.
    void on_step(std::function<void(Step)> observer) { observer_ = std::move(observer); }

private:
    void set_up() const;
    void execute(const char *sql) const;
    void begin() const;
    void end(const std::optional<Commit> &made) const;
    void insert(const Commit &commit) const;
    void reached(Step step) const;

    std::filesystem::path file_;
    sqlite3 *database_ = nullptr;
    mutable std::mutex commits_;    // serializes commits
    mutable std::mutex statements_; // keeps reads out between a commit's write and its end
    std::function<void(Step)> observer_;
};

} // namespace yfw::commits

#endif

// The commits of a device's native configuration, in one SQLite file.
#ifndef YFW_COMMITS_COMMIT_LOG_H
#define YFW_COMMITS_COMMIT_LOG_H

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "commits/store_error.h"

namespace yfw::commits {

class Database;
class StoreState;
enum class Format;

// How the configuration of a commit differs from that of the commit before it, in two texts that mean nothing
// to the log.
struct ConfigurationChange {
    std::string native;
    std::string openconfig;
};

struct Commit {
    int64_t number = 0; // from 0, the configuration before the first commit
    std::string time;   // UTC, RFC 3339
    std::string who;
    std::string comment;
    std::string edit;          // in OpenConfig terms, XML
    std::string difference;    // native, one line per node
    std::string configuration; // native, XML
    // OpenConfig, XML; nothing in a commit that an earlier version made.
    std::optional<std::string> openconfig;
    // Instead of the two configurations, which are then empty.
    std::optional<ConfigurationChange> change = std::nullopt;
};

// The steps of a commit, for tests that kill the process at each of them; `upgraded` only in a store that an
// earlier version made.
enum class Step { begun, read, prepared, upgraded, inserted, committed };

// Any thread may read and commit; commits are serialized, among threads and among processes that share the
// file. A commit waits up to 10 seconds for one of another process, then throws StoreError. Every commit is on
// disk before it is reported (write-ahead log, full synchronisation). Every
// function throws StoreError.
//
// A store that an earlier version made is read as it is; the first write upgrades it. One that may only be read
// serves reads, and writing to it throws.
class CommitLog {
public:
    // Opens the file; `create` creates it and its directory if missing, for this user only. `owner` identifies
    // the device ("files:" and their paths for one given as files): a store of another device is refused; one
    // without an owner is accepted, and gets this one with the first write. Nothing for owner opens every
    // store.
    CommitLog(const std::filesystem::path &file, bool create, std::optional<std::string> owner = std::nullopt);
    ~CommitLog();
    CommitLog(const CommitLog &) = delete;
    CommitLog &operator=(const CommitLog &) = delete;

    // The last commit; nothing when there is none.
    std::optional<Commit> last() const;
    std::optional<Commit> find(int64_t number) const;
    // The commits up to this one, oldest first, from the last one that has its whole configuration. Empty when
    // there is no such commit.
    std::vector<Commit> since_whole(int64_t number) const;
    // Number of the last commit; nothing when there is none.
    std::optional<int64_t> last_number() const;
    // All commits, newest first, without edit, difference and configurations.
    std::vector<Commit> history() const;
    // The device this store belongs to; nothing when that is not known yet.
    std::optional<std::string> owner() const;
    // Which run of the device's daemon the last commit was applied to; nothing when that was never set.
    std::optional<std::string> applied_to() const;

    // Commits what `make` returns when called, on this thread, with the last commit. If it throws or returns
    // nothing, nothing is stored. No other commit can intervene, and `make` must not commit itself. It may be
    // slow: meanwhile anybody can read, and sees the previous state. Returns the commit with its number and
    // time.
    std::optional<Commit>
    commit(const std::function<std::optional<Commit>(const std::optional<Commit> &last)> &make);
    // The same, for a `make` that needs only the last commit's number, -1 when there is none.
    std::optional<Commit> commit_after(const std::function<std::optional<Commit>(int64_t last)> &make);

    // When called by a `make`, these two are part of its commit: stored with it, or not at all, and not seen
    // before. Otherwise each is a transaction of its own.

    // Adds the OpenConfig text to a stored commit. Does nothing if there is no such commit or it has one.
    void set_openconfig(int64_t number, const std::string &text);
    void set_applied_to(const std::string &instance);

    // Called at each step of a commit, on the committing thread; from `inserted` on, it must not use the log.
    // Setting it waits for a commit that another thread makes.
    void on_step(std::function<void(Step)> observer);

private:
    class Transaction;
    using Write = std::function<void(Database &)>;

    template <class Read> auto read(const Read &work) const;
    void open() const;
    void write(Write work);
    void store(Transaction &transaction, const std::optional<Commit> &made);
    void reached(Step step) const;

    std::filesystem::path file_;
    std::optional<std::string> owner_;
    std::recursive_mutex writers_;  // serializes commits and other writes
    bool is_making_ = false;        // within `make`; guarded by writers_
    std::vector<Write> staged_;     // what `make` writes besides its commit; guarded by writers_
    mutable std::mutex statements_; // keeps reads out between a write and its end; guards what follows
    mutable std::unique_ptr<Database> database_;
    mutable std::unique_ptr<StoreState> state_; // of the file when it was opened, where it cannot be locked
    std::function<void(Step)> observer_;        // guarded by writers_
};

} // namespace yfw::commits

#endif

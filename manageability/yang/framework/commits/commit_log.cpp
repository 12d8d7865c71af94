#include "commits/commit_log.h"

#include <chrono>
#include <memory>
#include <system_error>
#include <thread>

#include <sqlite3.h>

#include "base/utc_time.h"

namespace yfw::commits {
namespace {

using Guard = std::lock_guard<std::mutex>;

constexpr int busy_milliseconds = 10000;

constexpr const char *schema = "CREATE TABLE IF NOT EXISTS commits ("
                               " number INTEGER PRIMARY KEY, time TEXT NOT NULL, who TEXT NOT NULL,"
                               " comment TEXT NOT NULL, edit TEXT NOT NULL, difference TEXT NOT NULL,"
                               " configuration TEXT NOT NULL)";

[[noreturn]] void fail(const std::filesystem::path &file, sqlite3 *database) {
    throw StoreError(file.string() + ": " + (database != nullptr ? sqlite3_errmsg(database) : "out of memory"));
}

struct Finalize {
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};

// One prepared statement; its columns are read by position.
class Statement {
public:
    Statement(const std::filesystem::path &file, sqlite3 *database, const char *sql)
        : file_(file), database_(database) {
        sqlite3_stmt *statement = nullptr;
        if (sqlite3_prepare_v2(database, sql, -1, &statement, nullptr) != SQLITE_OK)
            fail(file, database);
        statement_.reset(statement);
    }

    Statement &bind(int position, int64_t value) {
        if (sqlite3_bind_int64(statement_.get(), position, value) != SQLITE_OK)
            fail(file_, database_);
        return *this;
    }

    Statement &bind(int position, const std::string &text) {
        if (sqlite3_bind_text(statement_.get(), position, text.data(), static_cast<int>(text.size()),
                              SQLITE_TRANSIENT) != SQLITE_OK)
            fail(file_, database_);
        return *this;
    }

    // False at the end of the rows.
    bool step() {
        const int result = sqlite3_step(statement_.get());
        if (result != SQLITE_ROW && result != SQLITE_DONE)
            fail(file_, database_);
        return result == SQLITE_ROW;
    }

    int64_t number(int column) const { return sqlite3_column_int64(statement_.get(), column); }

    std::string text(int column) const {
        const auto *bytes = static_cast<const char *>(sqlite3_column_blob(statement_.get(), column));
        const int size = sqlite3_column_bytes(statement_.get(), column);
        return bytes != nullptr ? std::string(bytes, static_cast<size_t>(size)) : std::string();
    }

private:
    const std::filesystem::path &file_;
    sqlite3 *database_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

Commit whole_row(const Statement &row) {
    return {row.number(0), row.text(1), row.text(2), row.text(3), row.text(4), row.text(5), row.text(6)};
}

} // namespace

CommitLog::CommitLog(const std::filesystem::path &file, bool create) : file_(file) {
    std::error_code error;
    if (create && file.has_parent_path())
        std::filesystem::create_directories(file.parent_path(), error);
    if (error)
        throw StoreError(file.parent_path().string() + ": cannot be created: " + error.message());
    const int flags = SQLITE_OPEN_READWRITE | (create ? SQLITE_OPEN_CREATE : 0);
    if (sqlite3_open_v2(file.c_str(), &database_, flags, nullptr) != SQLITE_OK) {
        const std::string reason = database_ != nullptr ? sqlite3_errmsg(database_) : "out of memory";
        sqlite3_close(database_);
        throw StoreError(file.string() + ": " + reason);
    }
    try {
        sqlite3_busy_timeout(database_, busy_milliseconds);
        set_up();
    } catch (...) {
        sqlite3_close(database_);
        throw;
    }
}

CommitLog::~CommitLog() {
    sqlite3_close(database_);
}

// Enabling the log fails at once, ignoring SQLite's busy timeout, while another process is doing the same.
void CommitLog::set_up() const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(busy_milliseconds);
    for (;;) {
        try {
            execute("PRAGMA journal_mode = WAL");
            execute("PRAGMA synchronous = FULL");
            execute(schema);
            return;
        } catch (const StoreError &) {
            if (sqlite3_errcode(database_) != SQLITE_BUSY || std::chrono::steady_clock::now() > end)
                throw;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }
}

void CommitLog::execute(const char *sql) const {
    Statement statement(file_, database_, sql);
    while (statement.step()) {
    }
}

void CommitLog::reached(Step step) const {
    if (observer_)
        observer_(step);
}

std::optional<Commit> CommitLog::last() const {
    const Guard guard(statements_);
    Statement rows(file_, database_,
                   "SELECT number, time, who, comment, edit, difference, configuration FROM commits"
                   " ORDER BY number DESC LIMIT 1");
    return rows.step() ? std::optional(whole_row(rows)) : std::nullopt;
}

std::optional<int64_t> CommitLog::last_number() const {
    const Guard guard(statements_);
    Statement rows(file_, database_, "SELECT number FROM commits ORDER BY number DESC LIMIT 1");
    return rows.step() ? std::optional(rows.number(0)) : std::nullopt;
}

std::optional<Commit> CommitLog::find(int64_t number) const {
    const Guard guard(statements_);
    Statement rows(
        file_, database_,
        "SELECT number, time, who, comment, edit, difference, configuration FROM commits WHERE number = ?");
    rows.bind(1, number);
    return rows.step() ? std::optional(whole_row(rows)) : std::nullopt;
}

std::vector<Commit> CommitLog::history() const {
    const Guard guard(statements_);
    Statement rows(file_, database_, "SELECT number, time, who, comment FROM commits ORDER BY number DESC");
    std::vector<Commit> commits;
    while (rows.step())
        commits.push_back({rows.number(0), rows.text(1), rows.text(2), rows.text(3), "", "", ""});
    return commits;
}

void CommitLog::insert(const Commit &commit) const {
    Statement statement(file_, database_, "INSERT INTO commits VALUES (?, ?, ?, ?, ?, ?, ?)");
    statement.bind(1, commit.number).bind(2, commit.time).bind(3, commit.who).bind(4, commit.comment);
    statement.bind(5, commit.edit).bind(6, commit.difference).bind(7, commit.configuration);
    statement.step();
}

std::optional<Commit>
CommitLog::commit(const std::function<std::optional<Commit>(const std::optional<Commit> &last)> &make) {
    const Guard one_at_a_time(commits_);
    begin();
    try {
        reached(Step::begun);
        const std::optional<Commit> before = last();
        reached(Step::read);
        std::optional<Commit> made = make(before);
        reached(Step::prepared);
        if (made.has_value()) {
            made->number = before.has_value() ? before->number + 1 : 0;
            made->time = utc_now();
        }
        end(made);
        return made;
    } catch (...) {
        const Guard guard(statements_);
        sqlite3_exec(database_, "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

// Keeps other processes from committing between the read and the write.
void CommitLog::begin() const {
    const Guard guard(statements_);
    execute("BEGIN IMMEDIATE");
}

void CommitLog::end(const std::optional<Commit> &made) const {
    const Guard guard(statements_);
    if (!made.has_value())
        return execute("ROLLBACK");
    insert(*made);
    reached(Step::inserted);
    execute("COMMIT");
    reached(Step::committed);
}

} // namespace yfw::commits

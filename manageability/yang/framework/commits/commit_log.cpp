#include "commits/commit_log.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <thread>

#include "base/utc_time.h"
#include "commits/database.h"
#include "commits/new_store.h"
#include "commits/opened_store.h"
#include "commits/store_format.h"

namespace yfw::commits {
namespace {

using Guard = std::lock_guard<std::mutex>;

// How often a store that cannot be locked is read anew because somebody wrote it meanwhile.
constexpr int most_attempts = 100;

// The columns in the order of the table: a commit of the first format has no text in OpenConfig.
constexpr int openconfig_column = 7;

Commit whole_row(Database &database, const Statement &row) {
    Commit commit{row.number(0), row.text(1), row.text(2),  row.text(3), row.text(4),
                  row.text(5),   row.text(6), std::nullopt, std::nullopt};
    if (row.columns() > openconfig_column)
        commit.openconfig = row.optional_text(openconfig_column);
    commit.change = change_of(database, commit.number);
    return commit;
}

std::optional<Commit> find_row(Database &database, int64_t number) {
    Statement rows(database, "SELECT * FROM commits WHERE number = ?");
    rows.bind(1, number);
    return rows.step() ? std::optional(whole_row(database, rows)) : std::nullopt;
}

std::optional<int64_t> last_number_in(Database &database) {
    Statement rows(database, "SELECT number FROM commits ORDER BY number DESC LIMIT 1");
    return rows.step() ? std::optional(rows.number(0)) : std::nullopt;
}

std::optional<Commit> last_commit(Database &database) {
    const std::optional<int64_t> number = last_number_in(database);
    return number.has_value() ? find_row(database, *number) : std::nullopt;
}

int64_t next_number(const std::optional<int64_t> &last, const std::filesystem::path &file) {
    if (!last.has_value())
        return 0;
    if (*last < 0 || *last == std::numeric_limits<int64_t>::max())
        throw StoreError(file.string() + ": is damaged: its last commit has number " + std::to_string(*last));
    return *last + 1;
}

void insert(Database &database, const Commit &commit) {
    Statement statement(database, "INSERT INTO commits (number, time, who, comment, edit, difference,"
                                  " configuration, openconfig) VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
    statement.bind(1, commit.number).bind(2, commit.time).bind(3, commit.who).bind(4, commit.comment);
    statement.bind(5, commit.edit).bind(6, commit.difference).bind(7, commit.configuration);
    statement.bind(8, commit.openconfig).run();
    if (commit.change.has_value())
        insert_change(database, commit.number, *commit.change);
}

std::optional<std::string> known_value(Database &database, const char *name) {
    return format_of(database) == Format::current ? meta_value(database, name) : std::nullopt;
}

} // namespace

// Keeps other processes from writing from its beginning to its end. Rolled back unless committed.
class CommitLog::Transaction {
public:
    // Throws StoreError also when the store, which others may have changed, is not one for this owner any more.
    explicit Transaction(const CommitLog &log) : log_(log) {
        const Guard guard(log.statements_);
        if (log.database_->access() != Access::writable)
            log.open(); // permissions may have changed
        if (log.database_->access() != Access::writable)
            throw StoreError(log.file_.string() + ": may only be read");
        database().use_write_ahead_log();
        database().execute("BEGIN IMMEDIATE");
        is_open_ = true;
        try {
            format_ = format_of(database());
            has_owner_ = format_ == Format::current && check_owner(database(), log.owner_);
        } catch (...) {
            roll_back();
            throw;
        }
    }

    ~Transaction() {
        const Guard guard(log_.statements_);
        roll_back();
    }
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    Database &database() const { return *log_.database_; }

    // Makes it a store of the current format and of the owner; true if it was of another format.
    bool bring_up_to_date() {
        const bool is_old = format_ == Format::first;
        if (is_old)
            upgrade(database());
        if (log_.owner_.has_value() && !has_owner_)
            set_meta_value(database(), meta::owner, *log_.owner_);
        return is_old;
    }

    void commit() {
        database().execute("COMMIT");
        is_open_ = false;
    }

private:
    void roll_back() noexcept {
        if (!is_open_)
            return;
        is_open_ = false;
        try {
            database().execute("ROLLBACK");
        } catch (const StoreError &) { // SQLite has already rolled back
        }
    }

    const CommitLog &log_;
    Format format_ = Format::current;
    bool has_owner_ = false;
    bool is_open_ = false;
};

CommitLog::CommitLog(const std::filesystem::path &file, bool create, std::optional<std::string> owner)
    : file_(file), owner_(std::move(owner)) {
    if (create)
        make_store(file, owner_);
    open();
}

CommitLog::~CommitLog() = default;

void CommitLog::open() const {
    auto state = std::make_unique<StoreState>(file_);
    auto database = open_store(file_);
    if (format_of(*database) == Format::current)
        check_owner(*database, owner_);
    database_ = std::move(database);
    state_ = std::move(state);
}

// Where the store cannot be locked, what was read counts if nobody has written the file since it was opened.
template <class Read> auto CommitLog::read(const Read &work) const {
    const Guard guard(statements_);
    for (int attempt = 0; database_->access() == Access::unchanging; ++attempt) {
        try {
            if (*state_ != StoreState(file_))
                open();
            auto found = work(*database_);
            if (*state_ == StoreState(file_))
                return found;
        } catch (const StoreError &) {
            if (*state_ == StoreState(file_) || attempt == most_attempts)
                throw;
        }
        if (attempt == most_attempts)
            throw StoreError(file_.string() + ": is written all the time, and may only be read without locks");
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return work(*database_);
}

void CommitLog::on_step(std::function<void(Step)> observer) {
    const std::lock_guard one_at_a_time(writers_);
    observer_ = std::move(observer);
}

void CommitLog::reached(Step step) const {
    if (observer_)
        observer_(step);
}

std::optional<Commit> CommitLog::last() const {
    return read(last_commit);
}

std::optional<int64_t> CommitLog::last_number() const {
    return read(last_number_in);
}

std::optional<Commit> CommitLog::find(int64_t number) const {
    return read([number](Database &database) { return find_row(database, number); });
}

std::vector<Commit> CommitLog::since_whole(int64_t number) const {
    return read([&](Database &database) {
        std::vector<Commit> commits;
        for (int64_t next = number;; next--) {
            std::optional<Commit> commit = find_row(database, next);
            if (!commit.has_value() && commits.empty())
                break;
            if (!commit.has_value())
                throw StoreError(file_.string() + ": is damaged: commit " + std::to_string(next) +
                                 " is missing, which later ones build on");
            commits.push_back(std::move(*commit));
            if (!commits.back().change.has_value())
                break;
        }
        std::reverse(commits.begin(), commits.end());
        return commits;
    });
}

std::vector<Commit> CommitLog::history() const {
    return read([](Database &database) {
        Statement rows(database, "SELECT number, time, who, comment FROM commits ORDER BY number DESC");
        std::vector<Commit> commits;
        while (rows.step()) {
            Commit &commit = commits.emplace_back();
            commit.number = rows.number(0);
            commit.time = rows.text(1);
            commit.who = rows.text(2);
            commit.comment = rows.text(3);
        }
        return commits;
    });
}

std::optional<std::string> CommitLog::owner() const {
    return read([](Database &database) { return known_value(database, meta::owner); });
}

std::optional<std::string> CommitLog::applied_to() const {
    return read([](Database &database) { return known_value(database, meta::applied_to); });
}

void CommitLog::set_openconfig(int64_t number, const std::string &text) {
    write([number, text](Database &database) {
        Statement statement(database,
                            "UPDATE commits SET openconfig = ? WHERE number = ? AND openconfig IS NULL");
        statement.bind(1, text).bind(2, number).run();
    });
}

void CommitLog::set_applied_to(const std::string &instance) {
    write([instance](Database &database) { set_meta_value(database, meta::applied_to, instance); });
}

void CommitLog::write(Write work) {
    const std::lock_guard one_at_a_time(writers_);
    staged_.push_back(std::move(work));
    if (is_making_)
        return;
    try {
        Transaction transaction(*this);
        store(transaction, std::nullopt);
    } catch (...) {
        staged_.clear();
        throw;
    }
}

std::optional<Commit>
CommitLog::commit(const std::function<std::optional<Commit>(const std::optional<Commit> &last)> &make) {
    return commit_after([&](int64_t number) { return make(number >= 0 ? find(number) : std::nullopt); });
}

std::optional<Commit> CommitLog::commit_after(const std::function<std::optional<Commit>(int64_t last)> &make) {
    const std::lock_guard one_at_a_time(writers_);
    if (is_making_)
        throw StoreError(file_.string() + ": a commit cannot be made within another");
    try {
        Transaction transaction(*this);
        reached(Step::begun);
        const int64_t number = next_number(last_number(), file_);
        reached(Step::read);
        is_making_ = true;
        std::optional<Commit> made = make(number - 1);
        is_making_ = false;
        reached(Step::prepared);
        if (made.has_value()) {
            made->number = number;
            made->time = utc_now();
            store(transaction, made);
        }
        staged_.clear();
        return made;
    } catch (...) {
        is_making_ = false;
        staged_.clear();
        throw;
    }
}

// Stores the commit, if any, and what is staged.
void CommitLog::store(Transaction &transaction, const std::optional<Commit> &made) {
    const Guard guard(statements_);
    if (transaction.bring_up_to_date())
        reached(Step::upgraded);
    for (const Write &work : staged_)
        work(transaction.database());
    staged_.clear();
    if (!made.has_value())
        return transaction.commit();
    insert(transaction.database(), *made);
    reached(Step::inserted);
    transaction.commit();
    reached(Step::committed);
}

} // namespace yfw::commits

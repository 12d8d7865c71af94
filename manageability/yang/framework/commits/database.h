// An open SQLite database, and statements on it.
#ifndef YFW_COMMITS_DATABASE_H
#define YFW_COMMITS_DATABASE_H

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "commits/store_error.h"

struct sqlite3;
struct sqlite3_stmt;

namespace yfw::commits {

// How long SQLite waits for another process.
constexpr std::chrono::milliseconds longest_wait{10000};

// A call of SQLite failed.
class DatabaseError : public StoreError {
public:
    // `code`: SQLite's result.
    DatabaseError(const std::string &message, int code) : StoreError(message), code_(code) {}

    // The file, or one that SQLite needs next to it, cannot be opened or written.
    bool is_about_access() const;
    // Another process is in the way.
    bool is_busy() const;

private:
    int code_;
};

struct Finalize {
    void operator()(sqlite3_stmt *statement) const;
};
using PreparedStatement = std::unique_ptr<sqlite3_stmt, Finalize>;

enum class Access {
    writable,
    readable,  // locked against writers
    unchanging // without locks and without the write-ahead log: nobody may write the file meanwhile
};

// Every function throws DatabaseError, which names the file.
class Database {
public:
    // An existing file; SQLite looks into it with the first statement.
    Database(const std::filesystem::path &file, Access access);
    // A new database in memory, of the content that `file` will have.
    explicit Database(const std::filesystem::path &file);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    const std::filesystem::path &file() const { return file_; }
    // Readable, when writable was asked for and the file is not.
    Access access() const;

    // Runs a statement and drops its rows.
    void execute(const char *sql);
    // The number in the first column of the first row; 0 when there is none.
    int64_t number(const char *sql);
    // Enables the log, which a copy of a store may be without.
    void use_write_ahead_log();
    // The bytes of its file.
    std::string content();

    [[noreturn]] void fail() const;
    sqlite3 *handle() const { return handle_; }

    // A statement that was kept, or a new one.
    PreparedStatement prepared(const std::string &sql);
    // Keeps a statement for the next one with this text: preparing one takes longer than many a statement.
    void keep(const std::string &sql, PreparedStatement statement) noexcept;

private:
    void open(const std::string &name, int flags);

    std::filesystem::path file_;
    Access access_;
    bool uses_log_ = false;
    sqlite3 *handle_ = nullptr;
    std::unordered_map<std::string, PreparedStatement> kept_;
};

// One prepared statement; parameters count from 1, columns from 0. Borrows the database.
class Statement {
public:
    Statement(Database &database, const char *sql);
    ~Statement();
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    Statement &bind(int position, int64_t value);
    Statement &bind(int position, const std::string &text);
    // NULL for nothing.
    Statement &bind(int position, const std::optional<std::string> &text);

    // False at the end of the rows.
    bool step();
    void run() {
        while (step()) {
        }
    }

    int columns() const;
    int64_t number(int column) const;
    std::string text(int column) const;
    // Nothing for NULL.
    std::optional<std::string> optional_text(int column) const;

private:
    void check(int result) const;

    Database &database_;
    const std::string sql_;
    PreparedStatement statement_;
};

} // namespace yfw::commits

#endif

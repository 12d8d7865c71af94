#include "commits/database.h"

#include <cctype>
#include <cstdio>
#include <string_view>
#include <system_error>
#include <thread>

#include <sqlite3.h>

#include "base/system_error.h"

namespace yfw::commits {
namespace {

constexpr int primary_code = 0xff;

// A pragma may do its work when it is prepared; one that reads a number of the file's header does it when it
// runs.
bool may_be_kept(std::string_view sql) {
    return !sql.starts_with("PRAGMA") || sql == "PRAGMA application_id" || sql == "PRAGMA user_version";
}

std::string reason_of(sqlite3 *handle) {
    if (handle == nullptr)
        return "out of memory";
    const int system_error = sqlite3_system_errno(handle);
    switch (sqlite3_errcode(handle) & primary_code) {
    case SQLITE_NOTADB:
        return "is not a database";
    case SQLITE_CORRUPT:
        return "is damaged";
    case SQLITE_READONLY:
        return "may only be read";
    case SQLITE_CANTOPEN:
        return system_error != 0 ? system_error_text(system_error) : sqlite3_errmsg(handle);
    default:
        return sqlite3_errmsg(handle);
    }
}

// Names are absolute, as SQLite gives a meaning to ":memory:" and "file:".
std::string absolute_name(const std::filesystem::path &file) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(file, error);
    return error ? "./" + file.string() : path.string();
}

std::string unchanging_uri(const std::filesystem::path &file) {
    std::string uri = "file:";
    for (const char c : absolute_name(file)) {
        if (c == '/' || std::isalnum(static_cast<unsigned char>(c)) != 0) {
            uri += c;
        } else {
            char escaped[4];
            std::snprintf(escaped, sizeof escaped, "%%%02X",
                          static_cast<unsigned>(static_cast<unsigned char>(c)));
            uri += escaped;
        }
    }
    return uri + "?immutable=1";
}

} // namespace

bool DatabaseError::is_about_access() const {
    const int code = code_ & primary_code;
    return code == SQLITE_CANTOPEN || code == SQLITE_READONLY || code == SQLITE_PERM;
}

bool DatabaseError::is_busy() const {
    return (code_ & primary_code) == SQLITE_BUSY;
}

Database::Database(const std::filesystem::path &file, Access access) : file_(file), access_(access) {
    if (access == Access::unchanging)
        open(unchanging_uri(file), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    else
        open(absolute_name(file), access == Access::writable ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY);
}

Database::Database(const std::filesystem::path &file) : file_(file), access_(Access::writable) {
    open(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY);
}

void Database::open(const std::string &name, int flags) {
    try {
        if (sqlite3_open_v2(name.c_str(), &handle_, flags, nullptr) != SQLITE_OK)
            fail();
        sqlite3_busy_timeout(handle_, static_cast<int>(longest_wait.count()));
        execute("PRAGMA synchronous = FULL");
        // The file may be anybody's.
        execute("PRAGMA trusted_schema = OFF");
        execute("PRAGMA cell_size_check = ON");
    } catch (...) {
        sqlite3_close(handle_);
        throw;
    }
}

Database::~Database() {
    kept_.clear();
    sqlite3_close(handle_);
}

Access Database::access() const {
    return access_ == Access::writable && sqlite3_db_readonly(handle_, "main") == 1 ? Access::readable
                                                                                    : access_;
}

void Database::execute(const char *sql) {
    Statement(*this, sql).run();
}

int64_t Database::number(const char *sql) {
    Statement statement(*this, sql);
    return statement.step() ? statement.number(0) : 0;
}

// Enabling it fails at once, ignoring SQLite's busy timeout, while another process is doing the same.
void Database::use_write_ahead_log() {
    const auto end = std::chrono::steady_clock::now() + longest_wait;
    while (!uses_log_) {
        try {
            execute("PRAGMA journal_mode = WAL");
            uses_log_ = true;
        } catch (const DatabaseError &error) {
            if (!error.is_busy() || std::chrono::steady_clock::now() > end)
                throw;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }
}

std::string Database::content() {
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
        sqlite3_serialize(handle_, "main", &size, 0), sqlite3_free);
    if (bytes == nullptr)
        throw DatabaseError(file_.string() + ": out of memory", SQLITE_NOMEM);
    return {reinterpret_cast<const char *>(bytes.get()), static_cast<size_t>(size)};
}

void Database::fail() const {
    throw DatabaseError(file_.string() + ": " + reason_of(handle_),
                        handle_ != nullptr ? sqlite3_errcode(handle_) : SQLITE_NOMEM);
}

void Finalize::operator()(sqlite3_stmt *statement) const {
    sqlite3_finalize(statement);
}

PreparedStatement Database::prepared(const std::string &sql) {
    if (auto kept = kept_.extract(sql))
        return std::move(kept.mapped());
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(handle_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        fail();
    return PreparedStatement(statement);
}

void Database::keep(const std::string &sql, PreparedStatement statement) noexcept {
    if (statement == nullptr || !may_be_kept(sql))
        return;
    sqlite3_reset(statement.get());
    sqlite3_clear_bindings(statement.get());
    try {
        kept_.try_emplace(sql, std::move(statement));
    } catch (const std::bad_alloc &) { // it is prepared anew
    }
}

Statement::Statement(Database &database, const char *sql)
    : database_(database), sql_(sql), statement_(database.prepared(sql_)) {}

Statement::~Statement() {
    database_.keep(sql_, std::move(statement_));
}

void Statement::check(int result) const {
    if (result != SQLITE_OK)
        database_.fail();
}

Statement &Statement::bind(int position, int64_t value) {
    check(sqlite3_bind_int64(statement_.get(), position, value));
    return *this;
}

Statement &Statement::bind(int position, const std::string &text) {
    check(sqlite3_bind_text64(statement_.get(), position, text.data(), text.size(), SQLITE_TRANSIENT,
                              SQLITE_UTF8));
    return *this;
}

Statement &Statement::bind(int position, const std::optional<std::string> &text) {
    if (text.has_value())
        return bind(position, *text);
    check(sqlite3_bind_null(statement_.get(), position));
    return *this;
}

bool Statement::step() {
    const int result = sqlite3_step(statement_.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        database_.fail();
    return result == SQLITE_ROW;
}

int Statement::columns() const {
    return sqlite3_column_count(statement_.get());
}

int64_t Statement::number(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

std::string Statement::text(int column) const {
    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(statement_.get(), column));
    const int size = sqlite3_column_bytes(statement_.get(), column);
    return bytes != nullptr ? std::string(bytes, static_cast<size_t>(size)) : std::string();
}

std::optional<std::string> Statement::optional_text(int column) const {
    if (sqlite3_column_type(statement_.get(), column) == SQLITE_NULL)
        return std::nullopt;
    return text(column);
}

} // namespace yfw::commits

#include "commits/opened_store.h"

#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/system_error.h"
#include "commits/store_format.h"

namespace yfw::commits {
namespace {

[[noreturn]] void refuse(const std::filesystem::path &file, const std::string &reason) {
    throw StoreError(file.string() + ": " + reason);
}

bool may(int what, const std::filesystem::path &path) {
    return ::faccessat(AT_FDCWD, path.c_str(), what, AT_EACCESS) == 0;
}

// SQLite takes an empty file for an empty database. The file is only looked at: closing it would release the
// locks that SQLite may have on it in this process.
void require_content(const std::filesystem::path &file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0)
        refuse(file, system_error_text());
    if (!S_ISREG(status.st_mode))
        refuse(file, "is not a file, and not a store of commits");
    if (!may(R_OK, file))
        refuse(file, system_error_text());
    if (status.st_size <= 1)
        refuse(file, "is an empty file, not a store of commits");
}

// Behind links, where SQLite has its own files next to the store.
std::filesystem::path real_path(const std::filesystem::path &file) {
    std::error_code error;
    std::filesystem::path real = std::filesystem::canonical(file, error);
    return error ? file : real;
}

bool exists(const std::filesystem::path &file, const char *suffix) {
    struct stat status {};
    return ::stat((file.string() + suffix).c_str(), &status) == 0;
}

bool has_content(const std::filesystem::path &file, const char *suffix) {
    struct stat status {};
    return ::stat((file.string() + suffix).c_str(), &status) == 0 && status.st_size > 0;
}

// SQLite takes what is missing from the last page for zeros. While the log has content, pages may be there
// only. Another process may write meanwhile: the file is complete before its log is empty, so it is looked at
// last.
void require_all_pages(Database &database) {
    const std::filesystem::path &file = database.file();
    const int64_t size = database.number("PRAGMA page_count") * database.number("PRAGMA page_size");
    if (has_content(real_path(file), "-wal"))
        return;
    struct stat status {};
    if (::stat(file.c_str(), &status) == 0 && status.st_size < size)
        refuse(file, "is damaged: its last " + std::to_string(size - status.st_size) + " bytes are missing");
}

std::unique_ptr<Database> opened(const std::filesystem::path &file, Access access) {
    auto database = std::make_unique<Database>(file, access);
    format_of(*database);
    require_all_pages(*database);
    return database;
}

bool may_write_beside(const std::filesystem::path &file) {
    const std::filesystem::path real = real_path(file);
    return may(W_OK, real.has_parent_path() ? real.parent_path() : ".");
}

// SQLite locks a store in files next to it. It would make them here with the store's permissions, and so keep
// out whoever may write the store later: without them, the store is read without locks.
std::unique_ptr<Database> opened_to_read(const std::filesystem::path &file) {
    if (StoreState(file).is_quiet())
        return opened(file, Access::unchanging);
    if (!exists(real_path(file), "-shm") && !may_write_beside(file))
        refuse(file, "has to be recovered after a crash, which is not possible where it may only be read");
    return opened(file, Access::readable);
}

} // namespace

StoreState::StoreState(const std::filesystem::path &file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0)
        return;
    number_ = status.st_ino;
    size_ = status.st_size;
    changed_ = status.st_ctim.tv_sec * INT64_C(1000000000) + status.st_ctim.tv_nsec;
    const std::filesystem::path real = real_path(file);
    is_quiet_ = !exists(real, "-shm") && !has_content(real, "-wal") && !has_content(real, "-journal");
}

std::unique_ptr<Database> open_store(const std::filesystem::path &file) {
    require_content(file);
    if (!may(W_OK, file))
        return opened_to_read(file);
    try {
        return opened(file, Access::writable);
    } catch (const DatabaseError &error) {
        if (!error.is_about_access() || may_write_beside(file))
            throw;
    }
    return opened_to_read(file);
}

} // namespace yfw::commits

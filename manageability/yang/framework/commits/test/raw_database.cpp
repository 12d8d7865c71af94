#include "raw_database.h"

#include <memory>
#include <optional>
#include <stdexcept>

#include <sqlite3.h>

#include "numbered_commits.h"

namespace yfw::commits::test {

std::vector<std::string> run_sql(const std::filesystem::path &file, const std::string &statements) {
    sqlite3 *opened = nullptr;
    const int result = sqlite3_open(file.c_str(), &opened);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(opened, sqlite3_close);
    const auto collect = [](void *to, int, char **values, char **) {
        static_cast<std::vector<std::string> *>(to)->emplace_back(values[0] != nullptr ? values[0] : "NULL");
        return 0;
    };
    std::vector<std::string> found;
    if (result != SQLITE_OK || sqlite3_exec(opened, statements.c_str(), collect, &found, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(opened));
    return found;
}

void make_first_format(const std::filesystem::path &file, int64_t last) {
    run_sql(file, "PRAGMA journal_mode = WAL;"
                  "CREATE TABLE IF NOT EXISTS commits ("
                  " number INTEGER PRIMARY KEY, time TEXT NOT NULL, who TEXT NOT NULL,"
                  " comment TEXT NOT NULL, edit TEXT NOT NULL, difference TEXT NOT NULL,"
                  " configuration TEXT NOT NULL)");
    for (int64_t number = 0; number <= last; ++number)
        run_sql(file, first_format_insert(number));
}

std::string first_format_insert(int64_t number) {
    Commit before;
    before.number = number - 1;
    const Commit commit = numbered_commit(number > 0 ? std::optional(before) : std::nullopt);
    return "INSERT INTO commits VALUES (" + std::to_string(number) + ", '2026-01-01T00:00:00Z', '" +
           commit.who + "', '" + commit.comment + "', '" + commit.edit + "', '" + commit.difference + "', '" +
           commit.configuration + "')";
}

} // namespace yfw::commits::test

#include "commits/store_format.h"

#include <string_view>
#include <vector>

namespace yfw::commits {
namespace {

constexpr const char *commits_table = "CREATE TABLE commits ("
                                      " number INTEGER PRIMARY KEY, time TEXT NOT NULL, who TEXT NOT NULL,"
                                      " comment TEXT NOT NULL, edit TEXT NOT NULL, difference TEXT NOT NULL,"
                                      " configuration TEXT NOT NULL, openconfig TEXT)";
constexpr const char *openconfig_column = "ALTER TABLE commits ADD COLUMN openconfig TEXT";
constexpr const char *changes_table =
    "CREATE TABLE changes (number INTEGER PRIMARY KEY, native TEXT NOT NULL, openconfig TEXT NOT NULL)";
constexpr const char *meta_table = "CREATE TABLE meta (name TEXT PRIMARY KEY, value TEXT NOT NULL)";

std::vector<std::string> texts(Database &database, const char *sql) {
    Statement rows(database, sql);
    std::vector<std::string> found;
    while (rows.step())
        found.push_back(rows.text(0));
    return found;
}

bool is_first_format(Database &database) {
    const std::vector<std::string> columns = {"number", "time",       "who",          "comment",
                                              "edit",   "difference", "configuration"};
    return texts(database, "SELECT name FROM sqlite_schema"
                           " WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'") ==
               std::vector<std::string>{"commits"} &&
           texts(database, "SELECT name FROM pragma_table_info('commits')") == columns;
}

void mark_version(Database &database, int64_t version) {
    database.execute(("PRAGMA user_version = " + std::to_string(version)).c_str());
}

void mark(Database &database) {
    database.execute(("PRAGMA application_id = " + std::to_string(application)).c_str());
    mark_version(database, current_version);
}

bool has_changes(Database &database) {
    return database.number("PRAGMA user_version") == version_with_changes;
}

// An earlier version kept the empty text for every device that was given as files.
constexpr const char *some_files = "";
constexpr std::string_view files_prefix = "files:";

std::string described(const std::string &owner) {
    if (owner == some_files)
        return "a device given as files";
    return owner.starts_with(files_prefix) ? "a device given as files, " + owner.substr(files_prefix.size())
                                           : "device " + owner;
}

[[noreturn]] void refuse(const Database &database, const std::string &reason) {
    throw StoreError(database.file().string() + ": " + reason);
}

} // namespace

Format format_of(Database &database) {
    const int64_t program = database.number("PRAGMA application_id");
    const int64_t version = database.number("PRAGMA user_version");
    if (program == application && (version == current_version || version == version_with_changes))
        return Format::current;
    if (program == application && version > version_with_changes)
        refuse(database, "is a store of version " + std::to_string(version) +
                             ", made by a newer yfw; this one reads " + "versions up to " +
                             std::to_string(version_with_changes));
    if (program == 0 && version == 0 && is_first_format(database))
        return Format::first;
    refuse(database, "is a database of another program, not a store of commits");
}

bool check_owner(Database &database, const std::optional<std::string> &owner) {
    const std::optional<std::string> kept = meta_value(database, meta::owner);
    if (kept == some_files && owner.has_value() && owner->starts_with(files_prefix))
        return false;
    if (owner.has_value() && kept.has_value() && *owner != *kept)
        refuse(database, "has the commits of " + described(*kept) + ", not of " + described(*owner));
    return kept.has_value();
}

void make_tables(Database &database) {
    database.execute(commits_table);
    database.execute(meta_table);
    mark(database);
}

void upgrade(Database &database) {
    database.execute(openconfig_column);
    database.execute(meta_table);
    mark(database);
}

std::optional<ConfigurationChange> change_of(Database &database, int64_t number) {
    if (!has_changes(database))
        return std::nullopt;
    Statement rows(database, "SELECT native, openconfig FROM changes WHERE number = ?");
    rows.bind(1, number);
    return rows.step() ? std::optional(ConfigurationChange{rows.text(0), rows.text(1)}) : std::nullopt;
}

void insert_change(Database &database, int64_t number, const ConfigurationChange &change) {
    if (!has_changes(database)) {
        database.execute(changes_table);
        mark_version(database, version_with_changes);
    }
    Statement statement(database, "INSERT INTO changes (number, native, openconfig) VALUES (?, ?, ?)");
    statement.bind(1, number).bind(2, change.native).bind(3, change.openconfig).run();
}

std::optional<std::string> meta_value(Database &database, const char *name) {
    Statement rows(database, "SELECT value FROM meta WHERE name = ?");
    rows.bind(1, std::string(name));
    return rows.step() ? std::optional(rows.text(0)) : std::nullopt;
}

void set_meta_value(Database &database, const char *name, const std::string &value) {
    Statement statement(database, "INSERT INTO meta (name, value) VALUES (?, ?)"
                                  " ON CONFLICT (name) DO UPDATE SET value = excluded.value");
    statement.bind(1, std::string(name)).bind(2, value).run();
}

} // namespace yfw::commits

// The tables of a store of commits, and how a store is told from other databases.
#ifndef YFW_COMMITS_STORE_FORMAT_H
#define YFW_COMMITS_STORE_FORMAT_H

#include <cstdint>
#include <optional>
#include <string>

#include "commits/commit_log.h"
#include "commits/database.h"

namespace yfw::commits {

// SQLite's application_id of a store, "yfwc", and its user_version. A store with a table of changes has the
// latter one, so that programs that do not know the table refuse it.
constexpr int64_t application = 0x79667763;
constexpr int64_t current_version = 2;
constexpr int64_t version_with_changes = 3;

enum class Format {
    first,  // the table of commits alone, without an OpenConfig text; neither application_id nor user_version
    current // a column more, and a table of names and values about the store
};

// The names in the table `meta`.
namespace meta {
constexpr const char *owner = "owner";
constexpr const char *applied_to = "applied-to";
} // namespace meta

// Throws StoreError for a newer store, and for a database that is no store.
Format format_of(Database &database);

// Of the current format. Throws StoreError if the store belongs to another device. A store without an owner
// belongs to everybody, one that an earlier version made for a device given as files to every such device, and
// nobody's `owner` opens every store. Returns whether the store has an owner of its own.
bool check_owner(Database &database, const std::optional<std::string> &owner);

// Makes the tables of an empty database.
void make_tables(Database &database);

// Turns the first format into the current one; to be called within a transaction.
void upgrade(Database &database);

// How a commit differs from the one before; nothing for one that is stored whole.
std::optional<ConfigurationChange> change_of(Database &database, int64_t number);
// Makes the table first if there is none. To be called within a transaction, of the current format.
void insert_change(Database &database, int64_t number, const ConfigurationChange &change);

// Of the current format. Nothing when there is no such name.
std::optional<std::string> meta_value(Database &database, const char *name);
void set_meta_value(Database &database, const char *name, const std::string &value);

} // namespace yfw::commits

#endif

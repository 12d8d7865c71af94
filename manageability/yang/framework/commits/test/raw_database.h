// Databases made with SQLite alone: those of an earlier version, and of other programs.
#ifndef COMMITS_TEST_RAW_DATABASE_H
#define COMMITS_TEST_RAW_DATABASE_H

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace yfw::commits::test {

// Runs the statements on the file, which is created if missing. Throws std::runtime_error with SQLite's
// message. Returns the first column of all rows.
std::vector<std::string> run_sql(const std::filesystem::path &file, const std::string &statements);

// A store as the first version made it, with the numbered commits from 0 to `last`; none for -1.
void make_first_format(const std::filesystem::path &file, int64_t last);

// The statement with which the first version stored a commit.
std::string first_format_insert(int64_t number);

} // namespace yfw::commits::test

#endif

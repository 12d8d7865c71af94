// The store's file: created on request; rejected by name when it is not a store.
#include <filesystem>
#include <functional>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "numbered_commits.h"
#include "raw_database.h"
#include "support/files.h"

namespace yfw::commits::test {
namespace {

namespace fs = std::filesystem;

// The error from opening the file and reading its last commit; empty on success.
std::string complaint(const fs::path &file, bool create) {
    try {
        const CommitLog store(file, create);
        store.last();
        return "";
    } catch (const StoreError &error) {
        return error.what();
    }
}

struct FileCase {
    const char *name;
    std::function<fs::path(const yfw::test::TemporaryDirectory &)> make;
};

class AFileThatIsNoStore : public testing::TestWithParam<FileCase> {
protected:
    const yfw::test::TemporaryDirectory directory;
    const fs::path file = GetParam().make(directory);
};

TEST_P(AFileThatIsNoStore, IsRefusedByName) {
    for (const bool create : {false, true})
        EXPECT_NE(complaint(file, create).find(file.string()), std::string::npos)
            << "create: " << create << ": " << complaint(file, create);
}

TEST_P(AFileThatIsNoStore, IsRefusedInOneLine) {
    for (const bool create : {false, true})
        EXPECT_EQ(complaint(file, create).find('\n'), std::string::npos);
}

TEST_P(AFileThatIsNoStore, IsLeftAsItIs) {
    const bool regular = fs::is_regular_file(file);
    const std::string before = regular ? yfw::test::read_file(file) : "";
    for (const bool create : {false, true})
        complaint(file, create);
    EXPECT_EQ(fs::is_regular_file(file), regular);
    if (regular) {
        EXPECT_TRUE(yfw::test::read_file(file) == before);
    }
}

fs::path text_file(const yfw::test::TemporaryDirectory &directory) {
    return directory.add("commits.db", "This is a letter and no database. It is longer than a header.\n" +
                                           std::string(4096, '.'));
}

fs::path short_file(const yfw::test::TemporaryDirectory &directory) {
    return directory.add("commits.db", "hello\n");
}

fs::path sub_directory(const yfw::test::TemporaryDirectory &directory) {
    fs::create_directory(directory.path() / "commits.db");
    return directory.path() / "commits.db";
}

// The file has a database header, but nothing valid after it.
fs::path damaged_store(const yfw::test::TemporaryDirectory &directory) {
    const fs::path file = directory.path() / "commits.db";
    {
        CommitLog store(file, true);
        keep_numbered(store);
    }
    const std::string whole = yfw::test::read_file(file);
    return directory.add("damaged.db", whole.substr(0, 16) + std::string(whole.size() - 16, '\x5a'));
}

fs::path empty_file(const yfw::test::TemporaryDirectory &directory) {
    return directory.add("commits.db", "");
}

// SQLite takes it for an empty one.
fs::path file_of_one_byte(const yfw::test::TemporaryDirectory &directory) {
    return directory.add("commits.db", "a");
}

fs::path pipe(const yfw::test::TemporaryDirectory &directory) {
    const fs::path file = directory.path() / "commits.db";
    return mkfifo(file.c_str(), 0600) == 0 ? file : fs::path();
}

fs::path database(const yfw::test::TemporaryDirectory &directory, const char *statements) {
    const fs::path file = directory.path() / "commits.db";
    run_sql(file, statements);
    return file;
}

fs::path other_database(const yfw::test::TemporaryDirectory &directory) {
    return database(directory, "CREATE TABLE commits (number, text)");
}

fs::path database_without_tables(const yfw::test::TemporaryDirectory &directory) {
    return database(directory, "PRAGMA journal_mode = WAL");
}

fs::path database_of_another_version(const yfw::test::TemporaryDirectory &directory) {
    const fs::path file = directory.path() / "commits.db";
    make_first_format(file, 0);
    run_sql(file, "PRAGMA user_version = 1");
    return file;
}

fs::path database_of_another_program(const yfw::test::TemporaryDirectory &directory) {
    const fs::path file = directory.path() / "commits.db";
    make_first_format(file, 0);
    run_sql(file, "PRAGMA application_id = 252006673");
    return file;
}

fs::path database_with_another_table(const yfw::test::TemporaryDirectory &directory) {
    const fs::path file = directory.path() / "commits.db";
    make_first_format(file, 0);
    run_sql(file, "CREATE TABLE others (number)");
    return file;
}

INSTANTIATE_TEST_SUITE_P(Being, AFileThatIsNoStore,
                         testing::Values(FileCase{"AText", text_file}, FileCase{"AWord", short_file},
                                         FileCase{"ADirectory", sub_directory},
                                         FileCase{"ADamagedStore", damaged_store},
                                         FileCase{"Empty", empty_file}, FileCase{"OneByte", file_of_one_byte},
                                         FileCase{"APipe", pipe}, FileCase{"AnotherDatabase", other_database},
                                         FileCase{"ADatabaseWithoutTables", database_without_tables},
                                         FileCase{"ADatabaseWithAnotherTable", database_with_another_table},
                                         FileCase{"OfAnotherVersion", database_of_another_version},
                                         FileCase{"OfAnotherProgram", database_of_another_program}),
                         [](const auto &file) { return file.param.name; });

TEST(AStoreThatIsAbsent, IsRefusedByNameAndNotMade) {
    const yfw::test::TemporaryDirectory directory;
    const fs::path file = directory.path() / "deep" / "commits.db";
    EXPECT_NE(complaint(file, false).find(file.string()), std::string::npos) << complaint(file, false);
    EXPECT_TRUE(fs::is_empty(directory.path()));
}

TEST(AStoreThatIsAbsent, IsMadeWithItsDirectory) {
    const yfw::test::TemporaryDirectory directory;
    const fs::path file = directory.path() / "deep" / "deeper" / "commits.db";
    EXPECT_EQ(complaint(file, true), "");
    EXPECT_TRUE(fs::exists(file));
}

TEST(AStoreWhoseDirectoryCannotBeMade, IsRefusedByThePlaceAtFault) {
    const yfw::test::TemporaryDirectory directory;
    const fs::path below_a_file = fs::path(directory.add("file", "")) / "commits.db";
    for (const fs::path &file : {below_a_file, fs::path("/dev/null/deep/commits.db")})
        for (const bool create : {false, true})
            EXPECT_NE(complaint(file, create).find(file.parent_path().string()), std::string::npos)
                << complaint(file, create);
}

TEST(AStoreWhoseNameIsOdd, IsFoundAgain) {
    const yfw::test::TemporaryDirectory directory;
    const fs::path file = directory.path() / "file:a b?mode=ro#'%41\".db";
    {
        CommitLog store(file, true);
        keep_numbered(store);
    }
    EXPECT_TRUE(fs::exists(file));
    EXPECT_TRUE(is_sound(CommitLog(file, false), 0));
}

// Drops root's privileges where possible, since root may read everything.
class AStoreOfAnotherUser : public testing::Test {
protected:
    static constexpr uid_t nobody = 65534;

    void SetUp() override {
        fs::permissions(directory.path(), fs::perms::all);
        {
            CommitLog store(file, true);
            keep_numbered(store);
        }
        fs::permissions(file, fs::perms::none);
        if (geteuid() == 0 && seteuid(nobody) != 0)
            GTEST_SKIP() << "there is no other user here";
    }

    void TearDown() override {
        if (getuid() == 0) {
            ASSERT_EQ(seteuid(0), 0);
        }
    }

    const yfw::test::TemporaryDirectory directory;
    const fs::path file = directory.path() / "commits.db";
};

TEST_F(AStoreOfAnotherUser, IsRefusedByName) {
    for (const bool create : {false, true})
        EXPECT_NE(complaint(file, create).find(file.string()), std::string::npos) << complaint(file, create);
}

} // namespace
} // namespace yfw::commits::test

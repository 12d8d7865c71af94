// Whatever the bytes of a file are, it is served or refused by name, and not lost.
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "committing_process.h"
#include "numbered_commits.h"
#include "raw_database.h"
#include "support/files.h"

namespace yfw::commits::test {
namespace {

namespace fs = std::filesystem;

class Damage {
public:
    explicit Damage(unsigned seed) : random_(seed) {}

    // The bytes with one kind of damage, or several.
    std::string to(std::string bytes) {
        for (size_t i = 0, kinds = 1 + below(3); i < kinds && !bytes.empty(); ++i)
            damage(bytes);
        return bytes;
    }

private:
    size_t below(size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(random_); }
    char byte() { return static_cast<char>(below(256)); }

    void damage(std::string &bytes) {
        constexpr size_t header = 100;
        constexpr size_t page = 4096;
        switch (below(7)) {
        case 0:
            bytes[below(std::min(header, bytes.size()))] = byte();
            break;
        case 1:
            bytes[below(std::min(page, bytes.size()))] = byte();
            break;
        case 2:
            for (int i = 0; i < 50; ++i)
                bytes[below(bytes.size())] = byte();
            break;
        case 3:
            bytes.resize(below(bytes.size()));
            break;
        case 4:
            bytes += std::string(below(2 * page), byte());
            break;
        case 5:
            bytes.replace(below(bytes.size()), page, std::string(page, byte()));
            break;
        default:
            bytes.replace(below(bytes.size()), page, bytes, below(bytes.size()), page);
        }
    }

    std::mt19937 random_;
};

// Uses all of the store. Errors other than StoreError, and crashes, end the test.
class Use {
public:
    explicit Use(fs::path file) : file_(std::move(file)) {}

    // Whether it could be opened.
    bool run() {
        bool is_opened = false;
        expect_named([&] {
            CommitLog store(file_, true, "r1");
            is_opened = true;
            expect_named([&] { store.history(); });
            expect_named([&] { store.last(); });
            expect_named([&] { store.find(1); });
            expect_named([&] { store.applied_to(); });
            expect_named([&] { keep(store, commit_with("after the damage", "c")); });
            expect_named([&] { store.set_openconfig(0, "in OpenConfig"); });
        });
        return is_opened;
    }

private:
    void expect_named(const std::function<void()> &work) const {
        try {
            work();
        } catch (const StoreError &error) {
            EXPECT_NE(std::string(error.what()).find(file_.string()), std::string::npos) << error.what();
        }
    }

    fs::path file_;
};

class AnyBytesInAStore : public testing::Test {
protected:
    // Damages the file, `rounds` times anew, next to intact others.
    void expect_use(const fs::path &damaged, int rounds) {
        const std::string whole = yfw::test::read_file(damaged);
        const std::string store = yfw::test::read_file(file);
        const fs::path other = directory.path() / "other.db";
        const bool is_store = damaged == file;
        Damage damage(20);
        int opened = 0;
        for (int round = 0; round < rounds; ++round) {
            for (const char *suffix : {"", "-wal", "-shm"})
                fs::remove(other.string() + suffix);
            const std::string bytes = damage.to(whole);
            yfw::test::write_file(other, is_store ? bytes : store);
            if (!is_store)
                yfw::test::write_file(other.string() + "-wal", bytes);
            if (Use(other).run())
                ++opened;
            else
                EXPECT_TRUE(yfw::test::read_file(other) == (is_store ? bytes : store)) << "round " << round;
            ASSERT_TRUE(fs::exists(other)) << "round " << round;
            ASSERT_FALSE(HasFailure()) << "round " << round;
        }
        RecordProperty("opened", opened);
        EXPECT_GT(opened, rounds / 10);
    }

    const yfw::test::TemporaryDirectory directory;
    const fs::path file = directory.path() / "commits.db";
};

TEST_F(AnyBytesInAStore, AreServedOrRefused) {
    {
        CommitLog store(file, true, "r1");
        for (int i = 0; i < 20; ++i)
            keep(store, commit_with("commit", std::string(1000, 'a')));
        store.set_applied_to("run 7");
    }
    expect_use(file, 400);
}

TEST_F(AnyBytesInAStore, AreServedOrRefusedInOneOfTheFirstVersion) {
    make_first_format(file, 0);
    expect_use(file, 300);
}

TEST_F(AnyBytesInAStore, AreServedOrRefusedInItsLog) {
    CommittingProcess process([this](const CommittingProcess::Report &) {
        CommitLog store(file, true, "r1");
        for (int i = 0; i < 5; ++i)
            keep(store, commit_with("commit", std::string(1000, 'a')));
        raise(SIGKILL);
    });
    ASSERT_EQ(process.wait(), 128 + SIGKILL);
    expect_use(file.string() + "-wal", 200);
}

TEST_F(AnyBytesInAStore, AreRefusedWhenTheLastPageIsCut) {
    {
        CommitLog store(file, true, "r1");
        for (int i = 0; i < 3; ++i)
            keep(store, commit_with("commit", std::string(6000, 'a')));
    }
    const std::string whole = yfw::test::read_file(file);
    for (const size_t missing : {1U, 2000U, 4095U, 4096U, 6000U}) {
        const fs::path cut = directory.add("cut.db", whole.substr(0, whole.size() - missing));
        try {
            const CommitLog store(cut, false);
            ADD_FAILURE() << "opened without its last " << missing << " bytes";
        } catch (const StoreError &error) {
            EXPECT_NE(std::string(error.what()).find("is damaged"), std::string::npos) << error.what();
        }
        EXPECT_EQ(fs::file_size(cut), whole.size() - missing);
    }
}

TEST_F(AnyBytesInAStore, WithoutANextNumberTakeNoCommit) {
    for (const char *number : {"9223372036854775807", "-1"}) {
        fs::remove(file);
        {
            CommitLog store(file, true);
            keep_numbered(store);
        }
        run_sql(file, std::string("UPDATE commits SET number = ") + number);
        CommitLog store(file, false);
        EXPECT_THROW(keep_numbered(store), StoreError) << number;
        EXPECT_EQ(store.history().size(), 1U);
    }
}

} // namespace
} // namespace yfw::commits::test

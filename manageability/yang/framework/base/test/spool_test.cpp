// Texts of any length that need little memory.
#include "base/spool.h"

#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "base/error.h"
#include "support/files.h"

namespace yfw::test {
namespace {

constexpr size_t long_size = 5u << 20;

std::string content_of(Descriptor file, size_t size) {
    std::string content(size + 1, '\0');
    content.resize(static_cast<size_t>(::pread(file.get(), content.data(), content.size(), 0)));
    return content;
}

TEST(AShortSpool, StaysInMemory) {
    Spool spool;
    EXPECT_TRUE(spool.empty());
    spool << "one "
          << "two";
    EXPECT_EQ(spool.size(), 7u);
    EXPECT_FALSE(spool.has_file());
    EXPECT_EQ(spool.memory(), "one two");
    EXPECT_EQ(spool.text(), "one two");
}

TEST(ALongSpool, IsInAFileAsItWasWritten) {
    std::mt19937 random(1);
    Spool spool;
    std::string all;
    while (all.size() < long_size) {
        const std::string piece(random() % 100000, static_cast<char>('a' + random() % 26));
        spool << piece;
        all += piece;
        EXPECT_LT(spool.memory().size(), 400000u);
    }
    EXPECT_EQ(spool.size(), all.size());
    EXPECT_TRUE(spool.text() == all);
    ASSERT_TRUE(spool.has_file());
    EXPECT_TRUE(content_of(spool.take_file(), all.size()) == all);
}

TEST(ALongSpool, IsLeftNowhereByName) {
    const TemporaryDirectory directory;
    const std::string before = std::getenv("TMPDIR") != nullptr ? std::getenv("TMPDIR") : "/tmp";
    ::setenv("TMPDIR", directory.path().c_str(), 1);
    Spool spool;
    spool << std::string(long_size, 'x');
    EXPECT_TRUE(spool.has_file());
    EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
    ::setenv("TMPDIR", before.c_str(), 1);
}

TEST(ALongSpool, WithoutRoomIsAnErrorThatNamesTheDirectory) {
    const std::string before = std::getenv("TMPDIR") != nullptr ? std::getenv("TMPDIR") : "/tmp";
    ::setenv("TMPDIR", "/proc", 1); // a directory that holds no files of ours
    Spool spool;
    try {
        spool << std::string(long_size, 'x');
        ADD_FAILURE() << "it was written";
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), ErrorTag::resource_denied);
        EXPECT_NE(std::string(error.what()).find("/proc"), std::string::npos) << error.what();
    }
    ::setenv("TMPDIR", before.c_str(), 1);
}

} // namespace
} // namespace yfw::test

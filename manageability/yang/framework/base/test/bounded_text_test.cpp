// Texts of files and streams, up to a length.
#include "base/bounded_text.h"

#include <filesystem>
#include <functional>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "base/error.h"
#include "support/files.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;

// The path and the message of the refusal; empty when there is none.
std::string refusal_of(const std::function<void()> &read) {
    try {
        read();
        return "";
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), ErrorTag::invalid_value);
        return error.path() + ": " + error.what();
    }
}

class AFileFromOutside : public testing::Test {
protected:
    // Both ways to look at a file agree.
    std::string refusal_of_file(const fs::path &file, uint64_t most = mebibyte) const {
        const std::string of_text = refusal_of([&] { bounded_file_text(file, most); });
        EXPECT_EQ(refusal_of([&] { require_bounded_file(file, most); }), of_text);
        return of_text;
    }

    const TemporaryDirectory directory;
};

TEST_F(AFileFromOutside, IsReadWholeUpToTheLimit) {
    for (const size_t size : {size_t{0}, size_t{1}, size_t{65536}, size_t{mebibyte}}) {
        const std::string text(size, 'x');
        EXPECT_EQ(bounded_file_text(directory.add("file", text), mebibyte), text) << size;
    }
}

TEST_F(AFileFromOutside, IsReadThroughALink) {
    fs::create_symlink(directory.add("file", "text"), directory.path() / "link");
    EXPECT_EQ(bounded_file_text(directory.path() / "link", mebibyte), "text");
}

TEST_F(AFileFromOutside, IsReadWhereItsSizeIsNotKnown) {
    EXPECT_NE(bounded_file_text("/proc/self/status", mebibyte), "");
}

TEST_F(AFileFromOutside, IsRefusedAboveTheLimit) {
    const std::string file = directory.add("file", std::string(mebibyte + 1, 'x'));
    EXPECT_EQ(refusal_of_file(file), file + ": is larger than 1 MiB");
}

TEST_F(AFileFromOutside, IsRefusedAtOnceHoweverLargeItIs) {
    const std::string file = directory.add("file", "");
    fs::resize_file(file, 20 * 1024 * mebibyte);
    EXPECT_EQ(refusal_of_file(file), file + ": is larger than 1 MiB");
}

TEST_F(AFileFromOutside, IsNoPipeAndNoDevice) {
    const fs::path pipe = directory.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(refusal_of_file(pipe), pipe.string() + ": is not a file");
    EXPECT_EQ(refusal_of_file("/dev/zero"), "/dev/zero: is not a file");
    EXPECT_EQ(refusal_of_file(directory.path()), directory.path().string() + ": is not a file");
}

TEST_F(AFileFromOutside, ThatCannotBeFoundIsNamedWithTheReason) {
    const std::string missing = (directory.path() / "missing").string();
    EXPECT_EQ(refusal_of_file(missing), missing + ": cannot be read: No such file or directory");
    const std::string loop = (directory.path() / "loop").string();
    fs::create_symlink("loop", loop);
    EXPECT_EQ(refusal_of_file(loop), loop + ": cannot be read: Too many levels of symbolic links");
}

TEST(AStreamFromOutside, IsReadWholeUpToTheLimit) {
    for (const size_t size : {size_t{0}, size_t{1}, size_t{65536}, size_t{mebibyte}}) {
        std::istringstream stream(std::string(size, 'x'));
        EXPECT_EQ(bounded_text(stream, mebibyte, "here"), std::string(size, 'x'));
    }
}

TEST(AStreamFromOutside, IsRefusedAboveTheLimit) {
    std::istringstream stream(std::string(mebibyte + 1, 'x'));
    EXPECT_EQ(refusal_of([&] { bounded_text(stream, mebibyte, "here"); }), "here: is larger than 1 MiB");
}

} // namespace
} // namespace yfw::test

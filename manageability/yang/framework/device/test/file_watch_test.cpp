// Changed files.
#include <atomic>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "device/file_watch.h"
#include "support/eventually.h"
#include "support/files.h"

namespace yfw::device::test {
namespace {

namespace fs = std::filesystem;
using yfw::test::eventually;
using yfw::test::write_file;

class AWatch : public testing::Test {
protected:
    void watch(const std::vector<fs::path> &places) {
        watch_.emplace(
            places, [this] { changes_++; }, [this](const std::string &said) { said_ = said; });
    }

    // Whether a change is told of after what `change` does.
    bool tells_of(const std::function<void()> &change) {
        const int before = changes_;
        change();
        return eventually([&] { return changes_ > before; }, std::chrono::seconds(2));
    }

    yfw::test::TemporaryDirectory directory_;
    const fs::path file_ = directory_.add("watched.xml", "<a/>");
    const fs::path other_ = directory_.add("other.xml", "<a/>");
    std::atomic<int> changes_ = 0;
    std::string said_;
    std::optional<FileWatch> watch_;
};

TEST_F(AWatch, OfADirectoryTellsOfAnyFileInIt) {
    watch({directory_.path()});
    EXPECT_TRUE(tells_of([&] { write_file(file_, "<b/>"); }));
    EXPECT_TRUE(tells_of([&] { write_file(directory_.path() / "new.xml", "<b/>"); }));
    EXPECT_TRUE(tells_of([&] { fs::rename(directory_.path() / "new.xml", file_); }));
    EXPECT_TRUE(tells_of([&] { fs::remove(other_); }));
}

TEST_F(AWatch, OfAFileTellsOfThatFileAlone) {
    watch({file_});
    EXPECT_FALSE(tells_of([&] { write_file(other_, "<b/>"); }));
    EXPECT_TRUE(tells_of([&] { write_file(file_, "<b/>"); }));
    EXPECT_TRUE(tells_of([&] { fs::rename(other_, file_); }));
}

TEST_F(AWatch, OfNothingDoesNothing) {
    watch({});
    EXPECT_FALSE(tells_of([&] { write_file(file_, "<b/>"); }));
    EXPECT_EQ(said_, "");
}

TEST_F(AWatch, OfWhatIsNotThereSaysSo) {
    watch({directory_.path() / "none" / "file.xml"});
    EXPECT_NE(said_.find("none/file.xml cause no events"), std::string::npos) << said_;
}

} // namespace
} // namespace yfw::device::test

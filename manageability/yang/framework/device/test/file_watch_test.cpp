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

class AWatchOfAPlaceThatIsReplaced : public AWatch {
protected:
    // Makes a directory with a file.
    fs::path device(const std::string &name) {
        const fs::path made = directory_.path() / name;
        fs::create_directories(made);
        write_file(made / "oper.xml", "<a/>");
        return made;
    }
};

TEST_F(AWatchOfAPlaceThatIsReplaced, TellsOfADirectoryThatIsMadeAnew) {
    const fs::path place = device("r1");
    watch({place});
    EXPECT_TRUE(tells_of([&] { fs::remove_all(place); }));
    EXPECT_TRUE(tells_of([&] { device("r1"); }));
    EXPECT_TRUE(tells_of([&] { write_file(place / "oper.xml", "<b/>"); }));
}

TEST_F(AWatchOfAPlaceThatIsReplaced, TellsOfADirectoryThatIsMovedThere) {
    const fs::path place = device("r1");
    const fs::path next = device("r2");
    watch({place});
    EXPECT_TRUE(tells_of([&] { fs::rename(place, directory_.path() / "old"); }));
    EXPECT_TRUE(tells_of([&] { fs::rename(next, place); }));
    EXPECT_TRUE(tells_of([&] { write_file(place / "oper.xml", "<b/>"); }));
}

TEST_F(AWatchOfAPlaceThatIsReplaced, TellsOfADirectoryAboveThatIsMovedThere) {
    const fs::path place = device("site/r1");
    device("other/r1");
    watch({place});
    fs::rename(directory_.path() / "site", directory_.path() / "old");
    EXPECT_TRUE(tells_of([&] { fs::rename(directory_.path() / "other", directory_.path() / "site"); }));
    EXPECT_TRUE(tells_of([&] { write_file(place / "oper.xml", "<b/>"); }));
}

TEST_F(AWatchOfAPlaceThatIsReplaced, TellsOfALinkThatIsTurned) {
    const fs::path first = device("r1");
    const fs::path second = device("r2");
    const fs::path current = directory_.path() / "current";
    const fs::path next = directory_.path() / "next";
    fs::create_directory_symlink(first, current);
    watch({current});
    EXPECT_TRUE(tells_of([&] {
        fs::create_directory_symlink(second, next);
        fs::rename(next, current);
    }));
    EXPECT_TRUE(tells_of([&] { write_file(second / "oper.xml", "<b/>"); }));
}

TEST_F(AWatchOfAPlaceThatIsReplaced, TellsOfTheFilesThatLinksInItLeadTo) {
    const fs::path place = directory_.path() / "r1";
    fs::create_directory(place);
    watch({place});
    EXPECT_TRUE(tells_of([&] { fs::create_symlink(other_, place / "oper.xml"); }));
    EXPECT_TRUE(tells_of([&] { write_file(other_, "<b/>"); }));
    EXPECT_FALSE(tells_of([&] { write_file(file_, "<b/>"); }));
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

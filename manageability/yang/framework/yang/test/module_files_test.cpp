// Where YANG modules are found, and the error for one that is missing.
#include <algorithm>
#include <filesystem>
#include <optional>
#include <regex>
#include <string>
#include <utility>

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/error.h"
#include "support/files.h"
#include "yang/module_files.h"

namespace yfw::yang::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using yfw::test::read_file;
using yfw::test::TemporaryDirectory;
using yfw::test::write_file;

// Copies of the shipped modules and of those in packages, so that tests can remove some.
class ModuleDirectories : public testing::Test {
protected:
    ModuleDirectories() {
        for (const auto &[from, to] : {std::pair<fs::path, fs::path>(YFW_MODELS_DIR, own()),
                                       std::pair<fs::path, fs::path>(YFW_STANDARD_MODELS_DIR, packaged())})
            for (const auto &file : fs::directory_iterator(from))
                if (file.path().extension() == ".yang")
                    fs::copy_file(file.path(), to / file.path().filename());
    }

    const fs::path &own() const { return own_.path(); }
    const fs::path &packaged() const { return packaged_.path(); }

    // A context with the modules that a server offers and their imports.
    YangContext load() const {
        YangContext context = ModuleFiles::make_context();
        for (const char *name :
             {"openconfig-lldp", "openconfig-lldp-types", "ietf-netconf", "ietf-netconf-monitoring",
              "ietf-yang-library", "ietf-datastores", "notifications", "nc-notifications",
              "ietf-netconf-notifications", "yfw-lldp-notifications", "ietf-netconf-with-defaults",
              "ietf-netconf-nmda", "ietf-netconf-acm"})
            ModuleFiles({own(), packaged()}).load(context.get(), name);
        return context;
    }

    // The error from loading them; nothing on success.
    std::optional<Error> error() const {
        try {
            load();
        } catch (const Error &error) {
            return error;
        }
        return std::nullopt;
    }

private:
    TemporaryDirectory own_;
    TemporaryDirectory packaged_;
};

// A module's text with a newer revision statement added.
std::string with_newer_revision(const fs::path &file) {
    return std::regex_replace(read_file(file), std::regex("revision (\"?[0-9]{4}-)"),
                              "revision 2099-01-01 { description \"New.\"; }\n  revision $1",
                              std::regex_constants::format_first_only);
}

// The newest of several; empty when there is none.
std::string revision_in(const ly_ctx *context, const std::string &name) {
    const lys_module *module = ly_ctx_get_module_latest(context, name.c_str());
    return module != nullptr && module->revision != nullptr ? module->revision : "";
}

// --- modules of packages ---

class AModuleOfAPackage : public ModuleDirectories, public testing::WithParamInterface<const char *> {};

TEST_P(AModuleOfAPackage, IsNamedWithItsPackageAndTheDirectoriesWhenItIsMissing) {
    ASSERT_FALSE(error().has_value());
    const std::string file = std::string(GetParam()) + ".yang";
    ASSERT_TRUE(fs::remove(packaged() / file));
    const std::optional<Error> said = error();
    ASSERT_TRUE(said.has_value());
    EXPECT_EQ(said->path(), file);
    EXPECT_THAT(said->what(),
                AllOf(HasSubstr("libyuma-base"), HasSubstr(own().string() + ", " + packaged().string())));
}

TEST_P(AModuleOfAPackage, IsMissingWhereThereIsAnotherRevisionAlone) {
    const std::string file = std::string(GetParam()) + ".yang";
    const std::string name = file.substr(0, file.find('@'));
    write_file(packaged() / (name + "@2099-01-01.yang"), with_newer_revision(packaged() / file));
    write_file(packaged() / (name + ".yang"), with_newer_revision(packaged() / file));
    ASSERT_TRUE(fs::remove(packaged() / file));
    const std::optional<Error> said = error();
    ASSERT_TRUE(said.has_value());
    EXPECT_EQ(said->path(), file);
}

TEST_P(AModuleOfAPackage, IsTakenInItsRevisionWhereThereIsANewerOneToo) {
    const std::string file = std::string(GetParam()) + ".yang";
    const std::string name = file.substr(0, file.find('@'));
    write_file(packaged() / (name + "@2099-01-01.yang"), with_newer_revision(packaged() / file));
    EXPECT_EQ(name + "@" + revision_in(load().get(), name) + ".yang", file);
}

INSTANTIATE_TEST_SUITE_P(Named, AModuleOfAPackage,
                         testing::Values("ietf-netconf@2011-06-01", "ietf-netconf-monitoring@2010-10-04",
                                         "ietf-netconf-nmda@2019-01-07",
                                         "ietf-netconf-notifications@2012-02-06",
                                         "ietf-netconf-with-defaults@2011-06-01", "ietf-origin@2018-02-14",
                                         "ietf-netconf-acm@2018-02-14"),
                         [](const auto &test) {
                             std::string name = test.param;
                             name.resize(name.find('@'));
                             std::erase(name, '-');
                             return name;
                         });

TEST_F(ModuleDirectories, LeaveTheModulesOfTheLibraryAsTheyAre) {
    const std::string before = revision_in(ModuleFiles::make_context().get(), "ietf-yang-types");
    write_file(packaged() / "ietf-yang-types@2099-01-01.yang",
               with_newer_revision(packaged() / "ietf-yang-types@2013-07-15.yang"));
    EXPECT_EQ(revision_in(load().get(), "ietf-yang-types"), before);
}

TEST_F(ModuleDirectories, AreNamedWithAModuleThatCannotBeRead) {
    const fs::path file = packaged() / "ietf-origin@2018-02-14.yang";
    fs::remove(file);
    fs::create_directory(file);
    const std::optional<Error> said = error();
    ASSERT_TRUE(said.has_value());
    EXPECT_EQ(said->path(), file.string());
    EXPECT_THAT(said->what(), HasSubstr("is not a file"));
}

TEST_F(ModuleDirectories, DoNotMakeTheReaderWaitForThoseWhoWritePipes) {
    const fs::path file = packaged() / "ietf-origin@2018-02-14.yang";
    fs::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    const std::optional<Error> said = error();
    ASSERT_TRUE(said.has_value());
    EXPECT_EQ(said->path(), file.string());
    EXPECT_STREQ(said->what(), "is not a file");
}

TEST_F(ModuleDirectories, AreNamedWithAModuleThatIsNoText) {
    const fs::path file = packaged() / "ietf-origin@2018-02-14.yang";
    write_file(file, read_file(file) + std::string("\0 }", 3));
    const std::optional<Error> said = error();
    ASSERT_TRUE(said.has_value());
    EXPECT_EQ(said->path(), file.string());
    EXPECT_THAT(said->what(), HasSubstr("zero octet"));
}

TEST_F(ModuleDirectories, NeedNotExist) {
    fs::remove_all(packaged());
    const std::optional<Error> said = error();
    ASSERT_TRUE(said.has_value());
    EXPECT_EQ(said->path(), "ietf-netconf@2011-06-01.yang");
    EXPECT_THAT(said->what(), HasSubstr("libyuma-base"));
}

// --- modules of this product ---

class AModuleOfThisProduct : public ModuleDirectories, public testing::WithParamInterface<const char *> {};

TEST_P(AModuleOfThisProduct, IsNamedWithoutAPackageWhenItIsMissing) {
    const std::string file = std::string(GetParam()) + ".yang";
    ASSERT_TRUE(fs::remove(own() / file));
    const std::optional<Error> said = error();
    ASSERT_TRUE(said.has_value());
    EXPECT_EQ(said->path(), file);
    EXPECT_THAT(said->what(), AllOf(HasSubstr(own().string()), Not(HasSubstr("package"))));
}

INSTANTIATE_TEST_SUITE_P(Named, AModuleOfThisProduct,
                         testing::Values("notifications@2008-07-14", "nc-notifications@2008-07-14",
                                         "openconfig-lldp", "openconfig-lldp-types", "yfw-lldp-notifications"),
                         [](const auto &test) {
                             std::string name = test.param;
                             name.resize(std::min(name.find('@'), name.size()));
                             std::erase(name, '-');
                             return name;
                         });

// --- other modules ---

TEST(AnotherModule, IsTheNewestOfTheFirstDirectoryThatHasOne) {
    const TemporaryDirectory without, first, second;
    first.add("other@2020-01-01.yang", "");
    const std::string newest = first.add("other@2021-01-01.yang", "");
    second.add("other@2022-01-01.yang", "");
    const ModuleFiles files({without.path(), first.path(), second.path()});
    EXPECT_EQ(files.find("other"), newest);
    EXPECT_EQ(files.find("other", "2022-01-01"), second.path() / "other@2022-01-01.yang");
    EXPECT_EQ(files.find("another"), fs::path());
}

TEST(AModuleThatIsNone, IsRefusedByItsName) {
    const TemporaryDirectory directory;
    directory.add("broken.yang", "module broken { colour red; }");
    const YangContext context = ModuleFiles::make_context();
    try {
        ModuleFiles({directory.path()}).load(context.get(), "broken");
        FAIL() << "the module was loaded";
    } catch (const Error &error) {
        EXPECT_EQ(error.path(), "broken");
        EXPECT_THAT(error.what(), HasSubstr("failed"));
    }
}

} // namespace
} // namespace yfw::yang::test

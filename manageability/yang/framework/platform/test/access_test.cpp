#include <cerrno>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/platform.h"

namespace yfw::platform {
namespace {

constexpr const char *library = "/pkg/lib/libsysdb.so";

// The result of `access`: 0, or the error.
int tested(const char *path, int mode) {
    errno = 0;
    return access(path, mode) == 0 ? 0 : errno;
}

// Called before main, as a library's start-up code may do.
const int before_main_file = tested("/", F_OK);
const int before_main_library = tested(library, R_OK);

TEST(Access, AnswersBeforeMain) {
    EXPECT_EQ(before_main_file, 0);
    EXPECT_EQ(before_main_library, ENOENT);
}

struct PackageCase {
    const char *name;
    bool library_present;
    const char *path;
    int mode;
    int error;
};

class AccessBelowThePackageDirectory : public testing::TestWithParam<PackageCase> {};

TEST_P(AccessBelowThePackageDirectory, IsAnsweredByThePlatform) {
    Platform platform({.library_present = GetParam().library_present});
    const Platform::Scope scope(platform);
    EXPECT_EQ(tested(GetParam().path, GetParam().mode), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Tests, AccessBelowThePackageDirectory,
    testing::Values(PackageCase{"ReadsThePresentLibrary", true, library, R_OK, 0},
                    PackageCase{"FindsThePresentLibrary", true, library, F_OK, 0},
                    PackageCase{"WritesThePresentLibrary", true, library, W_OK, EACCES},
                    PackageCase{"ExecutesThePresentLibrary", true, library, R_OK | X_OK, EACCES},
                    PackageCase{"ReadsTheMissingLibrary", false, library, R_OK, ENOENT},
                    PackageCase{"WritesTheMissingLibrary", false, library, W_OK, ENOENT},
                    PackageCase{"ReadsAnotherFile", true, "/pkg/lib/libsysdb.so.1", R_OK, ENOENT},
                    PackageCase{"ReadsAShorterName", true, "/pkg/lib/libsysdb", R_OK, ENOENT},
                    PackageCase{"FindsTheDirectory", true, "/pkg/", F_OK, ENOENT},
                    PackageCase{"TestsForNonsense", true, library, 0x100, EINVAL}),
    [](const auto &test_case) { return test_case.param.name; });

TEST(Access, FindsNoLibraryWithoutAPlatform) {
    EXPECT_EQ(tested(library, R_OK), ENOENT);
}

TEST(Access, FollowsTheSettingOfThePlatform) {
    Platform platform;
    const Platform::Scope scope(platform);
    EXPECT_EQ(tested(library, R_OK), 0);
    platform.settings().library_present = false;
    EXPECT_EQ(tested(library, R_OK), ENOENT);
}

TEST(Access, LeavesEveryOtherPathToTheKernel) {
    Platform platform;
    const Platform::Scope scope(platform);
    const std::string directory = testing::TempDir() + "access_test." + std::to_string(getpid());
    ASSERT_EQ(mkdir(directory.c_str(), 0700), 0);
    const std::string file = directory + "/file";
    std::ofstream(file) << "text";
    chmod(file.c_str(), 0600);
    EXPECT_EQ(tested(file.c_str(), R_OK | W_OK), 0);
    EXPECT_EQ(tested(file.c_str(), X_OK), EACCES);
    EXPECT_EQ(tested((directory + "/other").c_str(), F_OK), ENOENT);
    EXPECT_EQ(tested((file + "/below").c_str(), F_OK), ENOTDIR);
    EXPECT_EQ(tested("/pkgs/lib/libsysdb.so", R_OK), ENOENT);
    EXPECT_EQ(tested("", F_OK), ENOENT);
    unlink(file.c_str());
    rmdir(directory.c_str());
}

TEST(Access, AnswersANullPathWithAnError) {
    const char *volatile missing = nullptr;
    int (*volatile call)(const char *, int) = &access;
    errno = 0;
    EXPECT_EQ(call(missing, F_OK), -1);
    EXPECT_EQ(errno, EFAULT);
}

TEST(Access, AnswersAllThreadsAlike) {
    Platform platform;
    const Platform::Scope scope(platform);
    std::vector<int> errors(4, -1);
    {
        std::vector<std::jthread> threads;
        for (int &error : errors) {
            threads.emplace_back([&error] {
                error = 0;
                for (int i = 0; i < 1000; ++i) {
                    error |= tested(library, R_OK) | tested("/", F_OK);
                }
            });
        }
    }
    EXPECT_EQ(errors, std::vector<int>(4, 0));
}

} // namespace
} // namespace yfw::platform

// A process that is killed while it applies a commit to a device leaves nothing half changed for good.
#include <csignal>
#include <filesystem>
#include <functional>
#include <ostream>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/error.h"
#include "edit_device.h"
#include "support/files.h"
#include "yang/configuration_text.h"

namespace yfw::device::test {
namespace {

namespace fs = std::filesystem;

const std::string device_with_timer = native_device("<enable>true</enable><timer>45</timer>");
const std::string new_name = config(element("system-name", "new"));

// A device that outlives the processes that change it, and is changed in two steps.
class ALastingDevice final : public sources::NativeTarget {
public:
    explicit ALastingDevice(fs::path file) : file_(std::move(file)) {}

    void check(const lyd_node *, const lyd_node *) override {}
    void apply(const lyd_node *, const lyd_node *after) override {
        yfw::test::write_file(file_, "half");
        half_way();
        restore(after);
    }
    void restore(const lyd_node *configuration) override {
        yfw::test::write_file(file_, yang::print_configuration(configuration));
        restorations++;
    }
    std::optional<std::string> instance() override { return "the only run"; }

    std::string running() const { return yfw::test::read_file(file_); }

    std::function<void()> half_way = [] {};
    int restorations = 0;

private:
    fs::path file_;
};

void kill_this_process() {
    raise(SIGKILL);
}

struct KillCase {
    const char *name;
    std::optional<commits::Step> step; // nothing: while the device is written
};

void PrintTo(const KillCase &test, std::ostream *to) {
    *to << test.name;
}

class AKilledCommit : public testing::TestWithParam<KillCase> {
protected:
    // A process that makes one commit and is killed in the next.
    void SetUp() override {
        const pid_t process = fork();
        ASSERT_GE(process, 0);
        if (process == 0) {
            commit_and_die();
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(process, &status, 0), process);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "ended by itself: " << status;
    }

    const yfw::test::TemporaryDirectory directory;
    ALastingDevice target{directory.path() / "device"};

private:
    void commit_and_die() {
        EditedDevice device{device_with_timer, &target, directory.path()};
        device.edit(config(element("hello-timer", "20")));
        if (const auto step = GetParam().step)
            device.on_step([step](commits::Step reached) {
                if (reached == *step)
                    kill_this_process();
            });
        else
            target.half_way = kill_this_process;
        device.edit(new_name);
    }
};

TEST_P(AKilledCommit, IsFinishedOrUndoneWhenTheNextServerStarts) {
    EditedDevice device{device_with_timer, &target, directory.path()};
    device.device().serve();
    device.device().restore_after_restart();
    EXPECT_TRUE(runs(device, target.running()));
}

TEST_P(AKilledCommit, IsFinishedOrUndoneByTheNextCommitOfAnotherLeaf) {
    EditedDevice device{device_with_timer, &target, directory.path()};
    device.edit(config(element("system-description", "other")));
    EXPECT_TRUE(runs(device, target.running()));
}

TEST_P(AKilledCommit, IsFinishedOrUndoneByTheNextEditThoughItChangesNothing) {
    EditedDevice device{device_with_timer, &target, directory.path()};
    device.edit(config(element("hello-timer", "20")));
    EXPECT_TRUE(runs(device, target.running()));
}

TEST_P(AKilledCommit, IsRepairedOnceOnly) {
    EditedDevice device{device_with_timer, &target, directory.path()};
    device.device().restore_after_restart();
    EXPECT_FALSE(device.device().restore_after_restart());
    device.edit(config(element("system-description", "other")));
    EXPECT_FALSE(device.device().restore_after_restart());
    for (const auto &file : fs::directory_iterator(directory.path()))
        EXPECT_EQ(file.path().string().find("applying"), std::string::npos) << file.path();
}

INSTANTIATE_TEST_SUITE_P(At, AKilledCommit,
                         testing::Values(KillCase{"ItsBeginning", commits::Step::begun},
                                         KillCase{"ItsRead", commits::Step::read},
                                         KillCase{"TheWriteToTheDevice", std::nullopt},
                                         KillCase{"TheEndOfTheWriteToTheDevice", commits::Step::prepared},
                                         KillCase{"TheWriteToTheStore", commits::Step::inserted},
                                         KillCase{"ItsEnd", commits::Step::committed}),
                         [](const auto &test) { return test.param.name; });

TEST(ACommit, ThatIsRefusedByTheDeviceLeavesNothingToRepair) {
    const yfw::test::TemporaryDirectory directory;
    ALastingDevice target{directory.path() / "device"};
    EditedDevice device{device_with_timer, &target, directory.path()};
    device.edit(config(element("hello-timer", "20")));
    target.half_way = [] { throw Error(ErrorTag::operation_failed, "", "the device refuses it"); };
    EXPECT_THROW(device.edit(new_name), Error);
    EXPECT_FALSE(device.device().restore_after_restart());
}

} // namespace
} // namespace yfw::device::test

// Commits take effect both in the store and on the device, or on neither.
#include <csignal>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/error.h"
#include "edit_device.h"
#include "yang/configuration_text.h"

namespace yfw::device::test {
namespace {

using Strings = std::vector<std::string>;

const std::string native = native_device("<enable>true</enable><timer>45</timer>");
const std::string first_edit = config(element("hello-timer", "30"));
const std::string second_edit =
    document(element("config", element("hello-timer", "20") + element("system-name", "x")));

// --- processes that are killed ---

struct StepCase {
    const char *name;
    commits::Step step;
    bool kept;
};

void PrintTo(const StepCase &test, std::ostream *to) {
    *to << test.name;
}

class ACommitKilledAtAStep : public testing::TestWithParam<StepCase> {
protected:
    // What the device runs after the edits, and after the last one if nobody kills it.
    std::string configuration() const {
        return EditedDevice(native, nullptr, directory.path()).configuration();
    }

    static std::string undisturbed(const Strings &edits) {
        EditedDevice device(native);
        for (const std::string &edit : edits)
            device.edit(edit);
        return device.configuration();
    }

    // Runs in a child process.
    void edit_and_die(const std::string &edit) const {
        EditedDevice device(native, nullptr, directory.path());
        device.on_step([](commits::Step step) {
            if (step == GetParam().step)
                raise(SIGKILL);
        });
        device.edit(edit);
    }

    static std::string both(EditedDevice &device) {
        return yang::print_configuration(device.device().running_configuration().openconfig.get()) +
               device.configuration();
    }

    static std::string both_after(const Strings &edits) {
        EditedDevice device(native);
        for (const std::string &edit : edits)
            device.edit(edit);
        return both(device);
    }

    const yfw::test::TemporaryDirectory directory;
};

TEST_P(ACommitKilledAtAStep, LeavesTheConfigurationBeforeOrAfterIt) {
    EXPECT_EXIT(edit_and_die(first_edit), testing::KilledBySignal(SIGKILL), "");
    const std::string before = undisturbed({});
    const std::string after = undisturbed({first_edit});
    const std::string found = configuration();
    EXPECT_TRUE(found == before || found == after) << found;
}

TEST_P(ACommitKilledAtAStep, OfADeviceWithCommitsIsThereOnlyWhenItWasCommitted) {
    EditedDevice(native, nullptr, directory.path()).edit(first_edit);
    EXPECT_EXIT(edit_and_die(second_edit), testing::KilledBySignal(SIGKILL), "");
    EXPECT_EQ(configuration(),
              GetParam().kept ? undisturbed({first_edit, second_edit}) : undisturbed({first_edit}));
}

TEST_P(ACommitKilledAtAStep, IsMadeWhenItIsRepeated) {
    EditedDevice(native, nullptr, directory.path()).edit(first_edit);
    EXPECT_EXIT(edit_and_die(second_edit), testing::KilledBySignal(SIGKILL), "");
    EditedDevice(native, nullptr, directory.path()).edit(second_edit);
    EXPECT_EQ(configuration(), undisturbed({first_edit, second_edit}));
}

// The OpenConfig configuration says more than the native one while settings are held back.
TEST_P(ACommitKilledAtAStep, LeavesTheOpenConfigConfigurationThatTheNativeOneWasMadeOf) {
    const std::string off = config(element("enabled", "false") + element("system-name", "x"));
    const std::string on = config(element("enabled", "true") + element("hello-timer", "20"));
    const Strings all{off, on, first_edit};
    Strings made;
    for (const std::string &edit : all) {
        EXPECT_EXIT(edit_and_die(edit), testing::KilledBySignal(SIGKILL), "");
        if (GetParam().kept)
            made.push_back(edit);
        EditedDevice device(native, nullptr, directory.path());
        EXPECT_EQ(both(device), both_after(made));
        device.edit(edit);
        if (!GetParam().kept)
            made.push_back(edit);
        EXPECT_EQ(both(device), both_after(made));
    }
}

INSTANTIATE_TEST_SUITE_P(Of, ACommitKilledAtAStep,
                         testing::Values(StepCase{"Begun", commits::Step::begun, false},
                                         StepCase{"Read", commits::Step::read, false},
                                         StepCase{"Prepared", commits::Step::prepared, false},
                                         StepCase{"Inserted", commits::Step::inserted, false},
                                         StepCase{"Committed", commits::Step::committed, true}),
                         [](const auto &test) { return test.param.name; });

// --- the device that a configuration takes effect on ---

// Records the configuration it runs, and rejects edits on demand.
class RecordedTarget final : public sources::NativeTarget {
public:
    void check(const lyd_node *, const lyd_node *) override { refuse(refuses_check); }
    void apply(const lyd_node *, const lyd_node *after) override {
        refuse(refuses_apply);
        running = yang::print_configuration(after);
    }
    void restore(const lyd_node *configuration) override { running = yang::print_configuration(configuration); }
    std::optional<std::string> instance() override { return run; }

    bool refuses_check = false;
    bool refuses_apply = false;
    std::string running; // empty until something is applied
    std::string run = "the first";

private:
    static void refuse(bool really) {
        if (really)
            throw Error(ErrorTag::operation_failed, "/lldp/timer", "the device does not want to");
    }
};

class ATarget : public testing::Test {
protected:
    RecordedTarget target;
    EditedDevice device{native, &target};
};

TEST_F(ATarget, RunsWhatIsCommitted) {
    EXPECT_TRUE(device.edit(first_edit).has_value());
    EXPECT_EQ(target.running, device.configuration());
}

TEST_F(ATarget, IsOnlyAskedByADryRun) {
    EXPECT_NE(device.try_edit(first_edit), "");
    EXPECT_EQ(target.running, "");
    target.refuses_check = true;
    EXPECT_THROW(device.try_edit(first_edit), Error);
    EXPECT_EQ(device.commits(), 0U);
}

TEST_F(ATarget, IsLeftAloneWhenNothingChanges) {
    EXPECT_FALSE(device.edit(config(element("hello-timer", "45"))).has_value());
    EXPECT_EQ(target.running, "");
}

TEST_F(ATarget, IsLeftAloneByAnEditThatIsRefused) {
    EXPECT_THROW(device.edit(config(element("hello-timer", "4"))), Error);
    EXPECT_EQ(target.running, "");
}

TEST_F(ATarget, IsNotGivenWhatItRefusesAfterARestart) {
    ASSERT_TRUE(device.edit(first_edit).has_value());
    target.run = "the second";
    target.running = "";
    target.refuses_check = true;
    EXPECT_THROW(device.edit(config(element("hello-timer", "20"))), Error);
    EXPECT_EQ(target.running, "");
    EXPECT_EQ(device.commits(), 2U);
    target.refuses_check = false;
    EXPECT_TRUE(device.edit(config(element("hello-timer", "20"))).has_value());
    EXPECT_EQ(target.running, device.configuration());
}

TEST_F(ATarget, IsRolledBackWithTheStore) {
    device.edit(first_edit);
    device.edit(second_edit);
    device.rollback(1);
    EXPECT_EQ(target.running, device.configuration());
    EXPECT_EQ(device.commits(), 4U);
}

TEST_F(ATarget, ThatRefusesKeepsTheCommitOutOfTheStore) {
    device.edit(first_edit);
    const std::string before = device.configuration();
    target.refuses_apply = true;
    EXPECT_THROW(device.edit(second_edit), Error);
    EXPECT_THROW(device.rollback(0), Error);
    EXPECT_TRUE(runs(device, before));
    EXPECT_EQ(device.commits(), 2U);
    EXPECT_EQ(target.running, before);
}

TEST_F(ATarget, ThatRefusedTakesTheEditWhenItIsRepeated) {
    target.refuses_apply = true;
    EXPECT_THROW(device.edit(first_edit), Error);
    target.refuses_apply = false;
    EXPECT_TRUE(device.edit(first_edit).has_value());
    EXPECT_EQ(target.running, device.configuration());
}

TEST_F(ATarget, RunsWhatItRanWhenTheStoreFailsAfterwards) {
    device.edit(first_edit);
    const std::string before = device.configuration();
    device.on_step([](commits::Step step) {
        if (step == commits::Step::inserted)
            throw commits::StoreError("the disk is full");
    });
    EXPECT_ANY_THROW(device.edit(second_edit));
    device.on_step(nullptr);
    EXPECT_TRUE(runs(device, before));
    EXPECT_EQ(device.commits(), 2U);
    EXPECT_EQ(target.running, before);
}

// --- what changes nothing ---

std::string switched_on(const Strings &interfaces) {
    std::string entries;
    for (const std::string &name : interfaces)
        entries +=
            element("interface", element("name", name) +
                                     element("config", element("name", name) + element("enabled", "true")));
    std::string edit = document(element("config", element("enabled", "true")) + element("interfaces", entries));
    return edit.insert(edit.find(' '), " nc:operation=\"replace\"");
}

TEST(AReplacement, OfInterfacesInAnotherOrderMakesNoCommit) {
    EditedDevice device(native);
    ASSERT_TRUE(device.edit(switched_on({"eth1", "eth2", "eth3"})).has_value());
    EXPECT_FALSE(device.edit(switched_on({"eth3", "eth1", "eth2"})).has_value());
    EXPECT_EQ(device.try_edit(switched_on({"eth2", "eth1", "eth3"})), "");
    EXPECT_TRUE(device.edit(switched_on({"eth2", "eth1"})).has_value());
    EXPECT_EQ(device.commits(), 3U);
}

} // namespace
} // namespace yfw::device::test

// Reads of a device with commits: the configuration of the last commit, whoever made it, and the source's
// state.
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "edit_device.h"
#include "yang/test/instance_text.h"
#include "yang/configuration_text.h"

namespace yfw::device::test {
namespace {

const char *const native =
    R"(<lldp xmlns="urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg"><enable>true</enable></lldp>
<lldp xmlns="urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper"><global-lldp><lldp-info><chassis-id>1</chassis-id>
</lldp-info></global-lldp></lldp>)";

// One reader, and others that commit to the same store.
class ADeviceThatIsReadAgainAndAgain : public testing::Test {
protected:
    ADeviceThatIsReadAgainAndAgain() { source_.xml = native; }

    std::string configuration() {
        const sources::Snapshot now = read_.snapshot(yang::test::schemas().context());
        return now.configuration.has_value() ? yang::test::text_of(**now.configuration) : "";
    }
    static std::string text_of(EditedDevice &device) {
        return yang::test::text_of(
            *yang::instance_forest(device.device().running_configuration().native.get()));
    }
    EditedDevice other() { return EditedDevice(native, nullptr, directory_.path()); }
    std::filesystem::path store() const { return directory_.path() / "commits.db"; }

    const yfw::test::TemporaryDirectory directory_;
    host::test::TextSource source_;
    ConfiguredSource read_{yang::test::schemas(), source_, store()};
};

TEST_F(ADeviceThatIsReadAgainAndAgain, HasItsOwnConfigurationBeforeTheFirstCommit) {
    EXPECT_FALSE(read_.snapshot(yang::test::schemas().context()).configuration.has_value());
}

TEST_F(ADeviceThatIsReadAgainAndAgain, ShowsEachCommitOfAnother) {
    EditedDevice device = other();
    for (const char *name : {"a", "b", "c"}) {
        device.edit(config(element("system-name", name)));
        EXPECT_EQ(configuration(), text_of(device));
        EXPECT_EQ(configuration(), text_of(device)) << "read again";
    }
}

TEST_F(ADeviceThatIsReadAgainAndAgain, ShowsTheStoreThatTookThePlaceOfTheFirst) {
    other().edit(config(element("system-name", "first")));
    const std::string first = configuration();
    for (const char *file : {"commits.db", "commits.db-wal", "commits.db-shm"})
        std::filesystem::remove(directory_.path() / file);
    EditedDevice device = other();
    device.edit(config(element("system-name", "second")));
    EXPECT_NE(configuration(), first);
    EXPECT_EQ(configuration(), text_of(device));
}

TEST_F(ADeviceThatIsReadAgainAndAgain, KeepsTheStateOfTheSource) {
    other().edit(config(element("system-name", "a")));
    const sources::Snapshot now = read_.snapshot(yang::test::schemas().context());
    bool has_state = false;
    for (const yang::InstanceNode *top = now.data->first(); top != nullptr; top = top->next())
        has_state = has_state || (top->schema()->flags & LYS_CONFIG_R) != 0;
    EXPECT_TRUE(has_state);
}

} // namespace
} // namespace yfw::device::test

// Edits while an operation that the plug-in calls fails: the status is reported and the device is unchanged.
#include <algorithm>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/error.h"
#include "edit_device.h"
#include "edit_interposer.h"

namespace yfw::device::test {
namespace {

using Strings = std::vector<std::string>;

constexpr terrno injected = 0x80555500U;

const std::string lldp_on = native_device("<enable>true</enable><timer>45</timer><tlv-select><system-name>"
                                          "<disable>true</disable></system-name></tlv-select>");
const std::string lldp_off = native_device(""); // but not by a setting: that would hold everything else back

// The same, with LLDP off on eth1.
std::string with_eth1_off(std::string native) {
    const std::string on = "<enable>true</enable>";
    return native.replace(native.find(on, native.find("eth1")), on.size(), "<enable>false</enable>");
}

struct Scenario {
    std::string name;
    std::string native;
    std::string edit;
    Strings adds; // in order; a leading "~" where the plug-in ignores the status
};

void PrintTo(const Scenario &scenario, std::ostream *to) {
    *to << scenario.name;
}

class WithFailures : public testing::Test {
protected:
    void SetUp() override { interposer().reset(); }
    void TearDown() override { interposer().reset(); }

    // Makes the edit and checks that a failed one leaves the device unchanged. Returns the error's status;
    // nothing on success.
    static std::optional<uint32_t> edit_or_leave(EditedDevice &device, const std::string &text) {
        const std::string before = device.configuration();
        const size_t commits = device.commits();
        try {
            device.edit(text);
            return std::nullopt;
        } catch (const Error &error) {
            EXPECT_TRUE(runs(device, before));
            EXPECT_LE(device.commits(), std::max<size_t>(commits, 1)) << "a commit was kept";
            return error.status();
        }
    }
};

// --- the adds ---

const std::string entries = "/interface-configurations";
const std::string entry = entries + "/interface-configuration";
const std::string active = "~" + entry + "/active";
const std::string name = entry + "/interface-name";
const std::string enter = "~" + entry + "/lldp/lldp-intf-enter";
const std::string tlv_enter = "~/lldp/tlv-select/tlv-select-enter";
const std::string tlv = "<suppress-tlv-advertisement>types:SYSTEM_NAME</suppress-tlv-advertisement>";

const std::string interface_deleted =
    document("<interfaces><interface nc:operation=\"delete\"><name>eth1</name></interface></interfaces>");

Strings on_eth1(Strings adds) {
    Strings all{entries, entry, active, name};
    all.insert(all.end(), adds.begin(), adds.end());
    return all;
}

Strings of_all_interfaces() {
    Strings all;
    for (int i = 0; i < 3; ++i)
        for (const std::string &add : {entry + "/", entry + "/active", name, entry + "/lldp"})
            all.push_back(add);
    return all;
}

std::vector<Scenario> scenarios() {
    const std::string deleted = " nc:operation=\"delete\"";
    return {
        {"TimerOn", lldp_on, config(element("hello-timer", "30")), {"/lldp/timer"}},
        {"TimerOff", lldp_off, config(element("hello-timer", "30")), {"/lldp/enable", "/lldp/timer"}},
        {"TimerDeleted", lldp_on, config("<hello-timer" + deleted + "/>"), {"/lldp/timer"}},
        {"SystemNameOn", lldp_on, config(element("system-name", "x")), {"/lldp/system-name"}},
        {"SystemNameOff", lldp_off, config(element("system-name", "x")), {"/lldp/enable", "/lldp/system-name"}},
        {"SystemDescriptionOff",
         lldp_off,
         config(element("system-description", "x")),
         {"/lldp/enable", "/lldp/system-description"}},
        {"ChassisOff", lldp_off, config(element("chassis-id", "x")), {"/lldp/enable", "/lldp/chassis-id"}},
        {"ChassisTypeOff",
         lldp_off,
         config(element("chassis-id-type", "LOCAL")),
         {"/lldp/enable", "/lldp/chassis-id-type"}},
        {"EnabledTrue", lldp_off, config(element("enabled", "true")), {"/lldp/enable"}},
        {"EnabledFalse", lldp_on, config(element("enabled", "false")), {"/lldp"}},
        {"EnabledDeleted", lldp_on, config("<enabled" + deleted + "/>"), {"/lldp"}},
        {"TlvOn",
         native_device("<enable>true</enable>"),
         config(tlv),
         {tlv_enter, "/lldp/tlv-select/system-name/disable"}},
        // Only the last add's status counts.
        {"TlvOff", lldp_off, config(tlv), {tlv_enter, "~/lldp/tlv-select/system-name/disable", "/lldp/enable"}},
        {"InterfaceTrueOn", with_eth1_off(lldp_on), eth1(element("enabled", "true")),
         on_eth1({active, enter, entry + "/lldp/enable", entry + "/lldp/transmit", entry + "/lldp/receive"})},
        {"InterfaceFalseOn", lldp_on, eth1(element("enabled", "false")),
         on_eth1({active, enter, entry + "/lldp/enable", entry + "/lldp/transmit/disable",
                  entry + "/lldp/receive/disable"})},
        {"InterfaceTrueOff", with_eth1_off(lldp_off), eth1(element("enabled", "true")),
         on_eth1({active, enter, entry + "/lldp/enable"})},
        {"InterfaceFalseOff", lldp_off, eth1(element("enabled", "false")),
         on_eth1({active, enter, enter, entry + "/lldp/enable"})},
        {"InterfaceEnabledDeleted", lldp_on, eth1("<enabled" + deleted + "/>"), on_eth1({entry + "/lldp"})},
        {"InterfaceDeleted",
         lldp_on,
         interface_deleted,
         {entries, active, "~" + name, entry + "/lldp", entry + "/lldp"}},
        {"TlvDeleted",
         lldp_on,
         config("<suppress-tlv-advertisement" + deleted + ">types:SYSTEM_NAME</suppress-tlv-advertisement>"),
         {tlv_enter, "/lldp/tlv-select/system-name/disable"}},
        {"AllInterfacesDeleted", lldp_on, document("<interfaces" + deleted + "/>"), of_all_interfaces()},
    };
}

// How many adds it takes to read the device's own configuration in OpenConfig terms.
int adds_of_reading(EditedDevice &device) {
    interposer().reset();
    device.device().running_configuration();
    return interposer().calls(Call::add);
}

// An add of the next edit_or_leave() fails, by its number from 0. The configuration is read twice before it: by
// the function itself, and by the edit.
void fail_add(EditedDevice &device, size_t number) {
    const int before = 2 * adds_of_reading(device);
    interposer().reset();
    interposer().fail(Call::add, before + static_cast<int>(number), injected);
}

std::string without_mark(const std::string &add) {
    return add.substr(add.starts_with('~') ? 1 : 0);
}

class AnAddThatFails : public WithFailures, public testing::WithParamInterface<Scenario> {};

TEST_P(AnAddThatFails, IsOneOfTheAddsOfTheEdit) {
    Strings wanted;
    for (const std::string &add : GetParam().adds)
        wanted.push_back(without_mark(add));
    EditedDevice device(GetParam().native);
    interposer().reset();
    device.map(GetParam().edit);
    EXPECT_EQ(interposer().added, wanted);
}

TEST_P(AnAddThatFails, FailsTheEditWithItsStatusAndChangesNothing) {
    for (size_t i = 0; i < GetParam().adds.size(); ++i) {
        SCOPED_TRACE("add " + std::to_string(i) + " " + GetParam().adds[i]);
        EditedDevice device(GetParam().native);
        fail_add(device, i);
        const std::optional<uint32_t> status = edit_or_leave(device, GetParam().edit);
        ASSERT_GT(interposer().calls(Call::add), static_cast<int>(i));
        if (GetParam().adds[i].starts_with('~')) // the host may still reject the outcome
            EXPECT_EQ(status.value_or(0), 0U);
        else
            EXPECT_EQ(status, injected);
    }
}

TEST_P(AnAddThatFails, DoesNotFailTheNextEdit) {
    EditedDevice untouched(GetParam().native);
    untouched.edit(GetParam().edit);
    for (size_t i = 0; i < GetParam().adds.size(); ++i) {
        SCOPED_TRACE("add " + std::to_string(i) + " " + GetParam().adds[i]);
        if (GetParam().adds[i].starts_with('~'))
            continue;
        EditedDevice device(GetParam().native);
        fail_add(device, i);
        edit_or_leave(device, GetParam().edit);
        interposer().reset();
        device.edit(GetParam().edit);
        EXPECT_TRUE(runs(device, untouched.configuration()));
    }
}

TEST_F(WithFailures, ADeletionOfAnInterfaceThatFailsDoesNotReachTheInterfaceOfTheNextEdit) {
    const std::string next = eth1(element("enabled", "false"));
    EditedDevice untouched(lldp_on);
    untouched.edit(next);
    for (size_t nth = 0; nth < 5; ++nth) {
        SCOPED_TRACE("add " + std::to_string(nth));
        EditedDevice device(lldp_on);
        fail_add(device, nth);
        if (edit_or_leave(device, interface_deleted).value_or(0) != injected)
            continue;
        interposer().reset();
        device.edit(next);
        EXPECT_TRUE(runs(device, untouched.configuration()));
    }
}

std::string scenario_name(const testing::TestParamInfo<Scenario> &scenario) {
    return scenario.param.name;
}

INSTANTIATE_TEST_SUITE_P(Of, AnAddThatFails, testing::ValuesIn(scenarios()), scenario_name);

// --- other operations of the contract ---

struct OperationCase {
    const char *name;
    Call call;
};

void PrintTo(const OperationCase &test, std::ostream *to) {
    *to << test.name;
}

class AnOperationThatFails : public WithFailures, public testing::WithParamInterface<OperationCase> {};

TEST_P(AnOperationThatFails, FailsTheEditOfAnInterfaceWithItsStatus) {
    EditedDevice device(lldp_on);
    interposer().fail(GetParam().call, -1, injected);
    EXPECT_EQ(edit_or_leave(device, eth1(element("enabled", "false"))), injected);
    EXPECT_GT(interposer().calls(GetParam().call), 0);
}

INSTANTIATE_TEST_SUITE_P(Being, AnOperationThatFails,
                         testing::Values(OperationCase{"TheCurrentListNode", Call::list_node},
                                         OperationCase{"TheLeafref", Call::leafref}),
                         [](const auto &test) { return test.param.name; });

// --- the system database ---

class AFailingSystemDatabase : public WithFailures, public testing::WithParamInterface<OperationCase> {
protected:
    // The configuration after an edit on a device whose system database fails.
    static std::string after(const std::string &native, const std::string &text, Call call) {
        EditedDevice device(native);
        interposer().reset();
        interposer().fail(call, -1, injected);
        EXPECT_EQ(edit_or_leave(device, text), std::nullopt);
        EXPECT_GT(interposer().calls(call), 0);
        interposer().reset();
        return device.configuration();
    }

    static Strings adds_of(const std::string &native, const std::string &text) {
        EditedDevice device(native);
        interposer().reset();
        device.map(text);
        return interposer().added;
    }

    static std::string after(const std::string &native, const std::string &text) {
        EditedDevice device(native);
        device.edit(text);
        return device.configuration();
    }
};

// When LLDP's status cannot be queried, it counts as off.
TEST_P(AFailingSystemDatabase, LetsAGlobalSettingSwitchLldpOn) {
    const std::string set = config(element("system-name", "x"));
    EXPECT_EQ(after(lldp_off, set, GetParam().call), after(lldp_off, set));
    EditedDevice device(lldp_on);
    interposer().reset();
    interposer().fail(GetParam().call, -1, injected);
    device.map(set);
    EXPECT_EQ(interposer().added, (Strings{"/lldp/enable", "/lldp/system-name"}));
}

TEST_P(AFailingSystemDatabase, LetsASuppressedTlvSwitchLldpOn) {
    EditedDevice device(lldp_on);
    interposer().fail(GetParam().call, -1, injected);
    device.map(config(tlv));
    EXPECT_EQ(interposer().added, (Strings{"/lldp/tlv-select/tlv-select-enter",
                                           "/lldp/tlv-select/system-name/disable", "/lldp/enable"}));
}

TEST_P(AFailingSystemDatabase, LetsAnInterfaceBeSetAsWhileLldpIsOff) {
    for (const char *value : {"true", "false"}) {
        const Strings while_off = adds_of(lldp_off, eth1(element("enabled", value)));
        EditedDevice device(lldp_on);
        interposer().reset();
        interposer().fail(GetParam().call, -1, injected);
        device.map(eth1(element("enabled", value)));
        EXPECT_EQ(interposer().added, while_off);
    }
}

TEST_P(AFailingSystemDatabase, IsNotAskedWhenTheRequestSwitchesLldpOnItself) {
    EditedDevice device(lldp_off);
    interposer().fail(GetParam().call, -1, injected);
    device.map(config(element("enabled", "true") + element("system-name", "x")));
    EXPECT_EQ(interposer().added, (Strings{"/lldp/enable", "/lldp/system-name"}));
    EXPECT_EQ(interposer().calls(GetParam().call), 0);
}

INSTANTIATE_TEST_SUITE_P(Without, AFailingSystemDatabase,
                         testing::Values(OperationCase{"ItsLibrary", Call::library},
                                         OperationCase{"ABinding", Call::bind},
                                         OperationCase{"TheItem", Call::item}),
                         [](const auto &test) { return test.param.name; });

// --- the deletion of all interfaces ---

struct DeletionCase {
    const char *name;
    Call call;
    int nth;
};

void PrintTo(const DeletionCase &test, std::ostream *to) {
    *to << test.name;
}

class ADeletionOfAllInterfaces : public WithFailures, public testing::WithParamInterface<DeletionCase> {
protected:
    static void expect_unchanged(const std::string &text) {
        EditedDevice device(lldp_on);
        const std::string before = device.configuration();
        interposer().fail(GetParam().call, GetParam().nth, injected);
        try {
            device.edit(text);
        } catch (const Error &) {
            // A rejected edit is as good as one without effect.
        }
        EXPECT_GT(interposer().calls(GetParam().call), GetParam().nth);
        EXPECT_TRUE(runs(device, before));
    }
};

TEST_P(ADeletionOfAllInterfaces, ChangesNothing) {
    expect_unchanged(document("<interfaces nc:operation=\"delete\"/>"));
}

TEST_P(ADeletionOfAllInterfaces, AsPartOfAReplaceChangesNothing) {
    const std::string eth9 =
        element("interface", element("name", "eth9") + element("config", element("enabled", "true")));
    expect_unchanged(document("<interfaces nc:operation=\"replace\">" + eth9 + "</interfaces>"));
}

TEST_P(ADeletionOfAllInterfaces, LeavesNoConnectionBehind) {
    EditedDevice device(lldp_on);
    interposer().fail(GetParam().call, GetParam().nth, injected);
    try {
        device.edit(document("<interfaces nc:operation=\"delete\"/>"));
    } catch (const Error &) {
    }
    const int failed_binds = GetParam().call == Call::bind ? 1 : 0;
    EXPECT_EQ(interposer().calls(Call::unbind), interposer().calls(Call::bind) - failed_binds);
    if (GetParam().call == Call::next) {
        EXPECT_EQ(interposer().calls(Call::free_list), 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Without, ADeletionOfAllInterfaces,
                         testing::Values(DeletionCase{"TheLibrary", Call::library, 0},
                                         DeletionCase{"ABinding", Call::bind, 0},
                                         DeletionCase{"AFind", Call::find, 0},
                                         DeletionCase{"TheFirstOfTheList", Call::next, 0},
                                         DeletionCase{"TheSecondOfTheList", Call::next, 1},
                                         DeletionCase{"TheLastOfTheList", Call::next, 2}),
                         [](const auto &test) { return test.param.name; });

} // namespace
} // namespace yfw::device::test

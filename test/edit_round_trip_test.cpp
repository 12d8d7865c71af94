// Every value that can be set: a read shows it, a delete removes it, and a rollback leaves no trace.
#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "edit_device.h"
#include "edit_values.h"
#include "support/native_xml.h"

namespace yfw::test {
namespace {

using Strings = std::vector<std::string>;

struct DeviceCase {
    const char *name;
    std::string (*configuration)();
};

void PrintTo(const DeviceCase &device, std::ostream *to) {
    *to << device.name;
}

const std::string list = "/lldp/interfaces/interface";

// The path of the leaf; for an interface's leaf, on this interface.
std::string instance(const std::string &leaf, const std::string &interface) {
    return leaf.starts_with(list) ? list + "[name='" + interface + "']" + leaf.substr(list.size()) : leaf;
}

// The path as an XPath expression on the OpenConfig data.
std::string xpath(const std::string &path) {
    return "/openconfig-lldp:" + path.substr(1);
}

class ALegalValue : public testing::TestWithParam<std::tuple<DeviceCase, LegalValue>> {
protected:
    static const LegalValue &value() { return std::get<1>(GetParam()); }

    Strings shown() const { return device.values(xpath(path)); }

    const EditedDevice device{std::get<0>(GetParam()).configuration()};
    const std::string path = instance(value().leaf, "eth1");
};

// Switching LLDP off removes its whole global configuration and is tested separately below.
bool switches_off(const LegalValue &value) {
    return value.leaf == "/lldp/config/enabled" && value.text == "false";
}

// Whether the native configuration is byte for byte that of the first commit.
testing::AssertionResult is_as_at_first(const EditedDevice &device) {
    const std::string first = device.run({"show", "0"}).output;
    const std::string now = device.native();
    if (first.ends_with("\nnative configuration:\n" + now))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "at first:\n" << first << "now:\n" << now;
}

class AValueThatTheDeviceHolds : public ALegalValue {};

TEST_P(AValueThatTheDeviceHolds, IsShownWhenItIsSetAndNotWhenItIsDeletedAndRollsBackByteForByte) {
    const std::string before = device.openconfig();
    // An interface is only shown as off while LLDP is on.
    if (value().leaf.starts_with(list)) {
        EXPECT_EQ(device.set("/lldp/config/enabled", "true").status, 0);
    }
    const Outcome set = device.set(path, value().text);
    EXPECT_EQ(set.status, 0);
    EXPECT_EQ(set.errors, "");
    const Strings values = shown();
    EXPECT_EQ(std::count(values.begin(), values.end(), value().canonical), 1) << testing::PrintToString(values);

    expect_committed(device.erase(path));
    EXPECT_EQ(shown(), Strings{});

    EXPECT_EQ(device.run({"rollback", "0"}).status, 0);
    EXPECT_EQ(device.openconfig(), before);
    EXPECT_TRUE(is_as_at_first(device));
}

class AValueThatTheDeviceCannotHold : public ALegalValue {};

TEST_P(AValueThatTheDeviceCannotHold, IsRefusedWithNothingChanged) {
    expect_committed(device.set("/lldp/config/system-name", "named"));
    const DeviceState before = device.state();
    expect_refused(device.set(path, value().text), {value().leaf}, "invalid-value");
    EXPECT_EQ(device.state(), before);
}

std::vector<LegalValue> values_that(bool hold) {
    std::vector<LegalValue> found;
    for (const LegalValue &value : legal_values())
        if (value.native_holds_it == hold && !switches_off(value))
            found.push_back(value);
    return found;
}

std::string test_name(const testing::TestParamInfo<std::tuple<DeviceCase, LegalValue>> &test) {
    return std::string(std::get<0>(test.param).name) + "_" + std::get<1>(test.param).name;
}

const auto devices = testing::Values(DeviceCase{"OnAConfiguredDevice", configured_device},
                                     DeviceCase{"OnAnEmptyDevice", empty_device});

INSTANTIATE_TEST_SUITE_P(All, AValueThatTheDeviceHolds,
                         testing::Combine(devices, testing::ValuesIn(values_that(true))), test_name);
INSTANTIATE_TEST_SUITE_P(All, AValueThatTheDeviceCannotHold,
                         testing::Combine(devices, testing::ValuesIn(values_that(false))), test_name);

TEST(TheLegalValues, AreOfEveryLeafThatCanBeSet) {
    Strings leaves = settable_leaves();
    std::erase(leaves, "/lldp/interfaces/interface/config/name");
    EXPECT_EQ(leaves.size(), 8U);
    const std::vector<LegalValue> values = legal_values();
    for (const std::string &leaf : leaves)
        EXPECT_GE(std::count_if(values.begin(), values.end(), [&](const auto &v) { return v.leaf == leaf; }), 2)
            << leaf;
    EXPECT_GT(values_that(false).size(), 0U);
}

// --- switching off ---

TEST(SwitchingLldpOff, KeepsEverySettingThoughTheDeviceLosesTheGlobalOnes) {
    const EditedDevice device{configured_device()};
    const Strings before = device.values("/openconfig-lldp:lldp/config/*");
    const std::string interfaces = device.openconfig("/lldp/interfaces");
    expect_committed(device.set("/lldp/config/enabled", "false"));
    Strings after = before;
    after.front() = "false";
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/*"), after);
    EXPECT_EQ(device.openconfig("/lldp/interfaces"), interfaces);
    EXPECT_EQ(device.native().find("<timer>"), std::string::npos);
    expect_committed(device.set("/lldp/config/enabled", "true"));
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/*"), before);
    EXPECT_NE(device.native().find("<timer>45</timer>"), std::string::npos);
}

TEST(SwitchingLldpOff, RollsBackByteForByte) {
    const EditedDevice device{configured_device()};
    const std::string before = device.openconfig();
    expect_committed(device.run({"commit", "--", "set", "/lldp/config/enabled", "false"}));
    expect_committed(device.run({"rollback", "0"}));
    EXPECT_EQ(device.openconfig(), before);
    EXPECT_TRUE(is_as_at_first(device));
}

TEST(SeveralSuppressedTlvs, AreAllShown) {
    const EditedDevice device{empty_device()};
    const std::string path = "/lldp/config/suppress-tlv-advertisement";
    for (const char *tlv : {"MANAGEMENT_ADDRESS", "SYSTEM_NAME"})
        expect_committed(device.set(path, tlv));
    EXPECT_EQ(device.values(xpath(path)),
              (Strings{"openconfig-lldp-types:MANAGEMENT_ADDRESS", "openconfig-lldp-types:SYSTEM_NAME"}));
    EXPECT_NE(device.native().find("<system-name>"), std::string::npos);
}

TEST(ATlv, IsNamedWithOrWithoutItsModule) {
    const EditedDevice device{empty_device()};
    const std::string path = "/lldp/config/suppress-tlv-advertisement";
    expect_committed(device.set(path, "SYSTEM_NAME"));
    EXPECT_EQ(device.set(path, "openconfig-lldp-types:SYSTEM_NAME").output, "nothing changes\n");
}

TEST(AnInterfaceSwitchedOffWhileLldpIsOff, IsShownAsItWasSet) {
    const EditedDevice device{switched_off_device()};
    expect_committed(device.set(list + "[name='eth1']/config/enabled", "false"));
    const std::string values = "/openconfig-lldp:lldp/interfaces/interface/config/*";
    EXPECT_EQ(device.values(values), (Strings{"eth1", "false", "eth2", "true"}));
    expect_committed(device.set("/lldp/config/enabled", "true"));
    EXPECT_EQ(device.values(values), (Strings{"eth1", "false", "eth2", "true"}));
}

TEST(AGlobalSetting, IsHeldBackWhereLldpIsSwitchedOff) {
    const EditedDevice device{switched_off_device()};
    expect_committed(device.set("/lldp/config/system-name", "router"));
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/*"), (Strings{"false", "router"}));
    EXPECT_EQ(device.native().find("router"), std::string::npos);
}

TEST(AGlobalSetting, SwitchesLldpOnWhereNothingIsConfigured) {
    const EditedDevice device{empty_device()};
    expect_committed(device.set("/lldp/config/system-name", "router"));
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/*"), Strings{"router"});
    EXPECT_NE(device.native().find("<enable>true</enable>"), std::string::npos);
}

// --- interface names ---

class AnInterfaceName : public testing::TestWithParam<std::string> {
protected:
    // Quoted with a kind of quotes that the name does not contain.
    std::string entry() const {
        const char quote = GetParam().find('\'') == std::string::npos ? '\'' : '"';
        return list + "[name=" + quote + GetParam() + quote + "]";
    }

    Strings names() const { return device.values("/openconfig-lldp:lldp/interfaces/interface/name"); }
    Strings twins() const { return device.values("/openconfig-lldp:lldp/interfaces/interface/config/name"); }

    const EditedDevice device{empty_device()};
};

TEST_P(AnInterfaceName, IsShownWhenItsInterfaceIsSetAndNotWhenItIsDeleted) {
    expect_committed(device.set(entry() + "/config/enabled", "true"));
    EXPECT_EQ(names(), Strings{GetParam()});
    EXPECT_EQ(twins(), Strings{GetParam()});
    expect_committed(device.erase(entry()));
    EXPECT_EQ(names(), Strings{});
}

TEST_P(AnInterfaceName, IsSetAsItsTwinToTheSame) {
    expect_committed(device.set(entry() + "/config/enabled", "true"));
    const DeviceState before = device.state();
    EXPECT_EQ(device.set(entry() + "/config/name", GetParam()).status, 0);
    EXPECT_EQ(device.state(), before);
}

TEST_P(AnInterfaceName, CannotBeSetAsItsTwinToAnother) {
    expect_committed(device.set(entry() + "/config/enabled", "true"));
    const DeviceState before = device.state();
    const Outcome outcome = device.set(entry() + "/config/name", "another");
    EXPECT_NE(outcome.status, 0);
    EXPECT_NE(outcome.errors.find("/lldp/interfaces/interface"), std::string::npos) << outcome.errors;
    EXPECT_EQ(device.state(), before);
}

INSTANTIATE_TEST_SUITE_P(Of, AnInterfaceName,
                         testing::Values("eth1", "GigabitEthernet0/0/0/1.100", "a b", "it's", "\"quoted\"",
                                         "a_b%c", "<&>", "Zürich", "x[y]", "a=b", std::string(200, 'n')));

TEST(TheTwinOfAnInterfaceName, StaysWhenItIsDeletedAlone) {
    const EditedDevice device{configured_device()};
    const std::string before = device.openconfig();
    EXPECT_EQ(device.erase(list + "[name='eth1']/config/name").status, 0);
    EXPECT_EQ(device.openconfig(), before);
}

} // namespace
} // namespace yfw::test

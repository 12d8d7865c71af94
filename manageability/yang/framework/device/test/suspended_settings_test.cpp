// Settings that are held back while LLDP is switched off: validated like all others, out of force, and back
// with the switch.
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/error.h"
#include "edit_device.h"
#include "yang/configuration_text.h"

namespace yfw::device::test {
namespace {

const std::string native = native_device("<enable>true</enable><timer>45</timer>");
const std::string off = element("enabled", "false");
const std::string on = element("enabled", "true");

std::string suppressed(const std::string &tlv) {
    return element("suppress-tlv-advertisement", "types:" + tlv);
}

// Refuses configurations with a certain text in them, and records what it runs.
class ChoosyTarget final : public sources::NativeTarget {
public:
    void check(const lyd_node *before, const lyd_node *after) override {
        const bool is_new = yang::print_configuration(before).find(refused) == std::string::npos;
        if (is_new && yang::print_configuration(after).find(refused) != std::string::npos)
            throw Error(ErrorTag::operation_not_supported, place, "the device cannot do it");
    }
    void apply(const lyd_node *before, const lyd_node *after) override {
        check(before, after);
        running = yang::print_configuration(after);
    }
    void restore(const lyd_node *configuration) override { running = yang::print_configuration(configuration); }

    std::string refused = "<chassis-id-type>mac-address";
    std::string place = "/Tarvo-QD-ethernet-lldp-cfg:lldp/chassis-id-type";
    std::string running; // empty until something is applied
};

size_t count_of(const std::string &word, const std::string &text) {
    size_t count = 0;
    for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
        count++;
    return count;
}

std::string error_path(const std::function<void()> &work) {
    try {
        work();
    } catch (const Error &error) {
        return error.path();
    }
    return "accepted";
}

// --- what is refused while LLDP is on is refused while it is off ---

struct RefusedCase {
    const char *name;
    std::string leaf;
    std::string path;
};

void PrintTo(const RefusedCase &test, std::ostream *to) {
    *to << test.name;
}

class ARefusedSetting : public testing::TestWithParam<RefusedCase> {
protected:
    ChoosyTarget target;
    EditedDevice device{native, &target};
};

TEST_P(ARefusedSetting, IsRefusedWhileLldpIsOn) {
    EXPECT_EQ(error_path([&] { device.edit(config(GetParam().leaf)); }), GetParam().path);
}

TEST_P(ARefusedSetting, IsRefusedWhileLldpIsOff) {
    device.edit(config(off));
    const std::string before = device.configuration();
    EXPECT_EQ(error_path([&] { device.edit(config(GetParam().leaf)); }), GetParam().path);
    EXPECT_EQ(error_path([&] { device.try_edit(config(GetParam().leaf)); }), GetParam().path);
    EXPECT_TRUE(runs(device, before));
    EXPECT_EQ(device.commits(), 2U);
}

TEST_P(ARefusedSetting, IsRefusedInTheCommitThatSwitchesLldpOff) {
    EXPECT_EQ(error_path([&] { device.edit(config(off + GetParam().leaf)); }), GetParam().path);
    EXPECT_EQ(device.commits(), 0U);
}

TEST_P(ARefusedSetting, OfACandidateIsRefusedAtTheLatestByItsCommit) {
    device.edit(config(off));
    const auto commit_candidate = [&] {
        const yang::EditNode edit =
            yang::parse_edit(yang::test::schemas(), config(GetParam().leaf), yang::Operation::merge);
        const Configuration candidate = device.device().apply(edit, device.device().running_configuration());
        device.device().commit(candidate, "", {.who = "test", .comment = ""});
    };
    EXPECT_NE(error_path(commit_candidate), "accepted");
    EXPECT_EQ(device.commits(), 2U);
}

INSTANTIATE_TEST_SUITE_P(
    Of, ARefusedSetting,
    testing::Values(RefusedCase{"ATimerBelowTheRange", element("hello-timer", "3"), "/lldp/config/hello-timer"},
                    RefusedCase{"ATimerAboveTheRange", element("hello-timer", "70000"),
                                "/lldp/config/hello-timer"},
                    RefusedCase{"ATlvThatCannotBeSuppressed", suppressed("CHASSIS_ID"),
                                "/lldp/config/suppress-tlv-advertisement"},
                    RefusedCase{"WhatTheDeviceCannotDo", element("chassis-id-type", "MAC_ADDRESS"),
                                "/lldp/config/chassis-id-type"}),
    [](const auto &test) { return test.param.name; });

// --- what is accepted while LLDP is off ---

class ADeviceThatIsSwitchedOff : public testing::Test {
protected:
    ADeviceThatIsSwitchedOff() { device.edit(config(off)); }

    ChoosyTarget target;
    EditedDevice device{native, &target};
};

TEST_F(ADeviceThatIsSwitchedOff, RunsWhatWasSetMeanwhileWhenItIsSwitchedOn) {
    device.edit(config(element("hello-timer", "20") + suppressed("SYSTEM_NAME")));
    EXPECT_EQ(target.running.find("<timer>"), std::string::npos);
    device.edit(config(on));
    EXPECT_NE(target.running.find("<timer>20</timer>"), std::string::npos) << target.running;
    EXPECT_NE(target.running.find("<disable>true</disable>"), std::string::npos) << target.running;
}

TEST_F(ADeviceThatIsSwitchedOff, KeepsASettingThatItsDeviceRefusesSince) {
    device.edit(config(element("system-name", "x")));
    target.refused = "<system-name>x";
    target.place = "/Tarvo-QD-ethernet-lldp-cfg:lldp/system-name";
    EXPECT_TRUE(device.edit(config(element("hello-timer", "20"))).has_value()) << "it was there before";
    EXPECT_EQ(error_path([&] { device.edit(config(on)); }), "/lldp/config/system-name");
    EXPECT_TRUE(device.edit(config("<system-name nc:operation=\"delete\"/>")).has_value());
    EXPECT_TRUE(device.edit(config(on)).has_value());
}

// --- interfaces ---

struct OrderCase {
    const char *name;
    std::vector<std::string> edits;
};

void PrintTo(const OrderCase &test, std::ostream *to) {
    *to << test.name;
}

class AnInterface : public testing::TestWithParam<OrderCase> {};

TEST_P(AnInterface, RunsNothingWhileLldpIsOffInWhateverOrderItWasSet) {
    ChoosyTarget target;
    EditedDevice device{native, &target};
    for (const std::string &edit : GetParam().edits)
        device.edit(edit);
    EXPECT_EQ(target.running.find("<enable>"), std::string::npos) << target.running;
    device.edit(config(on));
    EXPECT_EQ(count_of("<enable>true</enable>", target.running), 3U) << target.running;
    EXPECT_EQ(count_of("<enable>false</enable>", target.running), 1U) << target.running;
}

const std::string eth1_off = element("enabled", "false");

INSTANTIATE_TEST_SUITE_P(
    SetToFalse, AnInterface,
    testing::Values(OrderCase{"BeforeLldp", {eth1(eth1_off), config(off)}},
                    OrderCase{"AfterLldp", {config(off), eth1(eth1_off)}},
                    OrderCase{"BeforeAndAfterLldp", {eth1(on), config(off), eth1(eth1_off)}},
                    OrderCase{"WithLldp",
                              {document(element("config", off) +
                                        element("interfaces",
                                                element("interface", element("name", "eth1") +
                                                                         element("config", eth1_off))))}},
                    OrderCase{"BeforeLldpIsSwitchedOffAndOnAndOff",
                              {eth1(eth1_off), config(off), config(on), config(off)}}),
    [](const auto &test) { return test.param.name; });

// --- interfaces whose removal the mapping does not map ---

std::string entry(const std::string &name, const std::string &content) {
    return document(element("interfaces", "<interface>" + element("name", name) + content + "</interface>"));
}

class AnInterfaceThatTheMappingDoesNotRemove : public testing::TestWithParam<const char *> {
protected:
    std::string name = GetParam();
    ChoosyTarget target;
};

TEST_P(AnInterfaceThatTheMappingDoesNotRemove, RunsNothingWhileLldpIsOff) {
    EditedDevice device{native, &target};
    device.edit(config(on));
    device.edit(entry(name, element("config", on)));
    EXPECT_EQ(count_of("<enable>true</enable>", target.running), 5U) << target.running;
    device.edit(config(off));
    EXPECT_EQ(target.running.find("<enable>"), std::string::npos) << target.running;
    device.edit(config(on));
    EXPECT_EQ(count_of("<enable>true</enable>", target.running), 5U) << target.running;
}

TEST_P(AnInterfaceThatTheMappingDoesNotRemove, RunsNothingWhileLldpIsOffThoughNobodyEditedIt) {
    std::string given = native;
    given.replace(given.find("eth2"), 4, name);
    EditedDevice device{given, &target};
    device.edit(config(off));
    EXPECT_EQ(target.running.find("<enable>"), std::string::npos) << target.running;
}

TEST_P(AnInterfaceThatTheMappingDoesNotRemove, IsGoneWhenItWasDeletedWhileLldpIsOff) {
    EditedDevice device{native, &target};
    device.edit(entry(name, element("config", on)));
    device.edit(config(off));
    device.edit(document(
        element("interfaces", "<interface nc:operation=\"delete\">" + element("name", name) + "</interface>")));
    device.edit(config(on));
    EXPECT_EQ(count_of("<enable>true</enable>", target.running), 4U) << target.running;
}

INSTANTIATE_TEST_SUITE_P(Named, AnInterfaceThatTheMappingDoesNotRemove,
                         testing::Values("macsec0", "Optics0/0", "CoherentDSP0/0"), [](const auto &test) {
                             const std::string name = test.param;
                             return name.substr(0, name.find('0'));
                         });

TEST(NativeSettings, OfInterfacesAreTheSameWhateverWasSwitchedOffFirst) {
    EditedDevice one{native};
    one.edit(eth1(off));
    one.edit(config(off));
    const std::string interface_first = one.configuration();
    EditedDevice other{native};
    other.edit(config(off));
    other.edit(eth1(off));
    EXPECT_TRUE(runs(other, interface_first));
    EXPECT_EQ(interface_first.find("lldp-intf-enter"), std::string::npos) << interface_first;
}

} // namespace
} // namespace yfw::device::test

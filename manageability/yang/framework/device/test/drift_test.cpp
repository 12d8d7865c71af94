// What a device does not do as it was configured.
#include <chrono>
#include <future>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "device/drift_keeper.h"
#include "edit_device.h"
#include "yang/configuration_text.h"

namespace yfw::device::test {
namespace {

using Strings = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string native = native_device("<enable>true</enable><timer>45</timer>");
const std::string without_settings = "<lldp xmlns=\"" + std::string(host::test::cfg_ns) + "\"/>";
const std::string off = element("enabled", "false");
const std::string on = element("enabled", "true");

std::string suppressed(const Strings &tlvs) {
    std::string leaves;
    for (const std::string &tlv : tlvs)
        leaves += element("suppress-tlv-advertisement", "types:" + tlv);
    return leaves;
}

std::string interface(const std::string &name, const std::string &leaf) {
    return document(
        element("interfaces", element("interface", element("name", name) + element("config", leaf))));
}

Strings drift_of(EditedDevice &device) {
    Strings lines;
    for (const Drift &one : device.device().drift())
        lines.push_back(one.path + ": " + one.configured.value_or("nothing") + ", " +
                        one.applied.value_or("nothing") + (one.reason.empty() ? "" : ", " + one.reason));
    return lines;
}

// --- a recorded device ---

struct EditCase {
    const char *name;
    Strings edits;
};

void PrintTo(const EditCase &test, std::ostream *to) {
    *to << test.name;
}

class ACommitThatTookEffect : public testing::TestWithParam<EditCase> {};

TEST_P(ACommitThatTookEffect, LeavesNoDrift) {
    for (const std::string &start : {native, without_settings}) {
        EditedDevice device{start};
        for (const std::string &edit : GetParam().edits)
            device.edit(edit);
        Strings drift = drift_of(device);
        std::erase_if(drift, [](const std::string &line) { return line.ends_with(" is false"); }); // held back
        EXPECT_THAT(drift, IsEmpty()) << start;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, ACommitThatTookEffect,
    testing::Values(EditCase{"TheSwitch", {config(on)}}, EditCase{"TheSwitchToFalse", {config(off)}},
                    EditCase{"SeveralTlvs",
                             {config(suppressed({"SYSTEM_NAME", "PORT_DESCRIPTION", "MANAGEMENT_ADDRESS"}))}},
                    EditCase{"Texts",
                             {config(element("system-name", "a") + element("system-description", "b") +
                                     element("chassis-id", "c"))}},
                    EditCase{"AChassisIdWithItsType",
                             {config(element("chassis-id", "c") + element("chassis-id-type", "LOCAL"))}},
                    EditCase{"AnInterface", {eth1(off)}},
                    EditCase{"AnInterfaceThatTheMappingDoesNotRead", {interface("Optics0/0/0/1", on)}},
                    EditCase{"ATimerThatIsDeleted",
                             {config(element("hello-timer", "9")),
                              config("<hello-timer nc:operation=\"delete\"/>")}}),
    [](const auto &test) { return test.param.name; });

TEST(ASettingThatIsHeldBack, IsDriftWithTheReason) {
    EditedDevice device{native};
    device.edit(config(off + element("system-name", "x")));
    const std::string because = "/lldp/config/enabled is false";
    EXPECT_THAT(drift_of(device), testing::IsSupersetOf({"/lldp/config/hello-timer: 45, nothing, " + because,
                                                         "/lldp/config/system-name: x, nothing, " + because}));
    device.edit(config(on));
    EXPECT_THAT(drift_of(device), IsEmpty());
}

// --- a device that has values of its own where none is configured, like a daemon ---

class ADaemon final : public sources::NativeTarget {
public:
    explicit ADaemon(EditedDevice *&device) : device_(device) {}

    void check(const lyd_node *, const lyd_node *) override {}
    void apply(const lyd_node *, const lyd_node *after) override { restore(after); }
    void restore(const lyd_node *configuration) override { device_->source().xml = told(configuration); }
    std::vector<sources::PendingSetting> pending(const lyd_node *) override { return would_change; }
    std::optional<yang::DataTree> as_read(const ly_ctx *, const lyd_node *configuration) override {
        return yang::parse_configuration(yang::test::schemas(), told(configuration), "test");
    }

    std::vector<sources::PendingSetting> would_change;

private:
    // A timer of its own, and a type for every chassis id.
    static std::string told(const lyd_node *configuration) {
        std::string text = yang::print_configuration(configuration);
        const auto add = [&](const std::string &unless, const std::string &leaf) {
            if (text.find(unless) == std::string::npos && text.find("</lldp>") != std::string::npos)
                text.insert(text.find("</lldp>"), leaf);
        };
        add("<timer>", element("timer", "30"));
        if (text.find("<chassis-id>") != std::string::npos)
            add("<chassis-id-type>", element("chassis-id-type", "local"));
        return text;
    }

    EditedDevice *&device_;
};

class ADeviceWithValuesOfItsOwn : public testing::Test {
protected:
    EditedDevice *there = nullptr;
    ADaemon daemon{there};
    EditedDevice device{without_settings, &daemon};

    void SetUp() override { there = &device; }
};

TEST_F(ADeviceWithValuesOfItsOwn, HasNoDriftBecauseOfThem) {
    device.edit(config(on + element("chassis-id", "rack 4")));
    EXPECT_THAT(drift_of(device), IsEmpty());
}

TEST_F(ADeviceWithValuesOfItsOwn, HasDriftWhereSomebodyElseChangedThem) {
    device.edit(config(on + suppressed({"SYSTEM_NAME"})));
    std::string &xml = device.source().xml;
    xml.replace(xml.find("<timer>30"), 9, "<timer>60");
    xml.insert(xml.find("<tlv-select>") + 12, element("management-address", element("disable", "true")) +
                                                  element("system-capabilities", element("disable", "true")));
    EXPECT_THAT(drift_of(device),
                testing::UnorderedElementsAre(
                    "/lldp/config/hello-timer: nothing, 60",
                    "/lldp/config/suppress-tlv-advertisement[.='openconfig-lldp-types:MANAGEMENT_ADDRESS']: "
                    "nothing, openconfig-lldp-types:MANAGEMENT_ADDRESS",
                    "/lldp/config/suppress-tlv-advertisement[.='openconfig-lldp-types:SYSTEM_CAPABILITIES']: "
                    "nothing, openconfig-lldp-types:SYSTEM_CAPABILITIES"));
}

const std::string native_lldp = "/Tarvo-QD-ethernet-lldp-cfg:lldp/";

std::string of_eth(const std::string &number) {
    return "/Tarvo-QD-ifmgr-cfg:interface-configurations/interface-configuration[active='act']"
           "[interface-name='eth" +
           number + "']/Tarvo-QD-ethernet-lldp-cfg:lldp/transmit/disable";
}

TEST_F(ADeviceWithValuesOfItsOwn, HasDriftThatNoReadTells) {
    device.edit(config(on));
    daemon.would_change = {{native_lldp + "chassis-id", std::nullopt, ""}, {of_eth("1"), std::nullopt, "true"}};
    EXPECT_THAT(drift_of(device),
                ElementsAre(native_lldp + "chassis-id: nothing, ", of_eth("1") + ": nothing, true"));
}

TEST_F(ADeviceWithValuesOfItsOwn, HasNoDriftTwice) {
    device.edit(config(on + element("system-name", "ours")));
    device.edit(eth1(on));
    std::string &xml = device.source().xml;
    xml.replace(xml.find("ours"), 4, "theirs");
    const size_t entry = xml.find("eth1");
    xml.replace(xml.find("<enable>true", entry), 12, "<enable>false");
    daemon.would_change = {{native_lldp + "system-name", "ours", "theirs"},
                           {of_eth("1"), std::nullopt, "true"},
                           {of_eth("2"), std::nullopt, "true"}};
    EXPECT_THAT(drift_of(device), testing::UnorderedElementsAre(
                                      "/lldp/config/system-name: ours, theirs",
                                      "/lldp/interfaces/interface[name='eth1']/config/enabled: true, false",
                                      of_eth("2") + ": nothing, true"));
}

// --- a server that keeps the last commit applied ---

class CountedChanges final : public events::Observer {
public:
    void changed(const events::ConfigurationChange &) override { count++; }
    void changed(const events::ConfirmedCommit &) override { count++; }
    int count = 0;
};

TEST_F(ADeviceWithValuesOfItsOwn, IsPutRightByAServerWhoseConfigurationDoesNotChange) {
    device.edit(config(on + element("system-name", "ours")));
    std::string &xml = device.source().xml;
    xml.replace(xml.find("ours"), 4, "theirs");
    Service service(device.device());
    CountedChanges changes;
    service.events().add(changes);
    std::promise<Strings> put_right;
    std::string said;
    {
        const DriftKeeper keeper(
            service, std::chrono::milliseconds(5), [&](const std::string &text) { said += text; },
            [&](const Strings &paths) { put_right.set_value(paths); });
        std::future<Strings> paths = put_right.get_future();
        ASSERT_EQ(paths.wait_for(std::chrono::seconds(20)), std::future_status::ready);
        EXPECT_THAT(paths.get(), ElementsAre("/lldp/config/system-name"));
    }
    service.events().remove(changes);
    EXPECT_EQ(changes.count, 0);
    EXPECT_THAT(said, testing::HasSubstr("/lldp/config/system-name"));
    EXPECT_THAT(xml, testing::HasSubstr("ours"));
    EXPECT_EQ(device.commits(), 2U);
}

} // namespace
} // namespace yfw::device::test

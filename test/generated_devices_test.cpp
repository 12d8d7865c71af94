// Generated devices: every combination of a few settings, times relative to the clock, and random neighbor
// tables.
#include <array>
#include <chrono>
#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <time.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "random_neighbors.h"
#include "support/answers.h"
#include "support/child_process.h"
#include "support/files.h"
#include "support/native_xml.h"

namespace yfw::test {
namespace {

using Strings = std::vector<std::string>;
using std::chrono::milliseconds;
using std::chrono::seconds;

const std::string lldp = "/openconfig-lldp:lldp";

class AGeneratedDevice : public testing::Test {
protected:
    Outcome read(const std::string &native, const Strings &paths, const std::string &timezone = "UTC0") const {
        Invocation invocation{.arguments = {"get", "--native", directory_.add("native.xml", native)},
                              .timezone = timezone};
        invocation.arguments.insert(invocation.arguments.end(), paths.begin(), paths.end());
        return run_yfw(invocation);
    }

    Tree answer(const Outcome &outcome) const {
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        return parse_printed(modules_.get(), Format::json, outcome.output);
    }

    const TemporaryDirectory directory_;
    const Context modules_ = openconfig_modules();
};

// In ascending precedence in the configuration.
struct SelectableTlv {
    const char *native;
    const char *identity;
};
constexpr std::array<SelectableTlv, 5> selectable_tlvs{{{"system-name", "SYSTEM_NAME"},
                                                        {"port-description", "PORT_DESCRIPTION"},
                                                        {"system-description", "SYSTEM_DESCRIPTION"},
                                                        {"system-capabilities", "SYSTEM_CAPABILITIES"},
                                                        {"management-address", "MANAGEMENT_ADDRESS"}}};

class SuppressedTlvs : public AGeneratedDevice,
                       public testing::WithParamInterface<std::tuple<unsigned, bool>> {};

TEST_P(SuppressedTlvs, AreTheLastOfThemInTheConfigurationAndAllInTheStateAndCountAsEnabled) {
    const auto [suppressed, others_are_written] = GetParam();
    std::string selection;
    Strings last;
    Strings all;
    for (std::size_t i = 0; i < selectable_tlvs.size(); ++i) {
        const bool disabled = ((suppressed >> i) & 1U) != 0;
        if (disabled) {
            last = {std::string("openconfig-lldp-types:") + selectable_tlvs[i].identity};
            all.push_back(last.front());
        }
        if (disabled || others_are_written)
            selection += element(selectable_tlvs[i].native, element("disable", disabled ? "true" : "false"));
    }
    const Outcome outcome = read(native_configuration(element("tlv-select", selection)), {"/lldp"});
    EXPECT_EQ(outcome.errors, "");
    const Tree tree = answer(outcome);
    EXPECT_EQ(values_at(tree.get(), lldp + "/config/suppress-tlv-advertisement"), last);
    EXPECT_THAT(values_at(tree.get(), lldp + "/state/suppress-tlv-advertisement"),
                testing::UnorderedElementsAreArray(all));
    EXPECT_EQ(values_at(tree.get(), lldp + "/config/enabled"), all.empty() ? Strings{} : Strings{"true"});
    EXPECT_EQ(values_at(tree.get(), lldp + "/state/enabled"), Strings{all.empty() ? "false" : "true"});
}

INSTANTIATE_TEST_SUITE_P(Combination, SuppressedTlvs,
                         testing::Combine(testing::Range(0U, 1U << selectable_tlvs.size()), testing::Bool()));

struct Kind {
    const char *native;
    const char *openconfig;
};

class AConfiguredChassisIdType : public AGeneratedDevice, public testing::WithParamInterface<Kind> {};

TEST_P(AConfiguredChassisIdType, IsSpelledTheOpenConfigWayAndHasNoState) {
    const Outcome outcome =
        read(native_configuration(element("chassis-id-type", GetParam().native)), {"/lldp"});
    EXPECT_EQ(outcome.errors, "");
    const Tree tree = answer(outcome);
    EXPECT_EQ(values_at(tree.get(), lldp + "/config/chassis-id-type"), Strings{GetParam().openconfig});
    EXPECT_EQ(values_at(tree.get(), lldp + "/state/enabled"), Strings{"false"});
    EXPECT_EQ(values_at(tree.get(), lldp + "/state/*").size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Kind, AConfiguredChassisIdType,
                         testing::Values(Kind{"chassis-component", "CHASSIS_COMPONENT"},
                                         Kind{"interface-alias", "INTERFACE_ALIAS"},
                                         Kind{"port-component", "PORT_COMPONENT"},
                                         Kind{"mac-address", "MAC_ADDRESS"},
                                         Kind{"network-address", "NETWORK_ADDRESS"},
                                         Kind{"interface-name", "INTERFACE_NAME"}, Kind{"local", "LOCAL"}));

milliseconds now() {
    return std::chrono::floor<milliseconds>(std::chrono::system_clock::now().time_since_epoch());
}

seconds since_boot(clockid_t clock) {
    timespec stamp{};
    clock_gettime(clock, &stamp);
    return seconds(stamp.tv_sec);
}

// Milliseconds since 1970 of a date-and-time with milliseconds and an offset.
milliseconds moment(const std::string &text) {
    tm parts{};
    int thousandths = 0;
    char sign = '+';
    int hours = 0;
    int minutes = 0;
    const int fields =
        std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d.%3d%c%d:%d", &parts.tm_year, &parts.tm_mon, &parts.tm_mday,
                    &parts.tm_hour, &parts.tm_min, &parts.tm_sec, &thousandths, &sign, &hours, &minutes);
    EXPECT_EQ(fields, 10) << text;
    parts.tm_year -= 1900;
    parts.tm_mon -= 1;
    const seconds offset = std::chrono::hours(hours) + std::chrono::minutes(minutes);
    return seconds(timegm(&parts)) + milliseconds(thousandths) - (sign == '-' ? -offset : offset);
}

struct ClearedIn {
    const char *timezone;
    const char *offset;
    long age; // seconds
};

class ALastClear : public AGeneratedDevice, public testing::WithParamInterface<ClearedIn> {
protected:
    // The time that the device and its interface report, which must be the same.
    std::string read_last_clear(long age, const std::string &timezone) const {
        const std::string clear = element("last-clear", std::to_string(age));
        const std::string interface =
            element("interface", element("interface-name", "e0") + element("interface-stats", clear));
        const Outcome outcome = read(
            native_node(element("interfaces", interface) + element("statistics", clear)), {"/lldp"}, timezone);
        EXPECT_EQ(outcome.errors, "");
        const Tree tree = answer(outcome);
        const Strings stamps = values_at(tree.get(), "//openconfig-lldp:last-clear");
        EXPECT_EQ(stamps.size(), 2U);
        return stamps.empty() ? "" : stamps.front();
    }
};

TEST_P(ALastClear, LiesItsAgeAgoAndIsToldInTheLocalZone) {
    const milliseconds before = now();
    const std::string stamp = read_last_clear(GetParam().age, GetParam().timezone);
    const milliseconds after = now();
    EXPECT_EQ(without_times(stamp), std::string("<timestamp ") + GetParam().offset + ">") << stamp;
    EXPECT_GE(moment(stamp), before - seconds(GetParam().age));
    EXPECT_LE(moment(stamp), after - seconds(GetParam().age));
}

INSTANTIATE_TEST_SUITE_P(Zone, ALastClear,
                         testing::Values(ClearedIn{"UTC0", "+00:00", 1}, ClearedIn{"IST-5:30", "+05:30", 3600},
                                         ClearedIn{"PST8", "-08:00", 86400},
                                         ClearedIn{"NST3:30", "-03:30", 31536000},
                                         ClearedIn{"LINT-14", "+14:00", 4294967}));

class ALastClearOfNever : public ALastClear {};

TEST_P(ALastClearOfNever, IsTheStartOfTheSystem) {
    const milliseconds before = now();
    const std::string stamp = read_last_clear(0, GetParam().timezone);
    const milliseconds after = now();
    // Only one of the clocks counts time that the system was suspended; both count from boot.
    const seconds longest = since_boot(CLOCK_BOOTTIME) + seconds(1);
    const seconds shortest =
        since_boot(CLOCK_MONOTONIC) - std::chrono::ceil<seconds>(after - before) - seconds(1);
    EXPECT_GE(moment(stamp), before - longest);
    EXPECT_LE(moment(stamp), after - shortest);
}

INSTANTIATE_TEST_SUITE_P(Zone, ALastClearOfNever, testing::Values(ClearedIn{"UTC0", "+00:00", 0}));

class ARandomNeighborTable : public AGeneratedDevice, public testing::WithParamInterface<unsigned> {};

TEST_P(ARandomNeighborTable, IsAnsweredWithEachNeighborOnceUnderItsInterface) {
    RandomTable random(GetParam());
    std::string details;
    std::map<std::string, std::set<std::string>> expected;
    for (const RandomNeighbor &neighbor : random.make(30)) {
        details += native_neighbor(neighbor.interface, neighbor.device, random.announcement(neighbor));
        if (!neighbor.id().empty())
            expected[neighbor.interface].insert(neighbor.id());
    }
    const Outcome outcome = read(native_neighbors(details), {"/lldp"});
    for (const std::string &line : lines_of(outcome.errors))
        EXPECT_EQ(line.rfind("yfw: warning: /openconfig-lldp:lldp/interfaces/interface", 0), 0U) << line;
    const Tree tree = answer(outcome);
    EXPECT_EQ(keys_unlike_their_twins(tree.get()), Strings{});
    std::size_t entries = 0;
    for (const auto &[interface, ids] : expected) {
        const std::string list =
            "/openconfig-lldp:lldp/interfaces/interface[name=\"" + interface + "\"]/neighbors/neighbor/id";
        const Strings found = values_at(tree.get(), list);
        EXPECT_EQ(std::set<std::string>(found.begin(), found.end()), ids) << interface;
        EXPECT_EQ(found.size(), ids.size()) << interface;
        entries += found.size();
    }
    EXPECT_EQ(values_at(tree.get(), "//openconfig-lldp:neighbor/id").size(), entries);
}

INSTANTIATE_TEST_SUITE_P(Seed, ARandomNeighborTable, testing::Range(1U, 21U));

class ANameOfManyBytes : public AGeneratedDevice {};

// 255 bytes are 127 of these characters and half of the next one.
TEST_F(ANameOfManyBytes, IsNotAnsweredWithHalfACharacter) {
    std::string name;
    for (int i = 0; i < 150; ++i)
        name += "\xc3\xbc";
    const std::string device = native_neighbors(native_neighbor("e0", name, element("port-id-detail", "p")));
    for (const char *format : {"json", "xml"}) {
        const Outcome outcome = read(device, {"/lldp", "--format", format});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(outcome.output.find("\xc3\""), std::string::npos) << outcome.output;
        EXPECT_EQ(outcome.output.find("\xc3<"), std::string::npos) << outcome.output;
    }
}

} // namespace
} // namespace yfw::test

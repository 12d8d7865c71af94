// Edits that concern a part of the configuration give what they give on the whole, in memory and in the store.
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/error.h"
#include "device/managed_device.h"
#include "device/stored_configuration.h"
#include "edit_device.h"
#include "host/test/data_texts.h"
#include "host/test/test_device.h"
#include "support/files.h"
#include "yang/configuration_text.h"

namespace yfw::device::test {
namespace {

using Strings = std::vector<std::string>;

constexpr int interfaces = 40;

std::string native_with_interfaces() {
    std::string entries;
    for (int i = 0; i < interfaces; i++)
        entries += element("interface-configuration", element("active", i % 7 == 3 ? "pre" : "act") +
                                                          element("interface-name", "eth" + std::to_string(i)) +
                                                          "<lldp xmlns=\"" + std::string(host::test::cfg_ns) +
                                                          "\"><enable>true</enable></lldp>");
    return "<lldp xmlns=\"" + std::string(host::test::cfg_ns) +
           "\"><enable>true</enable></lldp><interface-configurations xmlns=\"" +
           std::string(host::test::ifmgr_ns) + "\">" + entries + "</interface-configurations>";
}

// Edit documents; the same seed gives the same ones.
class Edits {
public:
    explicit Edits(uint32_t seed) : random_(seed) {}

    std::string next() {
        switch (below(10)) {
        case 0:
            return document(element("config", leaf()) + element("interfaces", entry() + entry()));
        case 1:
            return document(element("config", leaf()));
        case 2:
            return below(6) == 0 ? document("<interfaces nc:operation=\"" + one({"delete", "remove"}) + "\"/>")
                                 : document(element("interfaces", entry()));
        case 3:
            return below(3) == 0 ? config(with_operation("enabled", one({"true", "true", "true", "false"})))
                                 : document(element("interfaces", entry()));
        default:
            return document(element("interfaces", entry()));
        }
    }

private:
    size_t below(size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(random_); }
    std::string one(const Strings &words) { return words[below(words.size())]; }

    std::string operation() {
        return below(2) == 0
                   ? ""
                   : " nc:operation=\"" + one({"merge", "replace", "create", "delete", "remove"}) + "\"";
    }

    std::string with_operation(const std::string &name, const std::string &value) {
        return "<" + name + operation() + ">" + value + "</" + name + ">";
    }

    std::string leaf() {
        switch (below(5)) {
        case 0:
            return with_operation("hello-timer", std::to_string(5 + below(60)));
        case 1:
            return with_operation("system-name", one({"r1", "r2", "a b"}));
        case 2:
            return with_operation("system-description", one({"x", "y\nz"}));
        case 3:
            return with_operation("suppress-tlv-advertisement",
                                  one({"types:SYSTEM_NAME", "types:PORT_DESCRIPTION"}));
        default:
            return with_operation("chassis-id-type", one({"LOCAL", "MAC_ADDRESS"}));
        }
    }

    std::string entry() {
        const std::string name = element("name", "eth" + std::to_string(below(interfaces + 3)));
        if (below(8) == 0)
            return "<interface nc:operation=\"" + one({"delete", "remove"}) + "\">" + name + "</interface>";
        return "<interface" + operation() + ">" + name +
               element("config", name + with_operation("enabled", one({"true", "false"}))) + "</interface>";
    }

    std::mt19937 random_;
};

// What can be seen of a device after an edit.
struct Seen {
    std::string outcome; // the difference, or the error
    std::string openconfig;
    std::string native;

    bool operator==(const Seen &) const = default;
};

void PrintTo(const Seen &seen, std::ostream *to) {
    *to << "outcome: " << seen.outcome << "\n" << seen.openconfig << seen.native;
}

struct Result {
    std::vector<Seen> steps;
    std::vector<Seen> commits; // as a later process reads them from the store
    size_t stored_as_changes = 0;
};

Seen seen_after(ManagedDevice &device, const std::string &document) {
    Seen seen;
    try {
        const yang::EditNode edit = yang::parse_edit(yang::test::schemas(), document, yang::Operation::merge);
        const auto commit = device.edit(edit, {"test", ""});
        seen.outcome = commit.has_value() ? commit->difference : "nothing";
    } catch (const Error &error) {
        seen.outcome = error.path() + ": " + error.what();
    }
    const Configuration running = device.running_configuration();
    seen.openconfig = yang::print_configuration(running.openconfig.get());
    seen.native = yang::print_configuration(running.native.get());
    return seen;
}

std::vector<Seen> commits_of(const std::filesystem::path &file, size_t &stored_as_changes) {
    const commits::CommitLog store(file, false);
    std::vector<Seen> found;
    for (int64_t number = 0; number <= store.last_number().value_or(-1); number++) {
        const commits::Commit stored = store.find(number).value();
        stored_as_changes += stored.change.has_value() ? 1 : 0;
        const commits::Commit commit = with_texts(yang::test::schemas(), store, stored, file.string());
        found.push_back({commit.difference, commit.openconfig.value_or("none"), commit.configuration});
    }
    return found;
}

// `in_parts`: whether the description of the mapping lets edits concern parts.
Result run(uint32_t seed, bool in_parts) {
    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
    host::test::TextSource source;
    source.xml = native_with_interfaces();
    host::MappingDescription mapping = host::read_mapping(YFW_PLUGINS);
    EXPECT_FALSE(mapping.entries.empty());
    if (!in_parts)
        mapping.entries.clear();
    Result result;
    {
        ManagedDevice device(yang::test::schemas(), source, file, mapping);
        Edits edits(seed);
        for (int i = 0; i < 60; i++)
            result.steps.push_back(seen_after(device, edits.next()));
        result.steps.push_back(seen_after(device, config("<hello-timer>77</hello-timer>")));
        device.rollback(1, {"test", ""});
    }
    result.commits = commits_of(file, result.stored_as_changes);
    return result;
}

class EditsOfParts : public testing::TestWithParam<uint32_t> {};

TEST_P(EditsOfParts, GiveWhatTheyGiveOnTheWhole) {
    const Result parts = run(GetParam(), true);
    const Result whole = run(GetParam(), false);
    EXPECT_GT(parts.stored_as_changes, 0U);
    EXPECT_EQ(whole.stored_as_changes, 0U);
    Edits edits(GetParam());
    for (size_t i = 0; i < whole.steps.size(); i++) {
        SCOPED_TRACE("edit " + std::to_string(i) + ": " + edits.next());
        ASSERT_EQ(parts.steps.at(i).outcome, whole.steps.at(i).outcome);
        ASSERT_EQ(parts.steps.at(i).openconfig, whole.steps.at(i).openconfig);
        ASSERT_EQ(parts.steps.at(i).native, whole.steps.at(i).native);
    }
    EXPECT_EQ(parts.commits, whole.commits);
}

// The tree that others change is not the one that a reader has.
TEST(AReadersConfiguration, StaysAsItIsWhileOthersEdit) {
    const yfw::test::TemporaryDirectory directory;
    EditedDevice device(native_with_interfaces(), nullptr, directory.path());
    const std::string disabled = element("config", "<name>eth2</name><enabled>false</enabled>");
    const std::string edit = element("interfaces", element("interface", "<name>eth2</name>" + disabled));
    device.edit(document(element("config", "<hello-timer>7</hello-timer>")));
    const Configuration held = device.device().running_configuration();
    const std::string openconfig = yang::print_configuration(held.openconfig.get());
    const std::string native = yang::print_configuration(held.native.get());
    ASSERT_TRUE(device.edit(document(edit)).has_value());
    ASSERT_TRUE(device.edit(document(element("config", "<hello-timer>9</hello-timer>"))).has_value());
    EXPECT_EQ(yang::print_configuration(held.openconfig.get()), openconfig);
    EXPECT_EQ(yang::print_configuration(held.native.get()), native);
    EXPECT_NE(device.configuration(), native);
    EXPECT_EQ(EditedDevice(native_with_interfaces(), nullptr, directory.path()).configuration(),
              device.configuration());
}

TEST(AChangeThatCannotBeApplied, IsAnErrorThatNamesTheStore) {
    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
    commits::CommitLog store(file, true);
    for (const char *change : {"<lldp", "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\"/>"}) {
        commits::Commit whole, changed;
        whole.openconfig = "";
        changed.change = {change, ""};
        store.commit_after([&](int64_t) { return whole; });
        store.commit_after([&](int64_t) { return changed; });
        try {
            read_stored(yang::test::schemas(), store, store.last_number().value(), file.string());
            ADD_FAILURE() << change;
        } catch (const Error &error) {
            EXPECT_EQ(error.path(), file.string()) << error.what();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Of, EditsOfParts, testing::Range(1U, 9U));

} // namespace
} // namespace yfw::device::test

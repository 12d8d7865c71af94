// Native configurations from before the first commit whose leaf-lists the mapping shows in part.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "edit_device.h"
#include "yang/forest.h"

namespace yfw::device::test {
namespace {

using Strings = std::vector<std::string>;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const std::string system_name = "openconfig-lldp-types:SYSTEM_NAME";
const std::string port_description = "openconfig-lldp-types:PORT_DESCRIPTION";
const std::string system_description = "openconfig-lldp-types:SYSTEM_DESCRIPTION";

std::string suppressing(const Strings &tlvs) {
    std::string select = element("tlv-select-enter", "true");
    for (const std::string &tlv : tlvs)
        select += element(tlv, element("disable", "true"));
    return native_device("<enable>true</enable>" + element("tlv-select", select));
}

const std::string two = suppressing({"system-name", "port-description"});

host::ReadRequest read_of(const std::string &path, host::Content content = host::Content::config) {
    return host::test::request({path}, content);
}

Strings values_in(const lyd_node *data, const std::string &parent) {
    Strings values;
    for (const lyd_node *value :
         yang::nodes_at(data, "/openconfig-lldp:lldp/" + parent + "/suppress-tlv-advertisement"))
        values.emplace_back(lyd_get_value(value));
    return values;
}

Strings configured(EditedDevice &device, const std::string &path = "/lldp") {
    return values_in(device.device().read(read_of(path)).data.get(), "config");
}

Strings applied(EditedDevice &device, const std::string &path = "/lldp") {
    return values_in(device.device().read_applied(read_of(path)).data.get(), "config");
}

std::string deletion(const std::string &tlv) {
    return config("<suppress-tlv-advertisement nc:operation=\"delete\">types:" + tlv +
                  "</suppress-tlv-advertisement>");
}

// --- before the first commit ---

TEST(SuppressedTlvsOfADevice, AreAllItsConfiguration) {
    EditedDevice device{two};
    for (const std::string path : {"/lldp", "/lldp/config", "/lldp/config/suppress-tlv-advertisement"}) {
        EXPECT_THAT(configured(device, path), UnorderedElementsAre(system_name, port_description)) << path;
        EXPECT_THAT(applied(device, path), UnorderedElementsAre(system_name, port_description)) << path;
    }
}

TEST(SuppressedTlvsOfADevice, AreReadOneByOne) {
    EditedDevice device{two};
    for (const std::string &value : {system_name, port_description})
        EXPECT_THAT(configured(device, "/lldp/config/suppress-tlv-advertisement[.='" + value + "']"),
                    UnorderedElementsAre(value));
}

TEST(SuppressedTlvsOfADevice, AreReadBesideItsState) {
    EditedDevice device{suppressing({"system-name", "port-description", "system-description"})};
    const host::Answer all = device.device().read_applied(read_of("/lldp", host::Content::all));
    for (const std::string parent : {"config", "state"})
        EXPECT_THAT(values_in(all.data.get(), parent),
                    UnorderedElementsAre(system_name, port_description, system_description))
            << parent;
}

TEST(SuppressedTlvsOfADevice, AreNotReadWithAnotherLeaf) {
    EditedDevice device{two};
    EXPECT_THAT(configured(device, "/lldp/config/enabled"), IsEmpty());
    EXPECT_THAT(configured(device, "/lldp/interfaces"), IsEmpty());
}

TEST(SuppressedTlvsOfADevice, OfAllKindsAreFound) {
    EditedDevice device{suppressing({"system-name", "port-description", "system-description",
                                     "system-capabilities", "management-address"})};
    EXPECT_EQ(configured(device).size(), 5U);
}

TEST(SuppressedTlvsOfADevice, AreDeletedOneByOne) {
    EditedDevice device{two};
    device.edit(deletion("SYSTEM_NAME"));
    EXPECT_THAT(configured(device), UnorderedElementsAre(port_description));
    EXPECT_THAT(device.configuration(), testing::Not(testing::HasSubstr("<system-name>")));
    EXPECT_THAT(device.configuration(), testing::HasSubstr("<port-description>"));
    EXPECT_THAT(device.device().drift(), IsEmpty());
}

TEST(SuppressedTlvsOfADevice, SurviveThatLldpIsSwitchedOffAndOn) {
    EditedDevice device{two};
    device.edit(config(element("enabled", "false")));
    EXPECT_THAT(configured(device), UnorderedElementsAre(system_name, port_description));
    device.edit(config(element("enabled", "true")));
    EXPECT_THAT(configured(device), UnorderedElementsAre(system_name, port_description));
    EXPECT_THAT(applied(device), UnorderedElementsAre(system_name, port_description));
    EXPECT_THAT(device.device().drift(), IsEmpty());
}

// --- in a store that an earlier version made ---

TEST(SuppressedTlvsOfAnOldCommit, AreAllItsConfiguration) {
    const yfw::test::TemporaryDirectory directory;
    commits::CommitLog(directory.path() / "commits.db", true).commit([](const auto &) {
        commits::Commit old;
        old.configuration = two;
        return std::optional(old);
    });
    EditedDevice device{native_device("<enable>true</enable>"), nullptr, directory.path()};
    EXPECT_THAT(configured(device), UnorderedElementsAre(system_name, port_description));
    device.edit(deletion("SYSTEM_NAME"));
    EXPECT_THAT(configured(device), UnorderedElementsAre(port_description));
}

} // namespace
} // namespace yfw::device::test

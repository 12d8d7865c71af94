#include "edit_device.h"

#include "host/test/data_texts.h"
#include "yang/configuration_text.h"

namespace yfw::device::test {

EditedDevice::EditedDevice(const std::string &native, sources::NativeTarget *target,
                           const std::filesystem::path &directory)
    : device_(yang::test::schemas(), source_,
              (directory.empty() ? own_directory_.emplace().path() : directory) / "commits.db",
              host::read_mapping(YFW_PLUGINS), target) {
    source_.xml = native;
}

std::optional<commits::Commit> EditedDevice::edit(const std::string &document) {
    const yang::EditNode node = yang::parse_edit(yang::test::schemas(), document, yang::Operation::merge);
    return device_.edit(node, {.who = "test", .comment = ""});
}

void EditedDevice::map(const std::string &document) {
    device_.explain(yang::parse_edit(yang::test::schemas(), document, yang::Operation::merge));
}

std::string EditedDevice::try_edit(const std::string &document) {
    return device_.try_edit(yang::parse_edit(yang::test::schemas(), document, yang::Operation::merge));
}

std::optional<commits::Commit> EditedDevice::rollback(int64_t number) {
    return device_.rollback(number, {.who = "test", .comment = ""});
}

std::string EditedDevice::configuration() {
    return yang::print_configuration(device_.running_configuration().native.get());
}

size_t EditedDevice::commits() const {
    const std::filesystem::path &store = device_.store();
    return std::filesystem::exists(store) ? commits::CommitLog(store, false).history().size() : 0;
}

testing::AssertionResult runs(EditedDevice &device, const std::string &configuration) {
    return yang::test::same(yfw::test::lines_of(device.configuration()), yfw::test::lines_of(configuration));
}

std::string element(const std::string &name, const std::string &content) {
    return "<" + name + ">" + content + "</" + name + ">";
}

std::string document(const std::string &content) {
    return "<lldp xmlns=\"http://openconfig.net/yang/lldp\" "
           "xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\" "
           "xmlns:types=\"http://openconfig.net/yang/lldp/types\">" +
           content + "</lldp>";
}

std::string config(const std::string &leaf) {
    return document(element("config", leaf));
}

std::string eth1(const std::string &leaf) {
    return document(
        element("interfaces", element("interface", element("name", "eth1") + element("config", leaf))));
}

std::string native_device(const std::string &global) {
    std::string entries;
    for (const char *name : {"eth1", "eth2", "eth3"})
        entries += element("interface-configuration",
                           element("active", "act") + element("interface-name", name) + "<lldp xmlns=\"" +
                               std::string(host::test::cfg_ns) + "\"><enable>true</enable></lldp>");
    return "<lldp xmlns=\"" + std::string(host::test::cfg_ns) + "\">" + global +
           "</lldp><interface-configurations xmlns=\"" + std::string(host::test::ifmgr_ns) + "\">" + entries +
           "</interface-configurations>";
}

} // namespace yfw::device::test

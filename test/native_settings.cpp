#include "native_settings.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <stdexcept>
#include <vector>

#include <libyang/libyang.h>

#include "configuration_lines.h"
#include "support/answers.h"

namespace yfw::test {
namespace {

using Lines = std::set<std::string>;

const std::string lldp = "/Tarvo-QD-ethernet-lldp-cfg:lldp/";
const std::string interface_list = "/Tarvo-QD-ifmgr-cfg:interface-configurations/interface-configuration";

const ly_ctx *native_modules() {
    static const Context loaded = [] {
        Context context = openconfig_modules();
        if (ly_ctx_load_module(context.get(), "Tarvo-QD-ethernet-lldp-cfg", nullptr, nullptr) == nullptr)
            throw std::runtime_error("the native module cannot be loaded");
        return context;
    }();
    return loaded.get();
}

// SYSTEM_NAME: system-name
std::string native_word(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return c == '_' ? '-' : static_cast<char>(std::tolower(c)); });
    return text;
}

bool is_switched_off(const PlainConfiguration &configuration) {
    return configuration.values("enabled") == std::vector<std::string>{"false"};
}

void add(Lines &lines, const std::string &name, const std::vector<std::string> &values) {
    for (const std::string &value : values)
        lines.insert(name + " = " + value);
}

void add_interface(Lines &lines, const std::string &name, bool is_enabled) {
    lines.insert(name + " enable = " + (is_enabled ? "true" : "false"));
    if (is_enabled)
        return;
    lines.insert(name + " transmit/disable = true");
    lines.insert(name + " receive/disable = true");
}

Lines required(const PlainConfiguration &configuration, bool with_interfaces) {
    Lines lines;
    if (is_switched_off(configuration))
        return lines;
    add(lines, "enable", configuration.values("enabled"));
    add(lines, "timer", configuration.values("hello-timer"));
    for (const char *leaf : {"system-name", "system-description", "chassis-id"})
        add(lines, leaf, configuration.values(leaf));
    for (const std::string &kind : configuration.values("chassis-id-type"))
        lines.insert("chassis-id-type = " + native_word(kind));
    for (const std::string &tlv : configuration.values("suppress-tlv-advertisement"))
        lines.insert("tlv-select/" + native_word(tlv) + "/disable = true");
    for (const std::string &name : with_interfaces ? configuration.interfaces() : std::vector<std::string>{})
        if (const auto enabled = configuration.enabled(name))
            add_interface(lines, name, *enabled == "true");
    return lines;
}

Lines found(const lyd_node *native, bool with_switch, bool with_interfaces) {
    Lines lines;
    for (const char *leaf : {"timer", "system-name", "system-description", "chassis-id", "chassis-id-type"})
        add(lines, leaf, values_at(native, lldp + leaf));
    if (with_switch)
        add(lines, "enable", values_at(native, lldp + "enable[.='true']"));
    for (const char *tlv :
         {"system-name", "port-description", "system-description", "system-capabilities", "management-address"})
        add(lines, std::string("tlv-select/") + tlv + "/disable",
            values_at(native, lldp + "tlv-select/" + tlv + "/disable"));
    if (!with_interfaces)
        return lines;
    for (const std::string &name : values_at(native, interface_list + "/interface-name"))
        for (const char *leaf : {"enable", "transmit/disable", "receive/disable"})
            add(lines, name + " " + leaf,
                values_at(native, interface_list + "[interface-name='" + name + "']" + lldp + leaf));
    return lines;
}

} // namespace

std::string native_difference(const PlainConfiguration &configuration, const std::string &native) {
    const Tree tree = parse_answer(native_modules(), Format::xml, native);
    const bool is_on = !values_at(tree.get(), lldp + "enable[.='true']").empty();
    const bool with_switch = !configuration.values("enabled").empty();
    const bool with_interfaces = is_on || is_switched_off(configuration);
    return difference(required(configuration, with_interfaces),
                      found(tree.get(), with_switch, with_interfaces));
}

std::set<std::string> native_settings(const std::string &native) {
    const Tree tree = parse_answer(native_modules(), Format::xml, native);
    return found(tree.get(), true, true);
}

} // namespace yfw::test

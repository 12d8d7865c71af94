#include "support/native_xml.h"

namespace yfw::test {
namespace {

std::string top(const std::string &module, const std::string &content) {
    return "<lldp xmlns=\"urn:tarvo:yang:" + module + "\">" + content + "</lldp>\n";
}

} // namespace

std::string element(const std::string &name, const std::string &content) {
    return "<" + name + ">" + content + "</" + name + ">";
}

std::string escaped(const std::string &text) {
    std::string result;
    for (const char c : text) {
        if (c == '<')
            result += "&lt;";
        else if (c == '&')
            result += "&amp;";
        else
            result += c;
    }
    return result;
}

std::string native_configuration(const std::string &content) {
    return top("Tarvo-QD-ethernet-lldp-cfg", content);
}

std::string native_state(const std::string &content) {
    return top("Tarvo-QD-ethernet-lldp-oper", content);
}

std::string native_node(const std::string &content) {
    return native_state(element("nodes", element("node", element("node-name", "0/0/CPU0") + content)));
}

std::string native_neighbors(const std::string &details) {
    return native_node(element("neighbors", element("details", details)));
}

std::string native_neighbor(const std::string &interface, const std::string &device,
                            const std::string &announcement) {
    const std::string device_id = element("device-id", escaped(device));
    return element("detail", element("interface-name", escaped(interface)) + device_id +
                                 element("lldp-neighbor", device_id + announcement));
}

} // namespace yfw::test

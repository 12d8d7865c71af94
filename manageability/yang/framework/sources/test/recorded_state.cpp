#include "recorded_state.h"

#include <cstdio>
#include <map>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "support/files.h"

namespace yfw::sources::test {
namespace {

using nlohmann::json;
using namespace lldpd;

// In lldpcli's json0 format every member is a list, and is absent when empty.
const json &all(const json &object, const std::string &name) {
    static const json none = json::array();
    return object.contains(name) ? object.at(name) : none;
}

std::optional<std::string> text(const json &object, const std::string &name) {
    const json &found = all(object, name);
    if (found.empty())
        return std::nullopt;
    return found.at(0).at("value").get<std::string>();
}

std::optional<std::string> setting(const json &configuration, const std::string &name) {
    std::optional<std::string> found = text(configuration, name);
    return found == "(none)" ? std::nullopt : found;
}

uint32_t number(const std::string &decimal) {
    return static_cast<uint32_t>(std::stoul(decimal));
}

uint32_t chassis_subtype(const std::string &word) {
    static const std::map<std::string, uint32_t> subtypes{
        {"ifalias", 2}, {"mac", 4}, {"ip", 5}, {"ifname", 6}, {"local", 7}};
    return subtypes.at(word);
}

uint32_t port_subtype(const std::string &word) {
    static const std::map<std::string, uint32_t> subtypes{
        {"ifalias", 1}, {"mac", 3}, {"ip", 4}, {"ifname", 5}, {"local", 7}};
    return subtypes.at(word);
}

std::optional<Capabilities> capabilities(const json &chassis) {
    static const std::map<std::string, int> bits{{"Other", 0},  {"Repeater", 1}, {"Bridge", 2}, {"Wlan", 3},
                                                 {"Router", 4}, {"Tel", 5},      {"Docsis", 6}, {"Station", 7}};
    if (all(chassis, "capability").empty())
        return std::nullopt;
    Capabilities made;
    for (const json &capability : all(chassis, "capability")) {
        const auto bit = static_cast<uint16_t>(1 << bits.at(capability.at("type")));
        made.available = static_cast<uint16_t>(made.available | bit);
        if (capability.at("enabled").get<bool>())
            made.enabled = static_cast<uint16_t>(made.enabled | bit);
    }
    return made;
}

Chassis chassis_of(const json &recorded) {
    Chassis made;
    const json &id = recorded.at("id").at(0);
    made.id_subtype = chassis_subtype(id.at("type"));
    made.id = id.at("value");
    made.name = text(recorded, "name");
    made.description = text(recorded, "descr");
    made.capabilities = capabilities(recorded);
    const json &numbers = all(recorded, "mgmt-iface");
    for (size_t i = 0; i < all(recorded, "mgmt-ip").size(); i++)
        made.addresses.push_back({.text = recorded.at("mgmt-ip").at(i).at("value"),
                                  .interface_number = i < numbers.size()
                                                          ? std::optional(number(numbers.at(i).at("value")))
                                                          : std::nullopt});
    return made;
}

// The bytes of "61,62,63".
std::string octets(const std::string &hexadecimal) {
    std::string bytes;
    for (size_t at = 0; at + 1 < hexadecimal.size(); at += 3)
        bytes += static_cast<char>(std::stoi(hexadecimal.substr(at, 2), nullptr, 16));
    return bytes;
}

CustomTlv tlv_of(const json &recorded) {
    CustomTlv made;
    const std::string oui = octets(recorded.at("oui"));
    for (size_t i = 0; i < made.oui.size(); i++)
        made.oui.at(i) = static_cast<uint8_t>(oui.at(i));
    made.subtype = static_cast<uint8_t>(number(recorded.at("subtype")));
    made.octets = octets(recorded.value("value", ""));
    return made;
}

// The seconds in "0 day, 00:00:31".
uint64_t seconds(const std::string &age) {
    unsigned days = 0, hours = 0, minutes = 0, rest = 0;
    if (std::sscanf(age.c_str(), "%u day%*[s,] %u:%u:%u", &days, &hours, &minutes, &rest) != 4)
        throw std::runtime_error(age + " is not an age");
    return ((days * 24ULL + hours) * 60 + minutes) * 60 + rest;
}

Neighbor neighbor_of(const json &recorded) {
    Neighbor made;
    made.chassis = chassis_of(recorded.at("chassis").at(0));
    const json &port = recorded.at("port").at(0);
    made.port_id_subtype = port_subtype(port.at("id").at(0).at("type"));
    made.port_id = port.at("id").at(0).at("value");
    made.port_description = text(port, "descr");
    if (const auto ttl = text(port, "ttl"))
        made.time_to_live = number(*ttl);
    made.age = seconds(recorded.at("age"));
    for (const json &group : all(recorded, "unknown-tlvs"))
        for (const json &tlv : all(group, "unknown-tlv"))
            made.tlvs.push_back(tlv_of(tlv));
    return made;
}

std::optional<uint64_t> counter(const json &interface, const std::string &name) {
    const json &found = all(interface, name);
    return found.empty() ? std::nullopt
                         : std::optional<uint64_t>(std::stoull(found.at(0).at(name).get<std::string>()));
}

Counters counters_of(const json &statistics, const std::string &port) {
    for (const json &interface : all(statistics, "interface"))
        if (interface.at("name") == port)
            return {.transmitted = counter(interface, "tx"),
                    .received = counter(interface, "rx"),
                    .discarded = counter(interface, "rx_discarded_cnt"),
                    .unrecognized = counter(interface, "rx_unrecognized_cnt"),
                    .aged_out = counter(interface, "ageout_cnt")};
    return {};
}

PortStatus status_of(const std::string &words) {
    static const std::map<std::string, PortStatus> statuses{{"RX and TX", {true, true}},
                                                            {"TX only", {true, false}},
                                                            {"RX only", {false, true}},
                                                            {"disabled", {false, false}}};
    return statuses.at(words);
}

DaemonSettings settings_of(const json &configuration) {
    DaemonSettings made;
    made.transmit_interval = number(text(configuration, "tx-delay").value());
    made.system_name = setting(configuration, "hostname");
    made.system_description = setting(configuration, "description");
    made.chassis_id = setting(configuration, "cid-string");
    return made;
}

} // namespace

State recorded_state(const std::filesystem::path &recordings, const std::string &router) {
    const auto load = [&](const std::string &what, const std::string &top) {
        const auto file = recordings / (router + "-" + what + ".json");
        return json::parse(yfw::test::read_file(file)).at(top).at(0);
    };
    const json statistics = load("statistics", "lldp");
    const json neighbors = load("neighbors", "lldp");
    const json interfaces = load("interfaces", "lldp");
    State made;
    made.local = chassis_of(load("chassis", "local-chassis").at("chassis").at(0));
    made.settings = settings_of(load("configuration", "configuration").at("config").at(0));
    for (const json &interface : all(interfaces, "interface")) {
        Port port;
        port.name = interface.at("name");
        port.status = status_of(interface.at("status").at(0).at("value"));
        port.counters = counters_of(statistics, port.name);
        for (const json &neighbor : all(neighbors, "interface"))
            if (neighbor.at("name") == port.name && neighbor.at("via") == "LLDP")
                port.neighbors.push_back(neighbor_of(neighbor));
        made.ports.push_back(std::move(port));
    }
    return made;
}

} // namespace yfw::sources::test

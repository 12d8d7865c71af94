#include "random_neighbors.h"

#include <set>
#include <utility>

#include "support/native_xml.h"

namespace yfw::test {
namespace {

using Strings = std::vector<std::string>;

const Strings interfaces{"Ethernet0",
                         "Ethernet0/1",
                         "it's",
                         "\xc3\xbc"
                         "ber",
                         "a b",
                         std::string(200, 'i')};
const Strings devices{
    "sw1",   "sw#1", "[DISABLED]",          "DISABLED",           "Z\xc3\xbcrich <&> \"core\"",
    "#lead", "",     std::string(300, 'd'), std::string(255, 'e')};
const Strings ports{"Ethernet1/1", "p#2", "", "00:00:5e:00:53:01", std::string(300, 'p')};

} // namespace

std::string RandomNeighbor::id() const {
    const std::string shown = device == "[DISABLED]" ? "DISABLED" : device;
    return (port ? shown + "#" + *port : shown).substr(0, 255);
}

std::vector<RandomNeighbor> RandomTable::make(std::size_t count) {
    std::vector<RandomNeighbor> table;
    std::set<std::pair<std::string, std::string>> keys;
    while (table.size() < count) {
        RandomNeighbor neighbor{pick(interfaces), pick(devices), std::nullopt};
        if (number() % 5 != 0)
            neighbor.port = pick(ports);
        if (keys.emplace(neighbor.interface, neighbor.device).second)
            table.push_back(neighbor);
    }
    return table;
}

std::string RandomTable::announcement(const RandomNeighbor &neighbor) {
    std::string detail =
        element("last-update", std::to_string(wide())) + element("age", std::to_string(wide()));
    for (const char *leaf : {"port-description", "system-name", "system-description"})
        detail = element(leaf, escaped(pick(devices))) + detail;
    std::string tlvs;
    for (unsigned i = number() % 4; i > 0; --i)
        tlvs += element("lldp-org-def-tlv-entry", element("oui", pick(ports)) +
                                                      element("tlv-subtype", std::to_string(number() % 3)) +
                                                      element("tlv-value", escaped(pick(devices))));
    const std::string mib = element("combined-capabilities", std::to_string(number())) +
                            element("chassis-id-sub-type", std::to_string(1 + number() % 7)) +
                            element("port-id-sub-type", std::to_string(1 + number() % 7)) +
                            element("org-def-tlv-list", tlvs);
    return (neighbor.port ? element("port-id-detail", escaped(*neighbor.port)) : "") +
           element("hold-time", std::to_string(number())) + element("detail", detail) + element("mib", mib);
}

} // namespace yfw::test

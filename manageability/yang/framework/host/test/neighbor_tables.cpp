#include "neighbor_tables.h"

#include <algorithm>

namespace yfw::host::test {
namespace {

constexpr size_t longest_id = 255;

std::string escaped(const std::string &text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '&':
            out += "&amp;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

std::string element(const std::string &name, const std::string &content) {
    return "<" + name + ">" + content + "</" + name + ">";
}

std::string leaf_element(const std::string &name, const Text &value) {
    return value.has_value() ? element(name, escaped(*value)) : "";
}

std::string leaf_elements(const LeafTexts &leaves) {
    std::string text;
    for (const auto &[name, value] : leaves)
        text += leaf_element(name, value);
    return text;
}

std::string tlv_list(const std::vector<Tlv> &tlvs) {
    std::string text;
    for (const Tlv &tlv : tlvs)
        text += element("lldp-org-def-tlv-entry", leaf_element("oui", tlv.oui) +
                                                      leaf_element("tlv-subtype", tlv.subtype) +
                                                      leaf_element("tlv-value", tlv.value));
    return text.empty() ? "" : element("org-def-tlv-list", text);
}

std::string address_list(const LeafTexts &addresses) {
    std::string text;
    for (const auto &[name, value] : addresses)
        text += element("lldp-addr-entry", element("address", leaf_element("address-type", name.substr(0, 4)) +
                                                                  leaf_element(name, value)));
    return text.empty() ? "" : element("network-addresses", text);
}

std::string announcement_element(const Announcement &made, const std::string &device) {
    return element("lldp-neighbor",
                   leaf_element("device-id", device) + leaf_element("port-id-detail", made.port) +
                       leaf_elements(made.leaves) +
                       element("detail", address_list(made.addresses) + leaf_elements(made.detail)) +
                       element("mib", leaf_elements(made.mib) + tlv_list(made.tlvs)));
}

std::string card_element(const Card &card) {
    std::string details;
    for (const Detail &detail : card.details) {
        std::string content =
            leaf_element("interface-name", detail.interface) + leaf_element("device-id", detail.device);
        for (const Announcement &made : detail.announcements)
            content += announcement_element(made, detail.device);
        details += element("detail", content);
    }
    std::string interfaces;
    for (const Interface &interface : card.interfaces)
        interfaces += element("interface", leaf_element("interface-name", interface.name) +
                                               leaf_elements(interface.leaves) +
                                               element("interface-stats", leaf_elements(interface.stats)));
    return element("node",
                   leaf_element("node-name", card.name) + element("neighbors", element("details", details)) +
                       element("interfaces", interfaces) +
                       (card.statistics.empty() ? "" : element("statistics", leaf_elements(card.statistics))));
}

// The device that the mapping asks for: the part before the first "#", ignoring any at the start of the id.
std::string asked_device(const std::string &id) {
    const size_t start = std::min(id.find_first_not_of('#'), id.size());
    const std::string device = id.substr(start, id.find('#', start) - start);
    return device == "DISABLED" ? "[DISABLED]" : device;
}

// The port that the mapping compares with: the part after the very first "#", empty if there is none.
std::string asked_port(const std::string &id) {
    const size_t hash = id.find('#');
    return hash != std::string::npos ? id.substr(hash + 1) : "";
}

// Picks values that real devices announce.
class Pick {
public:
    explicit Pick(std::mt19937 &random) : random_(random) {}

    int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
    bool one_in(int count) { return below(count) == 0; }

    std::string of(std::initializer_list<std::string> texts) {
        return *(texts.begin() + below(static_cast<int>(texts.size())));
    }

    std::string interface() {
        return of({"eth0", "eth1", "eth2", "GigabitEthernet0/0/0/1", "eth[1]", "a=b", "two words", "Zürich",
                   "it's", "]/["});
    }

    // Half of the names are from a small set, so that some devices are heard on several interfaces.
    std::string device() {
        return one_in(2) ? "r" + std::to_string(below(30))
                         : of({"[DISABLED]", "DISABLED", "sw#1", "sw", "#", "", "Zürich-κόμβος", "a]/b[c=d",
                               "x=[y]", "it's \"quoted\"", " spaced ", "<&>", std::string(255, 'd'),
                               std::string(300, 'd'), "e" + many("é", 200), "\xF0\x9F\x94\x8C"});
    }

    Text port() {
        if (one_in(5))
            return std::nullopt;
        return of({"eth1", "eth2", "1", "0/0/0/1", "p#1", "]/", "", "порт 1", std::string(300, 'p'),
                   many("✓", 100), "a=b"});
    }

    std::string text() {
        return of({"", "text", "Router r1, software 1.0", "two\nlines", "<&>\"'", "Zürich ✓",
                   std::string(255, 't'), std::string(300, 't'), many("é", 255), many("é", 300)});
    }

    std::string number32() { return of({"0", "1", "120", "65535", "65536", "2147483648", "4294967295"}); }
    std::string number64() {
        return of(
            {"0", "31", "4294967296", "9223372036854775807", "9223372036854775808", "18446744073709551615"});
    }
    std::string subtype() { return std::to_string(1 + below(7)); }

    static std::string many(const char *character, int count) {
        std::string text;
        for (int i = 0; i < count; i++)
            text += character;
        return text;
    }

private:
    std::mt19937 &random_;
};

void maybe(Pick &pick, LeafTexts &leaves, const char *name, const std::string &value) {
    if (!pick.one_in(4))
        leaves.emplace_back(name, value);
}

Announcement random_announcement(Pick &pick) {
    Announcement made{pick.port()};
    maybe(pick, made.leaves, "chassis-id", pick.text());
    maybe(pick, made.leaves, "hold-time", pick.number32());
    maybe(pick, made.detail, "port-description", pick.text());
    maybe(pick, made.detail, "system-name", pick.text());
    maybe(pick, made.detail, "system-description", pick.text());
    maybe(pick, made.detail, "last-update", pick.number64());
    maybe(pick, made.detail, "age", pick.number64());
    maybe(pick, made.mib, "combined-capabilities",
          std::to_string(static_cast<uint32_t>(pick.below(1 << 24)) * 256u +
                         static_cast<uint32_t>(pick.below(256))));
    maybe(pick, made.mib, "chassis-id-sub-type", pick.subtype());
    maybe(pick, made.mib, "port-id-sub-type", pick.subtype());
    for (int i = pick.below(3); i > 0; i--)
        made.addresses.emplace_back(pick.one_in(2) ? "ipv4-address" : "ipv6-address", pick.text());
    for (int i = pick.below(4); i > 0; i--)
        made.tlvs.push_back({pick.one_in(8) ? Text() : pick.of({"00:80:c2", "33:44:55", ""}),
                             pick.one_in(8) ? Text() : pick.of({"0", "9", "4294967295"}),
                             pick.one_in(8) ? Text() : pick.text()});
    return made;
}

Card random_card(Pick &pick, const std::string &name, int neighbors) {
    Card card{name};
    for (int i = 0; i < neighbors; i++) {
        const std::string interface = pick.interface();
        const std::string device = pick.device();
        auto detail = std::find_if(card.details.begin(), card.details.end(), [&](const Detail &other) {
            return other.interface == interface && other.device == device;
        });
        if (detail == card.details.end())
            detail = card.details.insert(card.details.end(), Detail{interface, device, {}});
        detail->announcements.push_back(random_announcement(pick));
    }
    for (const char *interface : {"eth0", "eth1", "Zürich", "unheard"})
        if (pick.one_in(2))
            card.interfaces.push_back(
                {interface,
                 {{"tx-enabled", pick.of({"0", "1"})}, {"rx-enabled", pick.of({"0", "1"})}},
                 {{"received-packets", pick.number32()}}});
    return card;
}

} // namespace

std::string neighbor_id(const std::string &device, const Text &port) {
    const std::string id = (device == "[DISABLED]" ? "DISABLED" : device) + (port ? "#" + *port : "");
    return id.substr(0, longest_id);
}

std::string Table::xml() const {
    std::string text;
    if (!system.empty())
        text = element("global-lldp", element("lldp-info", leaf_elements(system)));
    std::string nodes;
    for (const Card &card : cards)
        nodes += card_element(card);
    return "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper\">" + text + element("nodes", nodes) +
           "</lldp>";
}

size_t Table::neighbors() const {
    size_t count = 0;
    for_each_announcement(*this, [&](const Detail &, const Announcement &) { count++; });
    return count;
}

std::map<NeighborKey, int> neighbor_keys(const Table &table) {
    std::map<NeighborKey, int> keys;
    for_each_announcement(table, [&](const Detail &detail, const Announcement &made) {
        const std::string id = neighbor_id(detail.device, made.port);
        if (!id.empty())
            keys[{detail.interface, id}]++;
    });
    return keys;
}

bool ends_inside_a_character(const std::string &text) {
    size_t continued = 0;
    while (continued < text.size() &&
           (static_cast<unsigned char>(text[text.size() - 1 - continued]) & 0xc0) == 0x80)
        continued++;
    if (continued == text.size())
        return continued > 0;
    const auto lead = static_cast<unsigned char>(text[text.size() - 1 - continued]);
    const size_t wanted = lead >= 0xf0 ? 3 : lead >= 0xe0 ? 2 : lead >= 0xc0 ? 1 : 0;
    return continued != wanted;
}

bool meets_its_own_alone(const Table &table, const std::string &id, const Text &interface) {
    const std::string device = asked_device(id);
    const std::string port = asked_port(id);
    int met = 0;
    int named = 0;
    int both = 0;
    for_each_announcement(table, [&](const Detail &detail, const Announcement &made) {
        if (interface.has_value() && detail.interface != *interface)
            return;
        const bool meets = detail.device == device && (!made.port.has_value() || made.port == port);
        const bool has_id = neighbor_id(detail.device, made.port) == id;
        met += meets;
        named += has_id;
        both += meets && has_id;
    });
    return met == 1 && named == 1 && both == 1;
}

Table random_table(std::mt19937 &random, int neighbors) {
    Pick pick(random);
    Table table;
    const int cards = 1 + pick.below(3);
    for (int i = 0; i < cards; i++)
        table.cards.push_back(random_card(pick, "0/" + std::to_string(i), neighbors / cards));
    table.system = {{"chassis-id", pick.text()}, {"system-name", pick.text()}};
    return table;
}

std::string quoted(const std::string &value) {
    std::string text = "'";
    for (const char c : value)
        text.append(c == '\'' ? 2 : 1, c);
    return text + "'";
}

} // namespace yfw::host::test

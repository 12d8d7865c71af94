#include "sources/lldpd/neighbor_ids.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <string_view>

#include "base/utf8.h"
#include "yang/yang_text.h"

namespace yfw::sources::lldpd {
namespace {

constexpr const char *nameless = "[DISABLED]";
constexpr const char *nameless_shown = "DISABLED"; // clients see no brackets
constexpr char separator = '#';
constexpr size_t longest_id = 255; // with separator and port id

// The end of a device id that is made of chassis id and port id.
constexpr char mark = '~';
constexpr size_t digits = 16;
constexpr size_t suffix_size = 1 + digits;

std::string hexadecimal(std::string_view octets) {
    std::string text;
    for (const char octet : octets) {
        char two[4];
        std::snprintf(two, sizeof two, "%s%02x", text.empty() ? "" : ":", static_cast<unsigned char>(octet));
        text += two;
    }
    return text;
}

std::string port_of(const Neighbor &neighbor) {
    return id_text(neighbor.port_id, neighbor.port_id_octets).value_or("");
}

// Each part with its length, so that no two identifiers are alike.
void append(std::string &key, const std::optional<uint32_t> &subtype, const std::string &octets) {
    key += std::to_string(subtype.value_or(0)) + ':' + std::to_string(octets.size()) + ':' + octets;
}

// FNV-1a of 64 bits. Whoever crafts two identifiers with the same digits gains nothing that announcing
// another's identifier would not give.
uint64_t hash(std::string_view text) {
    uint64_t value = 0xcbf29ce484222325;
    for (const char c : text)
        value = (value ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return value;
}

std::string suffix_of(const Neighbor &neighbor) {
    char text[suffix_size + 1];
    std::snprintf(text, sizeof text, "%c%016llx", mark, static_cast<unsigned long long>(hash(msap(neighbor))));
    return text;
}

bool ends_like_a_suffix(std::string_view name) {
    if (name.size() < suffix_size)
        return false;
    name.remove_prefix(name.size() - suffix_size);
    return name.front() == mark && name.find_first_not_of("0123456789abcdef", 1) == std::string_view::npos;
}

std::string plain_id(const Neighbor &neighbor) {
    return clean(neighbor.chassis.name).value_or(nameless);
}

// Whether a name is no other neighbor's device id: clients take an id apart at the first separator.
bool is_unmistakable(const std::string &name) {
    return name != nameless && name != nameless_shown && name.find(separator) == std::string::npos &&
           !ends_like_a_suffix(name);
}

bool may_be_plain(const Neighbor &neighbor, const std::string &port) {
    const auto name = clean(neighbor.chassis.name);
    return name.value_or(nameless_shown).size() + 1 + port.size() <= longest_id &&
           (!name.has_value() || is_unmistakable(*name));
}

// If even the suffix does not fit, the whole is as long that the cut does not go through a character of the
// port id.
std::string marked_id(const Neighbor &neighbor, const std::string &port) {
    const std::string suffix = suffix_of(neighbor);
    constexpr size_t room = longest_id - 1 - suffix_size; // for name and port id
    if (port.size() >= room)
        return std::string(room - cut_between_characters(port, room).size(), mark) + suffix;
    std::string name = clean(neighbor.chassis.name).value_or(nameless_shown);
    std::replace(name.begin(), name.end(), separator, '_');
    return std::string(cut_between_characters(name, room - port.size())) + suffix;
}

} // namespace

std::optional<std::string> clean(const std::optional<std::string> &text) {
    return text.has_value() && !text->empty() && yang::is_yang_text(*text) ? text : std::nullopt;
}

// lldpd's library ends a text at its first zero octet.
std::optional<std::string> id_text(const std::string &text, const std::string &octets) {
    const bool is_cut = octets.size() > text.size() && octets.starts_with(text);
    if (!is_cut && clean(text).has_value())
        return text;
    const std::string &all = octets.empty() ? text : octets;
    return all.empty() ? std::nullopt : std::optional(hexadecimal(all));
}

std::string msap(const Neighbor &neighbor) {
    const Chassis &chassis = neighbor.chassis;
    std::string key;
    append(key, chassis.id_subtype, chassis.id_octets.empty() ? chassis.id : chassis.id_octets);
    append(key, neighbor.port_id_subtype,
           neighbor.port_id_octets.empty() ? neighbor.port_id : neighbor.port_id_octets);
    return key;
}

std::vector<std::string> device_ids(const std::vector<const Neighbor *> &neighbors) {
    std::map<std::pair<std::string, std::string>, size_t> bearers; // of a name and a port id
    std::vector<std::string> ports;
    for (const Neighbor *neighbor : neighbors) {
        ports.push_back(port_of(*neighbor));
        if (may_be_plain(*neighbor, ports.back()))
            bearers[{plain_id(*neighbor), ports.back()}]++;
    }
    std::vector<std::string> ids;
    for (size_t i = 0; i < neighbors.size(); i++) {
        const Neighbor &neighbor = *neighbors[i];
        const std::string plain = plain_id(neighbor);
        const bool is_plain = may_be_plain(neighbor, ports[i]) && bearers.at({plain, ports[i]}) == 1;
        ids.push_back(is_plain ? plain : marked_id(neighbor, ports[i]));
    }
    return ids;
}

std::string device_id(const Neighbor &neighbor) {
    return device_ids({&neighbor}).front();
}

} // namespace yfw::sources::lldpd

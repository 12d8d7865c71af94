#include "lab/topology_file.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <fstream>
#include <iterator>
#include <set>

#include <arpa/inet.h>

#include "base/error.h"
#include "lab/json_reader.h"

namespace yfw::lab {
namespace {

constexpr const char *port_form = "a port \"ROUTER:INTERFACE\"";
constexpr const char *capability_names[] = {"other",  "repeater",  "bridge", "wlan",
                                            "router", "telephone", "docsis", "station"};
constexpr size_t longest_interface_name = 15;
constexpr size_t longest_tlv_text = 255;    // the maximum length of a text in LLDP
constexpr size_t longest_tlv_content = 507; // 511 minus OUI and subtype

std::string names_of(const char *const *first, const char *const *last) {
    std::string result;
    for (; first != last; ++first)
        result += (result.empty() ? "" : ", ") + std::string(*first);
    return result;
}

std::string read_name(const JsonReader &reader) {
    constexpr const char *form = "a name of 1 to 32 letters, digits, - and _";
    std::string name = reader.text(form);
    if (!is_name(name))
        reader.expected(form);
    return name;
}

bool is_interface_name(const std::string &name) {
    if (name.empty() || name.size() > longest_interface_name || name == "lo" ||
        std::isalpha(static_cast<unsigned char>(name.front())) == 0)
        return false;
    return std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return c < 0x80 && (std::isalnum(c) != 0 || c == '-' || c == '_' || c == '.');
    });
}

// A text that lldpd's configuration language can express: it has two kinds of quotes, and no escape for a
// backslash.
std::string read_text(const JsonReader &reader) {
    constexpr const char *form =
        "a text of 1 to 255 bytes without control characters, without backslashes, and without "
        "both kinds of quotes at once";
    std::string text = reader.text(form);
    const bool plain = std::none_of(text.begin(), text.end(),
                                    [](unsigned char c) { return std::iscntrl(c) != 0 || c == '\\'; });
    const bool both = text.find('"') != std::string::npos && text.find('\'') != std::string::npos;
    if (text.empty() || text.size() > longest_tlv_text || !plain || both)
        reader.expected(form);
    return text;
}

// Parses bytes written as "00:80:c2"; returns nothing for any other text.
std::optional<std::vector<unsigned char>> bytes_of(const std::string &text) {
    std::vector<unsigned char> bytes;
    for (size_t i = 0; i < text.size(); i += 3) {
        unsigned value = 0;
        const char *digits = text.data() + i;
        const bool last = i + 2 == text.size();
        if (i + 2 > text.size() || (!last && (digits[2] != ':' || i + 3 == text.size())) ||
            std::from_chars(digits, digits + 2, value, 16).ptr != digits + 2)
            return std::nullopt;
        bytes.push_back(static_cast<unsigned char>(value));
    }
    return bytes;
}

std::vector<unsigned char> read_bytes(const JsonReader &reader, size_t least, size_t most,
                                      const std::string &form) {
    const auto bytes = bytes_of(reader.text(form));
    if (!bytes || bytes->size() < least || bytes->size() > most)
        reader.expected(form);
    return *bytes;
}

CustomTlv read_tlv(const JsonReader &reader) {
    reader.is_object_of({"oui", "subtype", "value"});
    CustomTlv tlv;
    tlv.oui = read_bytes(reader.member("oui", "three bytes like 00:80:c2"), 3, 3, "three bytes like 00:80:c2");
    tlv.subtype = static_cast<int>(reader.member("subtype", "a number from 0 to 255").number(0, 255));
    if (const auto content = reader.find("value"))
        tlv.content = read_bytes(*content, 0, longest_tlv_content, "up to 507 bytes like 61:62:63");
    return tlv;
}

std::vector<std::string> read_capabilities(const JsonReader &reader) {
    const std::string form = "one of " + names_of(std::begin(capability_names), std::end(capability_names));
    std::vector<std::string> result;
    for (const JsonReader &item : reader.items("an array of capabilities")) {
        const std::string name = item.text(form);
        if (std::find(std::begin(capability_names), std::end(capability_names), name) ==
            std::end(capability_names))
            item.expected(form);
        if (std::find(result.begin(), result.end(), name) != result.end())
            item.expected("each capability once");
        result.push_back(name);
    }
    return result;
}

bool is_address(const std::string &text) {
    const size_t slash = text.find('/');
    if (slash == std::string::npos)
        return false;
    const std::string host = text.substr(0, slash);
    const char *const end = text.data() + text.size();
    unsigned length = 0;
    const auto [stop, error] = std::from_chars(text.data() + slash + 1, end, length);
    unsigned char binary[16];
    // Some programs would read a leading zero as octal, others would ignore it.
    if (error != std::errc() || stop != end || (text[slash + 1] == '0' && slash + 2 != text.size()))
        return false;
    return (inet_pton(AF_INET, host.c_str(), binary) == 1 && length <= 32) ||
           (inet_pton(AF_INET6, host.c_str(), binary) == 1 && length <= 128);
}

std::vector<std::string> read_addresses(const JsonReader &reader) {
    constexpr const char *form = "an address with its prefix length, like 192.0.2.1/24 or 2001:db8::1/64";
    std::vector<std::string> result;
    for (const JsonReader &item : reader.items("an array of addresses")) {
        const std::string address = item.text(form);
        if (!is_address(address) || std::find(result.begin(), result.end(), address) != result.end())
            item.expected(form + std::string(", each once"));
        result.push_back(address);
    }
    return result;
}

// Reads the name of a router or a segment from an object with these members; the places of all later errors
// include it.
std::string read_own_name(JsonReader &reader, std::initializer_list<std::string_view> members) {
    std::string name;
    if (const auto found = reader.find("name")) {
        name = read_name(*found);
        reader.add_to_place(name);
    }
    reader.is_object_of(members);
    reader.member("name", "a unique name");
    return name;
}

Router read_router(JsonReader reader) {
    Router router;
    router.name = read_own_name(
        reader, {"name", "system-name", "system-description", "capabilities", "custom-tlvs", "addresses"});
    const auto system_name = reader.find("system-name");
    router.system_name = system_name ? read_text(*system_name) : router.name;
    const auto description = reader.find("system-description");
    router.system_description = description ? read_text(*description) : "Router " + router.name;
    if (const auto capabilities = reader.find("capabilities"))
        router.capabilities = read_capabilities(*capabilities);
    if (const auto tlvs = reader.find("custom-tlvs"))
        for (const JsonReader &item : tlvs->items("an array of custom TLVs"))
            router.custom_tlvs.push_back(read_tlv(item));
    if (const auto addresses = reader.find("addresses"))
        for (const auto &[interface, list] : addresses->members("an object of interfaces and their addresses"))
            router.addresses[interface] = read_addresses(list);
    return router;
}

class TopologyReader {
public:
    explicit TopologyReader(const JsonReader &file) : file_(file) {}

    Topology read() {
        file_.is_object_of({"routers", "links", "segments"});
        read_routers();
        if (const auto links = file_.find("links"))
            for (const JsonReader &item : links->items("an array of links"))
                read_link(item);
        if (const auto segments = file_.find("segments"))
            for (const JsonReader &item : segments->items("an array of segments"))
                read_segment(item);
        check_addresses();
        return std::move(topology_);
    }

private:
    void read_routers() {
        const JsonReader routers = file_.member("routers", "an array of routers");
        for (const JsonReader &item : routers.items("an array of routers")) {
            topology_.routers.push_back(read_router(item));
            if (!names_.insert(topology_.routers.back().name).second)
                item.member("name", "").expected("a name that no other router has");
        }
        if (topology_.routers.empty())
            routers.expected("at least one router");
        router_names_ = names_;
    }

    Port read_port(const JsonReader &reader) {
        const std::string text = reader.text(port_form);
        const size_t colon = text.find(':');
        if (colon == std::string::npos)
            reader.expected(port_form);
        Port port{text.substr(0, colon), text.substr(colon + 1)};
        if (!router_names_.contains(port.router))
            reader.expected(std::string(port_form) + " of a router of this file");
        if (!is_interface_name(port.interface))
            reader.expected(std::string(port_form) +
                            " whose interface has 1 to 15 letters, digits, -, _ and ., "
                            "starts with a letter, and is not lo");
        if (!ports_.emplace(port.router, port.interface).second)
            reader.expected("a port that is connected once");
        return port;
    }

    void read_link(const JsonReader &reader) {
        const std::string form = "two ports [\"ROUTER:INTERFACE\", \"ROUTER:INTERFACE\"] of different routers";
        const std::vector<JsonReader> ends = reader.items(form);
        if (ends.size() != 2)
            reader.expected(form);
        const Link link{read_port(ends[0]), read_port(ends[1])};
        if (link.first.router == link.second.router)
            reader.expected(form);
        topology_.links.push_back(link);
    }

    void read_segment(JsonReader reader) {
        Segment segment{read_own_name(reader, {"name", "ports"}), {}};
        if (!names_.insert(segment.name).second)
            reader.member("name", "").expected("a name that no router and no other segment has");
        const JsonReader ports = reader.member("ports", "an array of ports \"ROUTER:INTERFACE\"");
        for (const JsonReader &item : ports.items("an array of ports \"ROUTER:INTERFACE\""))
            segment.ports.push_back(read_port(item));
        if (segment.ports.size() < 2)
            ports.expected("at least two ports");
        topology_.segments.push_back(segment);
    }

    void check_addresses() const {
        const std::vector<JsonReader> items = file_.member("routers", "").items("");
        for (size_t i = 0; i < items.size(); ++i)
            for (const auto &[interface, list] : topology_.routers[i].addresses)
                if (!ports_.contains({topology_.routers[i].name, interface})) {
                    JsonReader router = items[i];
                    router.add_to_place(topology_.routers[i].name);
                    router.member("addresses", "")
                        .expected("addresses of interfaces that a link or a segment names");
                }
    }

    JsonReader file_;
    Topology topology_;
    std::set<std::string> router_names_;
    std::set<std::string> names_; // of routers and segments, since both become namespaces
    std::set<std::pair<std::string, std::string>> ports_;
};

} // namespace

bool is_name(const std::string &name) {
    constexpr size_t longest = 32;
    const auto is_plain = [](unsigned char c) { return c < 0x80 && std::isalnum(c) != 0; };
    return !name.empty() && name.size() <= longest && is_plain(static_cast<unsigned char>(name.front())) &&
           std::all_of(name.begin(), name.end(),
                       [&](unsigned char c) { return is_plain(c) || c == '-' || c == '_'; });
}

std::vector<std::string> Topology::interfaces_of(const std::string &router) const {
    std::vector<std::string> result;
    for (const auto &[port, heard] : peers())
        if (port.router == router)
            result.push_back(port.interface);
    return result;
}

std::vector<std::pair<Port, size_t>> Topology::peers() const {
    std::vector<std::pair<Port, size_t>> result;
    for (const Link &link : links) {
        result.emplace_back(link.first, 1);
        result.emplace_back(link.second, 1);
    }
    for (const Segment &segment : segments)
        for (const Port &port : segment.ports)
            result.emplace_back(port, segment.ports.size() - 1);
    return result;
}

Topology read_topology(nlohmann::json source, const std::string &file) {
    Topology topology = TopologyReader(JsonReader(source, file)).read();
    topology.source = std::move(source);
    return topology;
}

Topology read_topology_file(const std::filesystem::path &file) {
    std::error_code ignored;
    const bool directory = std::filesystem::is_directory(file, ignored); // reading a directory throws
    std::ifstream stream(file, std::ios::binary);
    std::string text;
    if (!directory)
        text.assign(std::istreambuf_iterator<char>(stream), {});
    if (directory || !stream.is_open() || stream.bad())
        throw Error(ErrorTag::invalid_value, file.string(), "expected a readable topology file");
    return read_topology(parse_json(text, file.string()), file.string());
}

} // namespace yfw::lab

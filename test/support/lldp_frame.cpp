#include "support/lldp_frame.h"

namespace yfw::test {

using namespace std::string_literals;

std::string lldp_tlv(int type, const std::string &content) {
    const size_t head = static_cast<size_t>(type) << 9 | content.size();
    return std::string{static_cast<char>(head >> 8), static_cast<char>(head & 0xff)} + content;
}

std::string from_hexadecimal(const std::string &digits) {
    std::string octets;
    for (size_t at = 0; at + 1 < digits.size(); at += 2)
        octets += static_cast<char>(std::stoi(digits.substr(at, 2), nullptr, 16));
    return octets;
}

std::string organization_tlv(const std::string &oui, int subtype, const std::string &content) {
    return lldp_tlv(127, from_hexadecimal(oui) + static_cast<char>(subtype) + content);
}

std::string mac_chassis(int last) {
    return "\x04\x00\x04\xf2\x00\x00"s + static_cast<char>(last);
}

std::string LldpFrame::octets() const {
    const std::string nearest_bridge = from_hexadecimal("0180c200000e"),
                      sender = from_hexadecimal("020000000001"), ether_type = from_hexadecimal("88cc");
    const std::string seconds{static_cast<char>(valid_for >> 8), static_cast<char>(valid_for & 0xff)};
    return nearest_bridge + sender + ether_type + lldp_tlv(1, chassis) + lldp_tlv(2, port) +
           lldp_tlv(3, seconds) + (name.has_value() ? lldp_tlv(5, *name) : "") + more + lldp_tlv(0, "");
}

} // namespace yfw::test

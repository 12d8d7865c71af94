// LLDP frames of neighbors that no daemon would be: IEEE Std 802.1AB clause 8.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace yfw::test {

/// A TLV of a type with its content.
std::string lldp_tlv(int type, const std::string &content);

/// An organizationally specific TLV: the organization's three octets in hexadecimal, "0012bb".
std::string organization_tlv(const std::string &oui, int subtype, const std::string &content);

/// Octets of hexadecimal digits.
std::string from_hexadecimal(const std::string &digits);

struct LldpFrame {
    std::string chassis; // subtype and id
    std::string port;    // subtype and id
    std::optional<std::string> name = {};
    std::string more = {};    // TLVs
    uint16_t valid_for = 120; // seconds; 0: the neighbor is gone

    /// As on the wire, to the nearest bridge.
    std::string octets() const;
};

/// A chassis id that is a MAC address with this last octet.
std::string mac_chassis(int last);

} // namespace yfw::test

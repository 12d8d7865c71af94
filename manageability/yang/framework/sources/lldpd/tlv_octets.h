// Writes the content of a TLV, most significant octet first.
#ifndef YFW_SOURCES_LLDPD_TLV_OCTETS_H
#define YFW_SOURCES_LLDPD_TLV_OCTETS_H

#include <string>
#include <string_view>
#include <utility>

#include "sources/lldpd/lldpd_state.h"

namespace yfw::sources::lldpd {

class TlvOctets {
public:
    TlvOctets(std::array<uint8_t, 3> oui, uint8_t subtype) {
        tlv_.oui = oui;
        tlv_.subtype = subtype;
    }

    // The `count` low octets of the number.
    TlvOctets &number(uint64_t value, int count) {
        while (count-- > 0)
            tlv_.octets += static_cast<char>(value >> (8 * count) & 0xff);
        return *this;
    }
    TlvOctets &octets(std::string_view text) {
        tlv_.octets += text;
        return *this;
    }
    TlvOctets &with_length(std::string_view text) { return number(text.size(), 1).octets(text); }

    operator CustomTlv() { return std::move(tlv_); }

private:
    CustomTlv tlv_;
};

} // namespace yfw::sources::lldpd

#endif

// LLDP-MED, ANSI/TIA-1057 clause 10.2.
#include <algorithm>
#include <charconv>
#include <cmath>

#include "sources/lldpd/organization_tlvs.h"
#include "sources/lldpd/tlv_octets.h"

namespace yfw::sources::lldpd {
namespace {

constexpr std::array<uint8_t, 3> tia = {0x00, 0x12, 0xbb};
constexpr uint8_t capabilities_subtype = 1, policy_subtype = 2, location_subtype = 3, power_subtype = 4;
constexpr uint8_t coordinates_format = 1, civic_format = 2, number_format = 3;

// A number of RFC 3825 section 2.1: a resolution, which is how many of its bits are meant, and a fraction in
// two's complement.
struct FixedPoint {
    int integer_bits, fraction_bits;
};
constexpr FixedPoint angle{9, 25};
constexpr FixedPoint height{22, 8};

// The text's digits tell its resolution: one decimal place is a little more than three bits.
std::optional<uint64_t> fixed_point(std::string_view text, bool negative, const FixedPoint &form) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !(std::abs(value) < 1e9))
        return std::nullopt;
    const size_t point = text.find('.');
    const auto places = static_cast<double>(point == std::string_view::npos ? 0 : text.size() - point - 1);
    const int bits = form.integer_bits + form.fraction_bits;
    const int resolution = std::min(bits, form.integer_bits + static_cast<int>(places * std::log2(10)));
    const double scaled = std::round(std::ldexp(negative ? -value : value, form.fraction_bits));
    const uint64_t mask = (uint64_t{1} << bits) - 1;
    return static_cast<uint64_t>(resolution) << bits |
           (static_cast<uint64_t>(static_cast<int64_t>(scaled)) & mask);
}

// "48.8566699N": the last letter tells the half of the globe.
std::optional<uint64_t> degrees(std::string_view text, char positive, char negative) {
    if (text.empty() || (text.back() != positive && text.back() != negative))
        return std::nullopt;
    return fixed_point(text.substr(0, text.size() - 1), text.back() == negative, angle);
}

} // namespace

CustomTlv med_capabilities(uint16_t capabilities, uint8_t device_class) {
    return TlvOctets(tia, capabilities_subtype).number(capabilities, 2).number(device_class, 1);
}

CustomTlv network_policy(const NetworkPolicy &policy) {
    const uint32_t bits = (policy.unknown ? 1u << 23 : 0u) | (policy.tagged ? 1u << 22 : 0u) |
                          (policy.vlan & 0xfffu) << 9 | (policy.priority & 7u) << 6 | (policy.dscp & 0x3fu);
    return TlvOctets(tia, policy_subtype).number(policy.application, 1).number(bits, 3);
}

std::optional<CustomTlv> coordinate_location(const Coordinates &coordinates) {
    const auto latitude = degrees(coordinates.latitude, 'N', 'S');
    const auto longitude = degrees(coordinates.longitude, 'E', 'W');
    const auto altitude = fixed_point(coordinates.altitude, false, height);
    if (!latitude.has_value() || !longitude.has_value() || !altitude.has_value())
        return std::nullopt;
    return TlvOctets(tia, location_subtype)
        .number(coordinates_format, 1)
        .number(*latitude, 5)
        .number(*longitude, 5)
        .number(uint64_t{coordinates.altitude_unit} << 36 | *altitude, 5)
        .number(coordinates.datum, 1);
}

std::optional<CustomTlv> civic_location(std::string_view country, std::string_view elements) {
    constexpr uint8_t of_the_client = 2;
    const size_t length = 1 + country.size() + elements.size();
    if (country.size() != 2 || length > UINT8_MAX)
        return std::nullopt;
    return TlvOctets(tia, location_subtype)
        .number(civic_format, 1)
        .number(length, 1)
        .number(of_the_client, 1)
        .octets(country)
        .octets(elements);
}

CustomTlv emergency_number(std::string_view digits) {
    return TlvOctets(tia, location_subtype).number(number_format, 1).octets(digits);
}

CustomTlv extended_power(const ExtendedPower &power) {
    return TlvOctets(tia, power_subtype)
        .number((power.type & 3u) << 6 | (power.source & 3u) << 4 | (power.priority & 15u), 1)
        .number(power.value, 2);
}

CustomTlv inventory(uint8_t subtype, std::string_view text) {
    return TlvOctets(tia, subtype).octets(text);
}

} // namespace yfw::sources::lldpd

#include "sources/lldpd/wire_limits.h"

#include "base/error.h"

namespace yfw::sources::lldpd {
namespace {

using Fault = std::optional<std::string>; // why LLDP cannot carry a value

// IEEE Std 802.1AB clauses 8.5.2.3, 8.5.6.2 and 8.5.7.2. A receiver discards frames with an empty or longer
// chassis id; a longer name or description is not the TLV that the standard defines, and one of more than 511
// octets overwrites the TLV's type.
constexpr size_t longest_text = 255; // octets

// IEEE Std 802.1AB clause 8.5.4: an integer of 16 bits. lldpd sends the product modulo 65536, which may be 0,
// "forget this neighbor".
constexpr uint64_t longest_time_to_live = 65535; // seconds

struct TextLimit {
    const char *leaf;
    const char *name;
    std::optional<std::string> WantedSettings::*text;
    size_t shortest; // octets
};
constexpr TextLimit text_limits[] = {
    {"system-name", "system name", &WantedSettings::system_name, 0},
    {"system-description", "system description", &WantedSettings::system_description, 0},
    {"chassis-id", "chassis id", &WantedSettings::chassis_id, 1},
};

Fault fault_of(const TextLimit &limit, const std::optional<std::string> &text) {
    if (!text.has_value() || (text->size() >= limit.shortest && text->size() <= longest_text))
        return std::nullopt;
    return std::string("a ") + limit.name + " has " + std::to_string(limit.shortest) + " to " +
           std::to_string(longest_text) + " octets in LLDP, not " + std::to_string(text->size());
}

Fault interval_fault(const std::optional<uint32_t> &interval, uint32_t hold_multiplier) {
    const uint64_t seconds = uint64_t{interval.value_or(usual_interval)} * hold_multiplier;
    if (seconds <= longest_time_to_live)
        return std::nullopt;
    return "lldpd sends " + std::to_string(hold_multiplier) +
           " times the interval as the time to live, which is " + std::to_string(longest_time_to_live) +
           " seconds at most";
}

void refuse(const char *leaf, const Fault &fault) {
    if (fault.has_value())
        throw Error(ErrorTag::invalid_value, std::string("/Tarvo-QD-ethernet-lldp-cfg:lldp/") + leaf, *fault);
}

} // namespace

void refuse_what_lldp_cannot_carry(const WantedSettings &before, const WantedSettings &after,
                                   uint32_t hold_multiplier) {
    for (const TextLimit &limit : text_limits)
        if (after.*limit.text != before.*limit.text)
            refuse(limit.leaf, fault_of(limit, after.*limit.text));
    if (after.transmit_interval != before.transmit_interval)
        refuse("timer", interval_fault(after.transmit_interval, hold_multiplier));
}

WantedSettings without_what_lldp_cannot_carry(WantedSettings settings, uint32_t hold_multiplier) {
    for (const TextLimit &limit : text_limits)
        if (fault_of(limit, settings.*limit.text).has_value())
            (settings.*limit.text).reset();
    if (interval_fault(settings.transmit_interval, hold_multiplier).has_value())
        settings.transmit_interval.reset();
    return settings;
}

} // namespace yfw::sources::lldpd

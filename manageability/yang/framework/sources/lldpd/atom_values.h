// Values of lldpd's objects. The library has several ways to say that there is none.
#ifndef YFW_SOURCES_LLDPD_ATOM_VALUES_H
#define YFW_SOURCES_LLDPD_ATOM_VALUES_H

#include <cstdint>
#include <optional>
#include <string>

#include <lldpctl.h>

namespace yfw::sources::lldpd {

// For some missing values the library returns an empty text. Octets behind a zero are lost.
inline std::optional<std::string> text(lldpctl_atom_t *atom, lldpctl_key_t key) {
    const char *found = lldpctl_atom_get_str(atom, key);
    return found != nullptr && *found != '\0' ? std::optional<std::string>(found) : std::nullopt;
}

// For a missing value the library returns a negative number.
template <class Number> std::optional<Number> number(lldpctl_atom_t *atom, lldpctl_key_t key) {
    const long found = lldpctl_atom_get_int(atom, key);
    return found >= 0 ? std::optional<Number>(static_cast<Number>(found)) : std::nullopt;
}

// 0 for a missing value, as lldpd has it for what a neighbor did not announce.
template <class Number> Number number_or_zero(lldpctl_atom_t *atom, lldpctl_key_t key) {
    return number<Number>(atom, key).value_or(Number{0});
}

inline std::string octets(lldpctl_atom_t *atom, lldpctl_key_t key) {
    size_t length = 0;
    const uint8_t *found = lldpctl_atom_get_buffer(atom, key, &length);
    return found != nullptr ? std::string(reinterpret_cast<const char *>(found), length) : std::string();
}

} // namespace yfw::sources::lldpd

#endif

// The leaves that can be set and their values, derived from the YANG models.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace yfw::test {

/// A value of a leaf that the OpenConfig model allows.
struct LegalValue {
    std::string name{}; // letters, digits and "_"; unique
    std::string leaf;   // schema path: /lldp/config/hello-timer
    std::string text;
    std::string canonical{};     // as an answer spells it
    bool native_holds_it = true; // whether the native model can represent it
};

void PrintTo(const LegalValue &value, std::ostream *to);

/// All values of enumerations, identities and booleans; bounds and samples of numbers and texts; for every leaf
/// and leaf-list of /lldp/config, and "enabled" of an interface's configuration.
std::vector<LegalValue> legal_values();

/// The schema paths of every leaf and leaf-list that can be set, except list keys.
std::vector<std::string> settable_leaves();

} // namespace yfw::test

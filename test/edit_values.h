// The leaves that can be set and their values, made from the YANG models.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace yfw::test {

/// A value of a leaf that the OpenConfig model allows.
struct LegalValue {
    std::string name{}; // of letters, digits and "_"; unlike that of every other value
    std::string leaf;   // schema path: /lldp/config/hello-timer
    std::string text;
    std::string canonical{};     // as an answer writes it
    bool native_holds_it = true; // whether the native model has a place for it
};

void PrintTo(const LegalValue &value, std::ostream *to);

/// All values of enumerations, identities and booleans; bounds and samples of numbers and texts; for every leaf
/// and leaf-list of /lldp/config, and "enabled" of an interface's configuration.
std::vector<LegalValue> legal_values();

/// The schema paths of every leaf and leaf-list that can be set, but for the keys of lists.
std::vector<std::string> settable_leaves();

} // namespace yfw::test

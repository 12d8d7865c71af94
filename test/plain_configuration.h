// What an OpenConfig configuration must be after edits: a plain tree with the rules of RFC 6241, section 7.2.
// It knows no device, no mapping and no libyang.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace yfw::test {

/// A node of an edit, or of a configuration, where operations are empty.
struct PlainNode {
    std::string name{};
    std::string value{};     // of a leaf or an entry of a leaf-list; of a list entry, its key "name"
    std::string operation{}; // of RFC 6241; empty: inherited
    std::vector<PlainNode> children{};
};

/// A node as XML; the prefix "nc" is NETCONF's, "types" that of openconfig-lldp-types.
std::string xml_of(const PlainNode &node);

/// /lldp as an edit document with these nodes below it.
std::string document_of(const PlainNode &lldp);

/// Whether an operation of the edit depends on what exists, so that the edit may fail when it is repeated.
bool asks_what_exists(const PlainNode &edit);

class PlainConfiguration {
public:
    /// Applies an edit to /lldp. Returns the error tag when it must be refused, and changes nothing then.
    std::string apply(const PlainNode &lldp, const std::string &default_operation);

    /// As a document without operations.
    std::string document() const { return document_of(root_); }

    /// Its nodes with values, one per line: "/lldp/config/hello-timer = 30".
    std::set<std::string> lines() const;

    /// The values of the leaf, or the leaf-list, of /lldp/config.
    std::vector<std::string> values(const std::string &leaf) const;
    std::vector<std::string> interfaces() const;
    /// "enabled" of an interface's configuration; nothing where it is not set.
    std::optional<std::string> enabled(const std::string &interface) const;

    /// Adds a node of /lldp/config, or an interface, to what is there at first.
    void add(const std::string &leaf, const std::string &value);
    void add_interface(const std::string &name, const std::optional<std::string> &enabled);

private:
    PlainNode root_{.name = "lldp"};
};

} // namespace yfw::test

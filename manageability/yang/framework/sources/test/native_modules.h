// The native modules, and their data as text.
#ifndef YFW_SOURCES_TEST_NATIVE_MODULES_H
#define YFW_SOURCES_TEST_NATIVE_MODULES_H

#include <string>
#include <vector>

#include "sources/lldpd/lldpd_state.h"
#include "yang/data_tree.h"

namespace yfw::sources::test {

// Loaded on first use.
const ly_ctx *native_modules();

// Native data from XML. Throws std::runtime_error.
yang::DataTree native_data(const std::string &xml);

// libyang's message when the data is invalid; empty when it is valid.
std::string fault_of(const yang::DataTree &data);

// The leaves of a neighbor's announcements in the operational data: "mib/combined-capabilities=65537".
std::vector<std::string> announcements(const lldpd::Neighbor &neighbor);

// The values of the leaves that an XPath expression selects in the operational data of the state.
std::vector<std::string> operational_values(const lldpd::State &state, const std::string &xpath);

// A state with one port, "eth1", that has heard these neighbors.
lldpd::State state_of(std::vector<lldpd::Neighbor> neighbors);

// A neighbor with the mandatory TLVs and a name.
lldpd::Neighbor neighbor_named(const std::string &name, const std::string &port = "eth7");

} // namespace yfw::sources::test

#endif

// The native modules, and data of theirs as text.
#ifndef YFW_SOURCES_TEST_NATIVE_MODULES_H
#define YFW_SOURCES_TEST_NATIVE_MODULES_H

#include <string>
#include <vector>

#include "sources/lldpd/lldpd_state.h"
#include "yang/data_tree.h"

namespace yfw::sources::test {

// Loaded when first asked for.
const ly_ctx *native_modules();

// Native data from XML. Throws std::runtime_error.
yang::DataTree native_data(const std::string &xml);

// Whether the data is as the modules demand: libyang's message, empty when it is.
std::string fault_of(const yang::DataTree &data);

// What the operational data holds below the announcements of an interface's neighbor,
// "mib/combined-capabilities=65537".
std::vector<std::string> announcements(const lldpd::Neighbor &neighbor);

// The values of the leaves that an XPath expression selects in the operational data of the state.
std::vector<std::string> operational_values(const lldpd::State &state, const std::string &xpath);

// A state with one port, "eth1", that heard these.
lldpd::State state_of(std::vector<lldpd::Neighbor> neighbors);

// A neighbor that tells what every neighbor must tell, and its name.
lldpd::Neighbor neighbor_named(const std::string &name, const std::string &port = "eth7");

} // namespace yfw::sources::test

#endif

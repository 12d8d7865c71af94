// Values and data to try a mapping with.
#ifndef YFW_COVERAGE_SAMPLES_H
#define YFW_COVERAGE_SAMPLES_H

#include <string>
#include <vector>

#include "host/mapping_description.h"
#include "yang/data_tree.h"
#include "yang/path.h"
#include "yang/schemas.h"

namespace yfw::coverage {

// Values that the leaf's type allows: each one of booleans, enumerations and identities, some of any other
// type.
std::vector<std::string> sample_values(const lysc_node *leaf);

// Whether these are all that it allows.
bool are_all_values(const lysc_node *leaf);

// The path of the node, with a sample value for each key.
yang::Path sample_path(const lysc_node *node);

// Native data with every node of the mapping's native modules, one entry in each list. Leaves that its
// description gives a value for have that value.
yang::DataTree whole_native_data(const yang::Schemas &schemas, const host::MappingDescription &mapping);

// The native configuration that switches the protocol on, and nothing else; NULL where nothing does.
yang::DataTree native_data_of_on(const yang::Schemas &schemas, const host::MappingDescription &mapping);

} // namespace yfw::coverage

#endif

// Native edits as they come from the plug-in, applied to a native configuration.
#ifndef YFW_DEVICE_NATIVE_EDITS_H
#define YFW_DEVICE_NATIVE_EDITS_H

#include <string>
#include <vector>

#include "host/native_paths.h"
#include "yang/data_tree.h"
#include "yang/schemas.h"

namespace yfw::device {

// Applies the edits in their order to `configuration`, which may be NULL and is left half-changed when this
// throws: callers hand in a copy. Throws Error that names the native path: a leaf without a value, a value out
// of its type.
void apply_native_edits(const yang::Schemas &schemas, const std::vector<host::NativePath> &edits,
                        yang::DataTree &configuration);

// Holds the configuration to every rule of its models; throws Error.
void validate_configuration(const yang::Schemas &schemas, yang::DataTree &configuration);

} // namespace yfw::device

#endif

// Applies the plug-in's native edits to a native configuration.
#ifndef YFW_DEVICE_NATIVE_EDITS_H
#define YFW_DEVICE_NATIVE_EDITS_H

#include <string>
#include <vector>

#include "host/native_paths.h"
#include "yang/data_tree.h"
#include "yang/schemas.h"

namespace yfw::device {

// Applies the edits in order to `configuration`, which may be NULL. On an exception it is left partly changed,
// so pass a copy. Throws Error with the native path: for a leaf without a value, or a value invalid for its
// type.
void apply_native_edits(const yang::Schemas &schemas, const std::vector<host::NativePath> &edits,
                        yang::DataTree &configuration);

// Validates the configuration against its models; throws Error with the native node.
void validate_configuration(const yang::Schemas &schemas, yang::DataTree &configuration);

} // namespace yfw::device

#endif

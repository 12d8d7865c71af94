// Nodes as paths of responses.
#ifndef YFW_FRONTENDS_GNMI_DATA_RESPONSE_PATH_H
#define YFW_FRONTENDS_GNMI_DATA_RESPONSE_PATH_H

#include <gnmi.pb.h>

#include "frontends/gnmi/data/snapshot.h"
#include "frontends/gnmi/paths/path_pattern.h"

namespace yfw::gnmi {

// Sets `to` to the absolute path of a node, with the keys of all entries on it. Identities are bare.
void set_path(::gnmi::Path &to, const Snapshot &snapshot, Snapshot::Index node);

// Appends the element of a node.
void add_element(::gnmi::Path &to, const Snapshot &snapshot, Snapshot::Index node);

// The path of a pattern; keys without a value are left out.
::gnmi::Path path_of(const PathPattern &pattern);

} // namespace yfw::gnmi

#endif

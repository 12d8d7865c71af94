// Values of a Set as edits.
#ifndef YFW_FRONTENDS_GNMI_VALUES_GIVEN_EDIT_H
#define YFW_FRONTENDS_GNMI_VALUES_GIVEN_EDIT_H

#include <string>

#include <gnmi.pb.h>

#include "frontends/gnmi/paths/path_pattern.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::gnmi {

// Which existing data the value takes away.
enum class Keeps {
    rest,   // none (update)
    nothing // what the value does not hold (replace)
};

// The edit that gives the node this value: a scalar for a leaf, an array of them for a leaf-list, or JSON for
// any node. `place`: the path as the client wrote it. Throws Refusal, INVALID_ARGUMENT, for a value that the
// node cannot have, and Error with the path of the node at fault.
yang::EditNode edit_of(const yang::Schemas &schemas, const PathPattern &path, const ::gnmi::TypedValue &value,
                       Keeps keeps, const std::string &place);

// The edit of a node alone, with the steps that lead to it.
yang::EditNode edit_at(const yang::Schemas &schemas, const PathPattern &path, yang::Operation operation);

} // namespace yfw::gnmi

#endif

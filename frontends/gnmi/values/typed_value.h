// Leaves as typed values.
#ifndef YFW_FRONTENDS_GNMI_VALUES_TYPED_VALUE_H
#define YFW_FRONTENDS_GNMI_VALUES_TYPED_VALUE_H

#include <gnmi.pb.h>

#include "frontends/gnmi/data/snapshot.h"
#include "frontends/gnmi/values/json_value.h"

namespace yfw::gnmi {

// How values of a response are written. Throws Refusal, UNIMPLEMENTED, for an encoding that is not served.
void check_encoding(::gnmi::Encoding encoding);

// The encodings that are served.
constexpr ::gnmi::Encoding served_encodings[] = {::gnmi::JSON, ::gnmi::JSON_IETF, ::gnmi::PROTO};

JsonForm json_form(::gnmi::Encoding encoding);

// A leaf's value by its YANG type; of a leaf-list, whose first value `node` is, all values.
void set_typed(::gnmi::TypedValue &to, const Snapshot &snapshot, Snapshot::Index node);

// One value.
void set_typed(::gnmi::TypedValue &to, const lysc_node *leaf, const char *value);

// A text of JSON, in the field of its form.
void set_json(::gnmi::TypedValue &to, JsonForm form, std::string json);

} // namespace yfw::gnmi

#endif

// Values that are identities.
#ifndef YFW_YANG_IDENTITY_VALUE_H
#define YFW_YANG_IDENTITY_VALUE_H

#include <string>

#include <libyang/libyang.h>

namespace yfw::yang {

// A value of the type with the name of its module, which the model requires, if it is an identity that was
// given without. Other values, and those of other types, stay as they are.
std::string qualified_identity(const lysc_type *type, const std::string &value);

} // namespace yfw::yang

#endif

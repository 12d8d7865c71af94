// Says why a value is refused, and what is allowed instead.
#ifndef YFW_YANG_REFUSED_VALUE_H
#define YFW_YANG_REFUSED_VALUE_H

#include <string>
#include <string_view>

#include <libyang/libyang.h>

namespace yfw::yang {

// "\"3\" is not allowed: expected a number from 5 to 65534". Long values are shortened.
std::string refused_value(const lysc_node *leaf, std::string_view value);

} // namespace yfw::yang

#endif

// The module of deviations that makes an OpenConfig module exactly what a device serves of it.
#ifndef YFW_COVERAGE_DEVIATIONS_H
#define YFW_COVERAGE_DEVIATIONS_H

#include <string>

#include "coverage/coverage.h"

namespace yfw::coverage {

// The name of the module: "yfw-MODULE-devs".
std::string deviations_name(const std::string &module);

// Its text (RFC 7950 section 7.20.3), deterministic. It deviates from the module of the first row and those
// that augment it. Empty when there is nothing to deviate from.
std::string deviations_of(const Coverage &coverage);

} // namespace yfw::coverage

#endif

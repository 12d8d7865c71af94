// The schemas of the tests.
#ifndef YANG_TEST_TEST_SCHEMAS_H
#define YANG_TEST_TEST_SCHEMAS_H

#include <string_view>

#include "yang/path.h"
#include "yang/schemas.h"

namespace yfw::yang::test {

// The shipped mapping's modules.
const MappedModules &models();

// Loaded on first use.
const Schemas &schemas();

// A path into the OpenConfig model. Throws Error.
Path path(std::string_view text);

} // namespace yfw::yang::test

#endif

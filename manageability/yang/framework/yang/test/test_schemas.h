// The schemas of the tests.
#ifndef YANG_TEST_TEST_SCHEMAS_H
#define YANG_TEST_TEST_SCHEMAS_H

#include <string_view>

#include "yang/path.h"
#include "yang/schemas.h"

namespace yfw::yang::test {

// Of the shipped mapping.
const MappedModules &models();

// Loaded when first asked for.
const Schemas &schemas();

// A path into the OpenConfig model. Throws Error.
Path path(std::string_view text);

} // namespace yfw::yang::test

#endif

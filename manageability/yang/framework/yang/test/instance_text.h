// Read-only instance data as text.
#ifndef YFW_YANG_TEST_INSTANCE_TEXT_H
#define YFW_YANG_TEST_INSTANCE_TEXT_H

#include <string>

#include "yang/instance_tree.h"

namespace yfw::yang::test {

// The trees, sorted, as XML without white space between elements.
std::string text_of(const InstanceForest &forest);

} // namespace yfw::yang::test

#endif

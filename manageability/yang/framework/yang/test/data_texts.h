// Trees as text, so that a test can state what it expects of them in one line.
#ifndef YANG_TEST_DATA_TEXTS_H
#define YANG_TEST_DATA_TEXTS_H

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "yang/data_tree.h"

namespace yfw::yang::test {

using Lines = std::vector<std::string>;

// One line per leaf that is not a key, "/lldp/config/enabled=true", in the order of the data; containers and
// list entries that hold nothing but keys appear without a value. Module names are left out of the paths.
Lines leaves(const lyd_node *data);

// Whether the lines are equal; on failure, reports what each side lacks, truncated to a readable length.
testing::AssertionResult same(const Lines &found, const Lines &wanted);

// The remainders of the lines that start with `prefix`.
Lines below(const Lines &lines, std::string_view prefix);

// The data as XML.
std::string xml(const lyd_node *data);

} // namespace yfw::yang::test

#endif

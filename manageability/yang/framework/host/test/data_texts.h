// Trees as text, so that a test can state what it expects of them in one line.
#ifndef HOST_TEST_DATA_TEXTS_H
#define HOST_TEST_DATA_TEXTS_H

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "host/data_tree.h"
#include "host/native_selection.h"
#include "host/request.h"
#include "yfw_map.h"

namespace yfw::host::test {

using Lines = std::vector<std::string>;

// One line a leaf that is no key, "/lldp/config/enabled=true", in the data's order; containers and list
// entries that hold nothing but keys stand without a value. Module names are left out of the paths.
Lines leaves(const lyd_node *data);

// Whether the lines are equal; when not, what one side has and the other has not, cut to what can be read.
testing::AssertionResult same(const Lines &found, const Lines &wanted);

// What follows `prefix` in the lines that start with it.
Lines below(const Lines &lines, std::string_view prefix);

// "lldp{config{enabled} interfaces{interface{name=eth1 state}}}"; a leaf that is selected for its own sake and
// narrows too has a "!".
std::string text(const Selection &selection);

// The same for native selections; what is selected whole has a "*".
std::string text(const SelectedNode &selection);

// The same for the plug-in's trees; keys are marked with "@", values stand in quotes.
std::string text(const tidl_yfw_datatree &node);

// The data as XML.
std::string xml(const lyd_node *data);

} // namespace yfw::host::test

#endif

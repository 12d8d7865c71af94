// Selections and the plug-in's trees as text, so that a test can state in one line what it expects of them.
#ifndef HOST_TEST_DATA_TEXTS_H
#define HOST_TEST_DATA_TEXTS_H

#include <string>

#include "host/native_selection.h"
#include "host/request.h"
#include "yang/test/data_texts.h"
#include "yfw_map.h"

namespace yfw::host::test {

using yang::test::below;
using yang::test::leaves;
using yang::test::Lines;
using yang::test::same;
using yang::test::xml;

// "lldp{config{enabled} interfaces{interface{name=eth1 state}}}"; "!" marks a leaf that is both selected and
// used as a predicate.
std::string text(const Selection &selection);

// The same for native selections; "*" marks a node selected with everything below it.
std::string text(const SelectedNode &selection);

// The same for the plug-in's trees; keys are marked with "@", values are quoted.
std::string text(const tidl_yfw_datatree &node);

} // namespace yfw::host::test

#endif

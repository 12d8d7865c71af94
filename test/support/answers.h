// Checks whether an answer is valid, and reads what it contains.
#pragma once

#include <string>
#include <vector>

#include "yang/data_tree.h"

namespace yfw::test {

enum class Format { json, xml };

/// The value of --format.
const char *format_name(Format format);

using Context = yang::YangContext;
using Tree = yang::DataTree;

/// The OpenConfig modules of the repository. Throws std::runtime_error when they cannot be loaded.
Context openconfig_modules();

/// Parses an answer: every node must be known and every value must fit its type. A tree without nodes is
/// null. Throws std::runtime_error with the parser's message. The context must outlive the tree.
Tree parse_answer(const ly_ctx *context, Format format, const std::string &answer);
// The same for what `yfw get` printed, which has to have the bytes that libyang would have printed.
Tree parse_printed(const ly_ctx *context, Format format, const std::string &answer);

/// Paths of the list keys whose value differs from the leaf of the same name under "config" or "state".
std::vector<std::string> keys_unlike_their_twins(const lyd_node *tree);

/// The values of the nodes that an XPath expression selects, in the order of the tree.
std::vector<std::string> values_at(const lyd_node *tree, const std::string &xpath);

/// The tree as text; trees with the same data give the same text.
std::string as_text(const lyd_node *tree);

/// The same for the subtrees that an XPath expression selects.
std::string as_text(const lyd_node *tree, const std::string &xpath);

/// Replaces each date-and-time with milliseconds by "<timestamp +HH:MM>": the time differs from run to run, its
/// form and its zone do not.
std::string without_times(const std::string &text);

} // namespace yfw::test

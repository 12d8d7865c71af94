// What a device's configuration holds, in the form of PlainConfiguration::lines().
#pragma once

#include <set>
#include <string>

#include "plain_configuration.h"
#include "support/answers.h"

namespace yfw::test {

/// The nodes with values of an OpenConfig answer, one per line: "/lldp/config/hello-timer = 30". Identities are
/// without their module.
std::set<std::string> lines_of_tree(const lyd_node *tree);

/// The configuration of an answer.
PlainConfiguration plain(const lyd_node *tree);

/// The lines of `now` that are not in `then`, with "+", and the other way round, with "-"; for messages.
std::string difference(const std::set<std::string> &then, const std::set<std::string> &now);

} // namespace yfw::test

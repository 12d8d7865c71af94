// What a native configuration must say for an OpenConfig configuration to be in force.
#pragma once

#include <set>
#include <string>

#include "plain_configuration.h"

namespace yfw::test {

/// The settings of a native configuration, XML, that OpenConfig has: "timer = 30" or "eth1 enable = true". Of
/// the global switch, only whether it is on.
std::set<std::string> native_settings(const std::string &native);

/// How a native configuration, XML, differs from what the configuration must lead to, as by difference(): of
/// the settings that OpenConfig has, "timer = 30" or "eth1 enable = true". While LLDP is switched off, there is
/// none. Those of interfaces are not compared where the configuration does not say whether LLDP runs, and it
/// does not; nor is whether it runs.
std::string native_difference(const PlainConfiguration &configuration, const std::string &native);

} // namespace yfw::test

// What a native configuration must say for an OpenConfig configuration to be in force.
#pragma once

#include <string>

#include "plain_configuration.h"

namespace yfw::test {

/// How a native configuration, XML, differs from what the configuration must lead to, as by difference(): of
/// the settings that OpenConfig has, "timer = 30" or "eth1 enable = true". While LLDP is switched off, there is
/// none for the device as a whole, and those of interfaces are not compared. Nor is whether LLDP runs where the
/// configuration does not say so.
std::string native_difference(const PlainConfiguration &configuration, const std::string &native);

} // namespace yfw::test

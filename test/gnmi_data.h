// What gNMI answers, as libyang's data.
#pragma once

#include <string>

#include <gnmi.pb.h>
#include <libyang/libyang.h>

#include "support/answers.h"

namespace yfw::test {

/// A node of OpenConfig LLDP's data as a gNMI path; keys that are identities are left out.
::gnmi::Path gnmi_path(const lyd_node *node);

/// The same path as XPath and the program write it; each name with this prefix, such as "l:".
std::string path_text(const ::gnmi::Path &path, const std::string &prefix);

/// Puts the updates of a response together. Throws std::runtime_error for a value that the models do not allow.
Tree data_of(const ly_ctx *modules, const ::gnmi::GetResponse &response);

} // namespace yfw::test

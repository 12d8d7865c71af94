// Access rules for tests, and the data they apply to.
#ifndef YFW_DEVICE_ACCESS_TEST_NACM_FIXTURE_H
#define YFW_DEVICE_ACCESS_TEST_NACM_FIXTURE_H

#include <string>
#include <vector>

#include "device/access/nacm.h"
#include "yang/data_tree.h"

namespace yfw::access::test {

// ---- rules in XML; oc, mon, one and two are prefixes of the modules below -------------------------------

std::string permit(const std::string &what, const std::string &accesses = "*");
std::string deny(const std::string &what, const std::string &accesses = "*");

// The subject of a rule; concatenate these texts.
std::string module(const std::string &name);
std::string operation(const std::string &name);
std::string notification(const std::string &name);
std::string path(const std::string &name);

// A rule list; with no groups, it matches nobody.
std::string rules_of(const std::vector<std::string> &groups, const std::string &rules);
// A rule list for all groups.
std::string all_groups(const std::string &rules);

// A complete <nacm>.
std::string document(const std::string &inside);

// Loads the document from a temporary file. Rules may name nodes of openconfig-lldp, ietf-netconf-monitoring
// and the test's own modules.
Nacm load(const std::string &inside);

// The rules for a user in the external groups "staff" and "wheel".
UserRules rules_for_ann(const Nacm &nacm);

// ---- data ------------------------------------------------------------------------------------------------

// Contains every module that rules may name.
const ly_ctx *everything();
// Contains openconfig-lldp only.
const ly_ctx *openconfig_only();

// Without default values; not validated. An empty text yields no data.
yang::DataTree parse(const std::string &xml, const ly_ctx *context);
// With everything that validation adds.
yang::DataTree parse_valid(const std::string &xml, const ly_ctx *context);
// On one line, including empty containers.
std::string print(const yang::DataTree &data);

std::string lldp(const std::string &inside);
std::string in_one(const std::string &inside); // the container <one> of the test's first module

} // namespace yfw::access::test

#endif

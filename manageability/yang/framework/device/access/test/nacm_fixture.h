// Access rules of tests, and the data that they are about.
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

// What a rule is about; the texts are joined.
std::string module(const std::string &name);
std::string operation(const std::string &name);
std::string notification(const std::string &name);
std::string path(const std::string &name);

// A rule list; without groups it has none.
std::string rules_of(const std::vector<std::string> &groups, const std::string &rules);
// A rule list for all groups.
std::string all_groups(const std::string &rules);

// A whole <nacm>.
std::string document(const std::string &inside);

// The document's rules, loaded from a file of this content. Rules may name nodes of openconfig-lldp,
// ietf-netconf-monitoring and of the test's own modules.
Nacm load(const std::string &inside);

// Of a user in the groups "staff" and "wheel", which are external.
UserRules rules_for_ann(const Nacm &nacm);

// ---- data ------------------------------------------------------------------------------------------------

// Has every module that rules may name.
const ly_ctx *everything();
// Has openconfig-lldp only.
const ly_ctx *openconfig_only();

// Without values by default; not validated. An empty text is no data.
yang::DataTree parse(const std::string &xml, const ly_ctx *context);
// With all that a validation adds.
yang::DataTree parse_valid(const std::string &xml, const ly_ctx *context);
// In one line, empty containers as well.
std::string print(const yang::DataTree &data);

std::string lldp(const std::string &inside);
std::string in_one(const std::string &inside); // the container <one> of the test's first module

} // namespace yfw::access::test

#endif

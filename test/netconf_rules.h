// Access rules in a file, and the local users that they apply to.
#pragma once

#include <string>
#include <vector>

#include "netconf_server.h"

namespace yfw::test {

/// A <nacm> document with this content.
std::string nacm(const std::string &content);
/// A <rule-list> for a group ("*": everybody) with these rules.
std::string rules_for(const std::string &group, const std::string &rules);

/// Rules, each with a unique name. `operations`: "read", "create update", "*" and so on; `action`: permit or
/// deny. In paths, the prefix "oc" is OpenConfig LLDP and "ncm" is ietf-netconf-monitoring.
std::string data_rule(const std::string &path, const std::string &operations, const std::string &action);
std::string rpc_rule(const std::string &module, const std::string &rpc, const std::string &action);
std::string notification_rule(const std::string &module, const std::string &name, const std::string &action);
/// A rule for everything in a module.
std::string module_rule(const std::string &module, const std::string &operations, const std::string &action);
/// Permits writing everything that has no rule.
inline const std::string writable = "<write-default>permit</write-default>";

/// Why the test cannot connect as other local users; empty when it can.
std::string users_obstacle();

/// A temporary file with access rules.
class RulesFile {
public:
    explicit RulesFile(const std::string &content) : path_(directory_.add("rules.xml", content)) {}
    const std::string &path() const { return path_; }

private:
    TemporaryDirectory directory_;
    std::string path_;
};

/// Local users that every machine has, and their groups, which are given to the server.
inline const std::string reader = "nobody", readers = "nogroup";
inline const std::string writer = "daemon", writers = "daemon";
inline const std::string stranger = "bin";
/// The server's options that name these groups.
std::vector<std::string> group_options();

/// A server with these rules, for a reader, a writer and root, to whom the rules apply as well. Where a test
/// cannot connect as these users, its tests are skipped, or fail if laboratories are required.
class WithRules {
protected:
    explicit WithRules(const std::string &content) : rules_(nacm(content)) {}
    RulesFile rules_;
};

class NetconfRules : private WithRules, public NetconfTest {
protected:
    /// `content`: of the <nacm>; if empty, the server gets no rules file.
    explicit NetconfRules(const std::string &content = "");
    void SetUp() override;

    NetconfClient client_of(const std::string &user) {
        return NetconfClient(server().socket(), {base_1_0, base_1_1}, user);
    }
};

} // namespace yfw::test

// Rules of access: a file of them, and the local users that they are for.
#pragma once

#include <string>
#include <vector>

#include "netconf_server.h"

namespace yfw::test {

/// A <nacm> document with this content.
std::string nacm(const std::string &content);
/// A <rule-list> for a group ("*": everybody) with these rules.
std::string rules_for(const std::string &group, const std::string &rules);

/// Rules with a name of their own. `operations`: "read", "create update", "*" and so on; `action`: permit or
/// deny. Paths have the prefix "oc" for OpenConfig LLDP and "ncm" for the monitoring of the server.
std::string data_rule(const std::string &path, const std::string &operations, const std::string &action);
std::string rpc_rule(const std::string &module, const std::string &rpc, const std::string &action);
std::string notification_rule(const std::string &module, const std::string &name, const std::string &action);
/// For all that a module has.
std::string module_rule(const std::string &module, const std::string &operations, const std::string &action);
/// Everything that has no rule may be written.
inline const std::string writable = "<write-default>permit</write-default>";

/// Why no other local users can be played here; empty when they can.
std::string users_obstacle();

/// A file with the rules.
class RulesFile {
public:
    explicit RulesFile(const std::string &content) : path_(directory_.add("rules.xml", content)) {}
    const std::string &path() const { return path_; }

private:
    TemporaryDirectory directory_;
    std::string path_;
};

/// Local users that every machine has, in the groups that the server is told.
inline const std::string reader = "nobody", readers = "nogroup";
inline const std::string writer = "daemon", writers = "daemon";
inline const std::string stranger = "bin";
/// The options that name these groups.
std::vector<std::string> group_options();

/// A server that holds these rules, with a reader, a writer and root, whom the rules bind too. Skips its tests
/// where these users cannot be played, or fails them where a laboratory is required.
class WithRules {
protected:
    explicit WithRules(const std::string &content) : rules_(nacm(content)) {}
    RulesFile rules_;
};

class NetconfRules : private WithRules, public NetconfTest {
protected:
    /// `content` of the <nacm>; without, the server is given no file.
    explicit NetconfRules(const std::string &content = "");
    void SetUp() override;

    NetconfClient client_of(const std::string &user) {
        return NetconfClient(server().socket(), {base_1_0, base_1_1}, user);
    }
};

} // namespace yfw::test

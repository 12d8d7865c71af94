#include "netconf_rules.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include "support/lab.h"

namespace yfw::test {
namespace {

std::string rule(const std::string &what, const std::string &operations, const std::string &action) {
    static int number = 0; // rule names are unique
    return "<rule><name>rule-" + std::to_string(++number) + "</name>" + what + "<access-operations>" +
           operations + "</access-operations><action>" + action + "</action></rule>";
}

std::string module_name(const std::string &module) {
    return "<module-name>" + module + "</module-name>";
}

std::vector<std::string> options_with(const std::string &content, const RulesFile &rules) {
    std::vector<std::string> options = group_options();
    if (!content.empty())
        options.insert(options.end(), {"--nacm", rules.path()});
    return options;
}

} // namespace

std::string nacm(const std::string &content) {
    return "<nacm xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-acm\">" + content + "</nacm>";
}

std::string rules_for(const std::string &group, const std::string &rules) {
    static int number = 0;
    return "<rule-list><name>list-" + std::to_string(++number) + "</name><group>" + group + "</group>" + rules +
           "</rule-list>";
}

std::string data_rule(const std::string &path, const std::string &operations, const std::string &action) {
    return rule("<path xmlns:oc=\"http://openconfig.net/yang/lldp\" "
                "xmlns:ncm=\"urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring\">" +
                    path + "</path>",
                operations, action);
}

std::string rpc_rule(const std::string &module, const std::string &rpc, const std::string &action) {
    return rule(module_name(module) + "<rpc-name>" + rpc + "</rpc-name>", "exec", action);
}

std::string notification_rule(const std::string &module, const std::string &name, const std::string &action) {
    return rule(module_name(module) + "<notification-name>" + name + "</notification-name>", "read", action);
}

std::string module_rule(const std::string &module, const std::string &operations, const std::string &action) {
    return rule(module_name(module), operations, action);
}

std::string users_obstacle() {
    if (geteuid() != 0)
        return "connecting as other users needs root";
    for (const std::string &user : {reader, writer, stranger})
        if (getpwnam(user.c_str()) == nullptr)
            return "there is no user " + user;
    for (const std::string &group : {readers, writers})
        if (getgrnam(group.c_str()) == nullptr)
            return "there is no group " + group;
    return "";
}

std::vector<std::string> group_options() {
    return {"--readers", readers, "--writers", writers};
}

NetconfRules::NetconfRules(const std::string &content)
    : WithRules(content), NetconfTest(options_with(content, rules_)) {}

void NetconfRules::SetUp() {
    const std::string obstacle = users_obstacle();
    if (!obstacle.empty() && lab_is_required())
        FAIL() << obstacle;
    if (!obstacle.empty())
        GTEST_SKIP() << obstacle;
}

} // namespace yfw::test

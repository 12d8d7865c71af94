#include "device/access/nacm.h"

#include <algorithm>

#include "device/access/nacm_rules.h"

namespace yfw::access {
namespace {

using About = AccessRule::About;

constexpr std::string_view base_module = "ietf-netconf";
constexpr std::string_view stream_module = "nc-notifications"; // has RFC 5277's own notifications

// The first matching rule on an operation or notification; nullptr when there is none.
const AccessRule *deciding(const std::vector<const AccessRule *> &rules, About kind, Access access,
                           std::string_view module, std::string_view name) {
    const auto found = std::find_if(rules.begin(), rules.end(), [&](const AccessRule *rule) {
        const bool is_meant = rule->about == About::everything ||
                              (rule->about == kind && (rule->name == "*" || rule->name == name));
        return is_meant && rule->is_about(access, module);
    });
    return found != rules.end() ? *found : nullptr;
}

} // namespace

std::string_view to_string(Access access) {
    switch (access) {
    case Access::read:
        return "read";
    case Access::create:
        return "create";
    case Access::update:
        return "update";
    case Access::remove:
        return "delete";
    case Access::exec:
        break;
    }
    return "exec";
}

bool UserRules::may_execute(std::string_view module, std::string_view operation, bool default_denied) const {
    if (!all_->enabled || (module == base_module && operation == "close-session"))
        return true;
    if (const AccessRule *rule = deciding(rules_, About::operation, Access::exec, module, operation))
        return rule->permits;
    const bool is_sensitive =
        module == base_module && (operation == "kill-session" || operation == "delete-config");
    return !default_denied && !is_sensitive && all_->exec_default;
}

bool UserRules::may_be_told(std::string_view module, std::string_view notification, bool default_denied) const {
    const bool ends_replay_or_subscription =
        module == stream_module && (notification == "replayComplete" || notification == "notificationComplete");
    if (!all_->enabled || ends_replay_or_subscription)
        return true;
    if (const AccessRule *rule = deciding(rules_, About::notification, Access::read, module, notification))
        return rule->permits;
    return !default_denied && all_->read_default;
}

Nacm::Nacm(const std::filesystem::path &file, const yang::ModuleFiles &module_files,
           const std::vector<std::string> &modules)
    : file_(file), module_files_(module_files), modules_(modules) {
    current_.text = read_rules_text(file);
    current_.rules =
        std::make_shared<const AccessRules>(read_access_rules(current_.text, file_, module_files_, modules_));
}

Nacm::~Nacm() = default;
Nacm::Nacm(Nacm &&) noexcept = default;
Nacm &Nacm::operator=(Nacm &&) noexcept = default;

Nacm::Current Nacm::current() const {
    const std::lock_guard<std::mutex> guard(*mutex_);
    return current_;
}

bool Nacm::is_enabled() const {
    return current().rules->enabled;
}

UserRules Nacm::rules_of(const std::string &user, const std::vector<std::string> &external_groups) const {
    const std::shared_ptr<const AccessRules> all = current().rules;
    std::set<std::string> groups;
    if (const auto own = all->groups.find(user); own != all->groups.end())
        groups = own->second;
    if (all->external_groups)
        groups.insert(external_groups.begin(), external_groups.end());
    std::vector<const AccessRule *> rules;
    for (const RuleList &list : all->lists) {
        // "*" matches every group, but not a user without groups.
        const bool concerns_user = std::any_of(groups.begin(), groups.end(), [&](const std::string &group) {
            return list.groups.contains("*") || list.groups.contains(group);
        });
        if (concerns_user)
            for (const AccessRule &rule : list.rules)
                rules.push_back(&rule);
    }
    return {all, std::move(rules), denials_};
}

} // namespace yfw::access

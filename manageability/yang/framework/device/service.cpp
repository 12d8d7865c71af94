#include "device/service.h"

namespace yfw::device {

Service::Service(ManagedDevice &device, std::optional<access::Nacm> rules, std::string recovery_user)
    : device_(device), rules_(std::move(rules)), recovery_user_(std::move(recovery_user)),
      datastores_(device_, events_) {
    device_.require_store();
    device_.serve();
    datastores_.start();
}

std::shared_ptr<const access::UserRules> Service::rules_of(const std::string &user,
                                                           const std::vector<std::string> &groups) const {
    const bool is_recovery = !recovery_user_.empty() && user == recovery_user_;
    if (is_recovery || !rules_.has_value() || !rules_->is_enabled())
        return nullptr;
    return std::make_shared<const access::UserRules>(rules_->rules_of(user, groups));
}

void Service::edit(const Caller &caller, Datastore target, const Edits &edits, bool only_test) {
    if (edits.rules.has_value())
        datastores_.edit_with_rules(caller, target, *rules_, edits, only_test);
    else if (edits.openconfig.has_value())
        datastores_.edit(caller, target, *edits.openconfig, only_test);
}

void Service::validate(const Edits &edits) {
    if (edits.rules.has_value())
        rules_->changed_by(*edits.rules, {});
    if (edits.openconfig.has_value())
        datastores_.validate(*edits.openconfig);
}

} // namespace yfw::device

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

void Service::edit_rules(const Caller &caller, const yang::EditNode &edit, bool only_test) {
    datastores_.edit_rules(caller, *rules_, edit, only_test);
}

} // namespace yfw::device

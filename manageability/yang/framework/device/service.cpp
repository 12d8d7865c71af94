#include "device/service.h"

namespace yfw::device {

Service::Service(ManagedDevice &device, std::optional<access::Nacm> rules)
    : device_(device), rules_(std::move(rules)), datastores_(device_, events_) {
    device_.require_store();
    device_.serve();
    datastores_.start();
}

std::shared_ptr<const access::UserRules> Service::rules_of(const std::string &user,
                                                           const std::vector<std::string> &groups) const {
    if (!rules_.has_value() || !rules_->is_enabled())
        return nullptr;
    return std::make_shared<const access::UserRules>(rules_->rules_of(user, groups));
}

} // namespace yfw::device

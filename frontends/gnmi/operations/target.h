// What requests are answered with.
#ifndef YFW_FRONTENDS_GNMI_OPERATIONS_TARGET_H
#define YFW_FRONTENDS_GNMI_OPERATIONS_TARGET_H

#include <set>
#include <string>
#include <vector>

#include <gnmi.pb.h>

#include "device/service.h"
#include "frontends/gnmi/paths/path_pattern.h"

namespace yfw::gnmi {

using ModelList = google::protobuf::RepeatedPtrField<::gnmi::ModelData>;
using Caller = device::Caller;

// The device, and what its models and its mapping say. Any thread may call any member. Borrows the service.
class Target {
public:
    explicit Target(device::Service &service);

    device::Service &service() const { return service_; }
    const yang::Schemas &schemas() const { return service_.device().schemas(); }
    const lysc_node *root() const { return schemas().openconfig_root(); }
    const std::vector<::gnmi::ModelData> &models() const { return models_; }

    // Whether the mapping serves the node or anything below it.
    bool serves(const lysc_node *node) const;

    // Whether the node's values change all the time, such as a counter's, by the description of the mapping;
    // and whether that is so of the node or of anything below it. NULL is the root.
    bool is_sampled(const lysc_node *node) const { return sampled_.contains(node); }
    bool holds_sampled(const lysc_node *node) const {
        return node == nullptr ? !sampled_.empty() : above_sampled_.contains(node) || is_sampled(node);
    }
    // Whether the entries of a list are what subscribers are told of, each in messages of its own: those that
    // the device reports changes of, and those around them.
    bool is_bundle(const lysc_node *node) const { return bundles_.contains(node); }

    // The patterns of a path, all of which the mapping serves: others are left out where the path has wildcards
    // in names. Throws Refusal: INVALID_ARGUMENT, or UNIMPLEMENTED when the model has the nodes but none is
    // served.
    std::vector<PathPattern> served_patterns(const ::gnmi::Path &prefix, const ::gnmi::Path &path) const;

    // Throws Refusal, INVALID_ARGUMENT, when one of them is not served.
    void require_models(const ModelList &used) const;

private:
    device::Service &service_;
    std::vector<::gnmi::ModelData> models_;
    std::set<const lysc_node *> served_; // leaves, and the nodes above them
    std::set<const lysc_node *> sampled_;
    std::set<const lysc_node *> above_sampled_;
    std::set<const lysc_node *> bundles_;
};

// Throws Refusal, PERMISSION_DENIED, for a caller who may only read.
void require_writer(const Caller &caller);

} // namespace yfw::gnmi

#endif

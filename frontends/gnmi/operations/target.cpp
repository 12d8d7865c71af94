#include "frontends/gnmi/operations/target.h"

#include <algorithm>
#include <string_view>

#include "frontends/gnmi/messages/refusal.h"
#include "frontends/gnmi/paths/path_text.h"
#include "yang/node_kind.h"
#include "yang/path.h"

namespace yfw::gnmi {
namespace {

// The argument of the extension that published modules state their semantic version with; of other modules the
// revision.
std::string version_of(const lys_module &module) {
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(module.parsed->exts, i) {
        const std::string_view name = module.parsed->exts[i].name;
        if (name.substr(name.find(':') + 1) == "openconfig-version" &&
            module.parsed->exts[i].argument != nullptr)
            return module.parsed->exts[i].argument;
    }
    return module.revision != nullptr ? module.revision : "";
}

std::vector<::gnmi::ModelData> models_of(const device::ManagedDevice &device) {
    std::vector<::gnmi::ModelData> models;
    for (const std::string &name : device.mapping().modules.openconfig) {
        const lys_module *module = ly_ctx_get_module_implemented(device.schemas().context(), name.c_str());
        ::gnmi::ModelData &model = models.emplace_back();
        model.set_name(name);
        model.set_organization(module->org != nullptr ? module->org : "");
        model.set_version(version_of(*module));
    }
    return models;
}

// Leaves that the mapping has a callback for, and keys: an entry always has them.
void add_served(const lysc_node *node, const std::set<std::string> &called, std::set<const lysc_node *> &to) {
    for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next)
        add_served(child, called, to);
    const bool is_empty = !yang::is_term(node) && lysc_node_child(node) == nullptr;
    if (is_empty || (yang::is_term(node) && called.contains(yang::schema_path(node))))
        for (const lysc_node *at = node; at != nullptr && to.insert(at).second;)
            at = at->parent;
    for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next)
        if (to.contains(node) && lysc_is_key(child))
            to.insert(child);
}

void add_all(const lysc_node *node, std::set<const lysc_node *> &to) {
    to.insert(node);
    for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next)
        add_all(child, to);
}

// Throws Error for a description that names nodes that are not in the schemas.
const lysc_node *described(const yang::Schemas &schemas, const std::string &path) {
    return yang::parse_path(schemas.openconfig_root(), path).back().node;
}

} // namespace

Target::Target(device::Service &service) : service_(service), models_(models_of(service.device())) {
    std::set<std::string> called;
    for (const host::ExplainedNode &node : service.device().explain({host::Content::all, {{{root(), {}}}}, {}}))
        if (!node.callbacks.empty())
            called.insert(node.openconfig);
    add_served(root(), called, served_);
    const host::MappingDescription &mapping = service.device().mapping();
    for (const std::string &path : mapping.sampled) {
        const lysc_node *node = described(schemas(), path);
        add_all(node, sampled_);
        for (const lysc_node *at = node->parent; at != nullptr; at = at->parent)
            above_sampled_.insert(at);
    }
    if (mapping.notification.has_value())
        for (const lysc_node *at = described(schemas(), mapping.notification->entry); at != nullptr;
             at = at->parent)
            if (at->nodetype == LYS_LIST)
                bundles_.insert(at);
}

bool Target::serves(const lysc_node *node) const {
    return node == nullptr || served_.contains(node);
}

std::vector<PathPattern> Target::served_patterns(const ::gnmi::Path &prefix, const ::gnmi::Path &path) const {
    std::vector<PathPattern> patterns = read_path(root(), prefix, path);
    std::erase_if(patterns, [this](const PathPattern &pattern) { return !serves(pattern.node()); });
    if (patterns.empty())
        throw Refusal(Code::unimplemented, to_text(prefix, path) + ": this device does not serve it");
    return patterns;
}

void Target::require_models(const ModelList &used) const {
    for (const ::gnmi::ModelData &model : used) {
        const bool is_served =
            std::any_of(models_.begin(), models_.end(), [&model](const ::gnmi::ModelData &served) {
                return served.name() == model.name() &&
                       (model.version().empty() || served.version() == model.version());
            });
        if (!is_served)
            throw Refusal(Code::invalid_argument,
                          "the model \"" + model.name() + "\"" +
                              (model.version().empty() ? "" : " of version " + model.version()) +
                              " is not served");
    }
}

void require_writer(const Caller &caller) {
    if (!caller.may_write)
        throw Refusal(Code::permission_denied, caller.user + " may only read");
}

} // namespace yfw::gnmi

#include "frontends/netconf/server_data/protocol_modules.h"

#include <algorithm>
#include <functional>

#include "base/error.h"
#include "yang/forest.h"
#include "yang/schemas.h"
#include "yang/tree_text.h"

namespace yfw::netconf {
namespace {

std::string with_commas(const std::vector<const char *> &words) {
    std::string text;
    for (const char *word : words)
        text += (text.empty() ? "" : ",") + std::string(word);
    return text;
}

// `modules`: a sized array of libyang.
std::vector<const char *> names_of(lys_module *const *modules) {
    std::vector<const char *> names;
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(modules, i) {
        names.push_back(modules[i]->name);
    }
    return names;
}

} // namespace

// In the order of the capabilities in a <hello>.
std::vector<ProtocolModules::Loaded> ProtocolModules::loaded_with(const host::MappingDescription &mapping,
                                                                  bool has_access_rules) {
    std::vector<Loaded> all;
    for (const std::string &module : mapping.modules.openconfig)
        all.push_back({module, {}});
    all.insert(all.end(), {{"ietf-netconf",
                            {"writable-running", "candidate", "confirmed-commit", "rollback-on-error",
                             "validate", "xpath"}},
                           {"ietf-netconf-monitoring", {}},
                           {"ietf-yang-library", {}},
                           {"ietf-datastores", {}},
                           {"notifications", {}},
                           {"nc-notifications", {}},
                           {"ietf-netconf-notifications", {}}});
    if (mapping.notification.has_value())
        all.push_back({mapping.notification->module, {}});
    all.insert(all.end(),
               {{"ietf-netconf-with-defaults", {}}, {"ietf-netconf-nmda", {"origin", "with-defaults"}}});
    if (has_access_rules)
        all.push_back({"ietf-netconf-acm", {}});
    return all;
}

ProtocolModules::ProtocolModules(const yang::ModuleFiles &files, const host::MappingDescription &mapping,
                                 bool has_access_rules, const std::string &deviations)
    : context_(yang::ModuleFiles::make_context()), notification_(mapping.notification) {
    std::vector<Loaded> loaded = loaded_with(mapping, has_access_rules);
    for (const Loaded &module : loaded)
        files.load(context_.get(), module.name, module.features);
    if (!deviations.empty())
        loaded.push_back({add_deviations(deviations), {}});
    const std::string top = "/" + mapping.modules.openconfig.front() + ":" + mapping.modules.top;
    openconfig_root_ = lys_find_path(context_.get(), nullptr, top.c_str(), 0);
    if (openconfig_root_ == nullptr)
        throw Error(ErrorTag::operation_failed, top, yang::take_yang_error(context_.get()));
    list_modules(loaded);
    make_library();
}

// Returns the module's name.
std::string ProtocolModules::add_deviations(const std::string &text) {
    lys_module *module = nullptr;
    if (lys_parse_mem(context_.get(), text.c_str(), LYS_IN_YANG, &module) != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, "deviations", yang::take_yang_error(context_.get()));
    return module->name;
}

void ProtocolModules::list_modules(const std::vector<Loaded> &loaded) {
    uint32_t index = 0;
    std::string all;
    while (const lys_module *module = ly_ctx_get_module_iter(context_.get(), &index)) {
        const auto offered = std::find_if(loaded.begin(), loaded.end(),
                                          [&](const Loaded &one) { return one.name == module->name; });
        const bool is_offered = offered != loaded.end();
        modules_.push_back({module->name, module->revision != nullptr ? module->revision : "", module->ns,
                            is_offered, is_offered ? with_commas(offered->features) : "",
                            with_commas(names_of(module->deviated_by))});
        all += modules_.back().name + "@" + modules_.back().revision + (module->implemented != 0 ? "!" : "") +
               modules_.back().features + ";" + text(module->name, modules_.back().revision).value_or("");
    }
    content_id_ = std::to_string(std::hash<std::string>{}(all));
}

void ProtocolModules::make_library() {
    lyd_node *data = nullptr;
    if (ly_ctx_get_yanglib_data(context_.get(), &data, "%s", content_id_.c_str()) != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, "ietf-yang-library", yang::take_yang_error(context_.get()));
    library_.reset(data);
    // Hide libyang's internal modules and the local file locations from clients.
    for (const char *path : {"/ietf-yang-library:yang-library/module-set/module[name='yang']",
                             "/ietf-yang-library:yang-library/module-set/module[name='ietf-yang-schema-mount']",
                             "/ietf-yang-library:yang-library/module-set//location",
                             "/ietf-yang-library:modules-state/module[name='yang']",
                             "/ietf-yang-library:modules-state/module[name='ietf-yang-schema-mount']",
                             "/ietf-yang-library:modules-state/module/schema"})
        for (lyd_node *found : yang::nodes_at(data, path))
            yang::remove(library_, found);
    for (const char *datastore : {"running", "candidate", "operational"}) {
        const std::string path =
            std::string("/ietf-yang-library:yang-library/datastore[name='ietf-datastores:") + datastore +
            "']/schema";
        if (lyd_new_path(data, context_.get(), path.c_str(), "complete", 0, nullptr) != LY_SUCCESS)
            throw Error(ErrorTag::operation_failed, path, yang::take_yang_error(context_.get()));
    }
}

std::string ProtocolModules::namespace_of(const std::string &module) const {
    const auto found = std::find_if(modules_.begin(), modules_.end(),
                                    [&](const ModuleName &one) { return one.name == module; });
    return found != modules_.end() ? found->ns : "";
}

yang::DataTree ProtocolModules::parse_notification(const std::string &xml) const {
    ly_in *in = nullptr;
    ly_in_new_memory(xml.c_str(), &in);
    lyd_node *notification = nullptr;
    const LY_ERR status =
        lyd_parse_op(context_.get(), nullptr, in, LYD_XML, LYD_TYPE_NOTIF_YANG, &notification, nullptr);
    ly_in_free(in, 0);
    yang::DataTree owner(notification);
    if (status != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, "", yang::take_yang_error(context_.get()));
    return owner;
}

bool ProtocolModules::allows(const char *path, const std::string &value) const {
    const lysc_node *leaf = lys_find_path(context_.get(), nullptr, path, 0);
    const bool allowed =
        leaf != nullptr && lyd_value_validate(context_.get(), leaf, value.c_str(), value.size(), nullptr,
                                              nullptr, nullptr) == LY_SUCCESS;
    ly_err_clean(const_cast<ly_ctx *>(context_.get()), nullptr);
    return allowed;
}

std::optional<std::string> ProtocolModules::text(const std::string &name, const std::string &revision) const {
    const lys_module *module = revision.empty()
                                   ? ly_ctx_get_module_latest(context_.get(), name.c_str())
                                   : ly_ctx_get_module(context_.get(), name.c_str(), revision.c_str());
    if (module == nullptr)
        return std::nullopt;
    char *text = nullptr;
    lys_print_mem(&text, module, LYS_OUT_YANG, 0);
    const yang::LibyangText printed(text);
    return printed ? std::optional<std::string>(printed.c_str()) : std::nullopt;
}

} // namespace yfw::netconf

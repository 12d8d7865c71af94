#include "yang/schemas.h"

#include <cctype>
#include <initializer_list>
#include <set>

#include "base/error.h"
#include "yang/module_files.h"
#include "yang/path_words.h"

namespace yfw::yang {
namespace {

// libyang accepts the edit attributes of RFC 6241 section 7.2 once a module of this name exists.
constexpr const char *operation_module =
    "module ietf-netconf { yang-version 1.1;"
    " namespace \"urn:ietf:params:xml:ns:netconf:base:1.0\"; prefix nc; feature xpath; }";

// The attribute of RFC 6243 section 6, likewise: it becomes, and is printed for, the flag of a default value.
constexpr const char *defaults_module =
    "module ietf-netconf-with-defaults { yang-version 1.1;"
    " namespace \"urn:ietf:params:xml:ns:netconf:default:1.0\"; prefix wd; }";

// The annotation of RFC 7952 for origins (RFC 8342 section 7).
constexpr const char *origin_module =
    "module ietf-origin { yang-version 1.1;"
    " namespace \"urn:ietf:params:xml:ns:yang:ietf-origin\"; prefix or;"
    " import ietf-yang-metadata { prefix md; }"
    " identity origin; identity intended { base origin; } identity system { base origin; }"
    " md:annotation origin { type identityref { base origin; } } }";

// The modules of `dir`, and the imports that it lacks from the directories in `more`.
ModuleFiles files_of(const std::filesystem::path &dir, const std::vector<std::filesystem::path> &more) {
    if (std::error_code error; !std::filesystem::is_directory(dir, error))
        throw Error(ErrorTag::operation_failed, dir.string(), "is not a directory of YANG modules");
    std::vector<std::filesystem::path> dirs = {dir};
    dirs.insert(dirs.end(), more.begin(), more.end());
    return ModuleFiles(dirs);
}

const lysc_node *top_node(const lys_module *module, std::string_view name) {
    if (module == nullptr || module->compiled == nullptr)
        return nullptr;
    for (const lysc_node *node = module->compiled->data; node != nullptr; node = node->next)
        if (name == node->name)
            return node;
    return nullptr;
}

using Modules = std::set<const lys_module *>;

bool leads_outside(const lysc_type_leafref &reference, const Modules &modules) {
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(reference.prefixes, i) {
        if (reference.prefixes[i].mod != nullptr && !modules.contains(reference.prefixes[i].mod))
            return true;
    }
    return false;
}

// References to what is not mapped, such as the published models' to interfaces, cannot be followed: there is
// no data of it. libyang has no option for that, only the type's own flag.
void let_references_dangle(const lysc_node *node, const Modules &mapped) {
    if (node->nodetype == LYS_LEAF) {
        lysc_type *type = reinterpret_cast<const lysc_node_leaf *>(node)->type;
        auto *reference = reinterpret_cast<lysc_type_leafref *>(type);
        if (type->basetype == LY_TYPE_LEAFREF && leads_outside(*reference, mapped))
            reference->require_instance = 0;
    }
    for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next)
        let_references_dangle(child, mapped);
}

// libyang quotes its input, which may hold line breaks.
std::string one_line(std::string text) {
    for (char &c : text)
        if (std::iscntrl(static_cast<unsigned char>(c)) != 0)
            c = ' ';
    return text;
}

} // namespace

Schemas::Schemas(const std::filesystem::path &native_dir, const std::filesystem::path &openconfig_dir,
                 const MappedModules &modules, const std::vector<std::filesystem::path> &import_dirs,
                 const std::string &deviations)
    : native_modules_(modules.native), deviations_(deviations) {
    // Callers fetch errors themselves; libyang must not print any.
    ly_log_options(LY_LOSTORE_LAST);
    ly_ctx *context = nullptr;
    if (ly_ctx_new(nullptr, LY_CTX_NO_YANGLIBRARY | LY_CTX_DISABLE_SEARCHDIRS, &context) != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, "", "the YANG library could not be started");
    context_.reset(context);
    for (const char *module : {operation_module, defaults_module, origin_module})
        if (lys_parse_mem(context, module, LYS_IN_YANG, nullptr) != LY_SUCCESS)
            throw Error(ErrorTag::operation_failed, module, take_yang_error(context));
    const ModuleFiles native_files = files_of(native_dir, {});
    for (const std::string &module : modules.native)
        native_files.load(context, module);
    const ModuleFiles openconfig_files = files_of(openconfig_dir, import_dirs);
    for (const std::string &module : modules.openconfig)
        openconfig_files.load(context, module);
    find_root(modules, openconfig_dir);
    if (!deviations_.empty())
        deviate(modules, openconfig_dir);
    Modules mapped;
    for (const std::string &module : modules.openconfig)
        mapped.insert(ly_ctx_get_module_implemented(context, module.c_str()));
    let_references_dangle(openconfig_root_, mapped);
}

void Schemas::find_root(const MappedModules &modules, const std::filesystem::path &openconfig_dir) {
    const std::string &openconfig = modules.openconfig.front();
    openconfig_root_ = top_node(ly_ctx_get_module_implemented(context(), openconfig.c_str()), modules.top);
    if (openconfig_root_ == nullptr)
        throw Error(ErrorTag::operation_failed, openconfig_dir.string(),
                    "module " + openconfig + " has no top container " + modules.top);
}

// The modules are compiled anew, with other nodes.
void Schemas::deviate(const MappedModules &modules, const std::filesystem::path &openconfig_dir) {
    const NotServed before = all_nodes(openconfig_root_);
    if (lys_parse_mem(context(), deviations_.c_str(), LYS_IN_YANG, nullptr) != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, "deviations", take_yang_error(context()));
    find_root(modules, openconfig_dir);
    *not_served_ = taken_away(before, openconfig_root_);
    set_not_served(openconfig_root_, *not_served_);
}

const lysc_node *Schemas::native_root(std::string_view ns, std::string_view name) const {
    const std::string uri(ns);
    if (const lysc_node *node = top_node(ly_ctx_get_module_implemented_ns(context_.get(), uri.c_str()), name))
        return node;
    for (const std::string &module : native_modules_)
        if (const lysc_node *node =
                top_node(ly_ctx_get_module_implemented(context_.get(), module.c_str()), name))
            return node;
    return nullptr;
}

const lysc_node *Schemas::find(const std::string &module, std::string_view path) const {
    PathWords words(path);
    std::string_view word;
    if (!words.next(word))
        return nullptr;
    const lysc_node *node = top_node(ly_ctx_get_module_implemented(context_.get(), module.c_str()), word);
    while (node != nullptr && words.next(word))
        node = schema_child(node, word);
    return node;
}

std::string take_yang_error(const ly_ctx *context) {
    const char *message = ly_errmsg(context);
    const char *path = ly_errpath(context);
    std::string text = message != nullptr ? message : "unknown YANG error";
    if (path != nullptr)
        text.append(" (").append(path).append(")");
    ly_err_clean(const_cast<ly_ctx *>(context), nullptr);
    return one_line(text);
}

// libyang names it so: Data location "PATH".
Error take_data_error(const ly_ctx *context) {
    const std::string place = ly_errpath(context) != nullptr ? ly_errpath(context) : "";
    const std::string message = ly_errmsg(context) != nullptr ? ly_errmsg(context) : "";
    const std::string whole = take_yang_error(context);
    constexpr std::string_view before = "ata location \"";
    const size_t found = place.find(before);
    if (found == std::string::npos)
        return Error(ErrorTag::invalid_value, "", whole);
    const size_t start = found + before.size();
    return Error(ErrorTag::invalid_value, place.substr(start, place.rfind('"') - start), one_line(message));
}

const lysc_node *schema_child(const lysc_node *parent, std::string_view name) {
    const lysc_node *augmented = nullptr;
    for (const lysc_node *child = lysc_node_child(parent); child != nullptr; child = child->next) {
        if (name != child->name)
            continue;
        if (child->module == parent->module)
            return child;
        augmented = child;
    }
    return augmented;
}

} // namespace yfw::yang

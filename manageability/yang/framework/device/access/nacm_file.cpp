#include <algorithm>
#include <cstring>
#include <sstream>

#include "base/bounded_text.h"
#include "base/error.h"
#include "device/access/nacm_rules.h"
#include "yang/schemas.h"

namespace yfw::access {
namespace {

using About = AccessRule::About;

constexpr const char *access_module = "ietf-netconf-acm";
constexpr uint64_t largest_file = 64 * mebibyte;

[[noreturn]] void refuse(const std::string &place, const std::string &why) {
    throw Error(ErrorTag::operation_failed, place, why);
}

// Messages to users are a single line, even when they quote the file.
std::string take_error(const ly_ctx *context) {
    std::string text = yang::take_yang_error(context);
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

// Paths can only be checked in a context that has their nodes.
yang::YangContext context_with(const yang::ModuleFiles &files, const std::vector<std::string> &modules) {
    yang::YangContext context = yang::ModuleFiles::make_context();
    for (const std::string &name : modules)
        files.load(context.get(), name);
    files.load(context.get(), access_module);
    return context;
}

// "FILE:LINE", or just the file when libyang does not report a line. libyang's location ends with "line number
// LINE.".
std::string place_of_error(const std::filesystem::path &file, const ly_ctx *context) {
    const char *said = ly_errpath(context);
    const std::string_view place = said != nullptr ? said : "";
    constexpr std::string_view word = "ine number ";
    const size_t at = place.rfind(word);
    const std::string_view line = at != std::string_view::npos ? place.substr(at + word.size()) : "";
    const size_t end = line.find_first_not_of("0123456789");
    if (end == 0 || line.substr(std::min(end, line.size())) != ".")
        return file.string();
    return file.string() + ":" + std::string(line.substr(0, end));
}

yang::DataTree parse(const std::string &text, const std::filesystem::path &file, const ly_ctx *context) {
    lyd_node *parsed = nullptr;
    const LY_ERR status =
        lyd_parse_data_mem(context, text.c_str(), LYD_XML, LYD_PARSE_STRICT | LYD_PARSE_NO_STATE,
                           LYD_VALIDATE_PRESENT | LYD_VALIDATE_NO_STATE, &parsed);
    yang::DataTree data(parsed);
    if (status != LY_SUCCESS) {
        const std::string place = place_of_error(file, context);
        refuse(place, take_error(context));
    }
    if (data == nullptr || data->next != nullptr || std::strcmp(data->schema->module->name, access_module) != 0)
        refuse(file.string(), "is not a single <nacm> of ietf-netconf-acm");
    return data;
}

std::vector<const lyd_node *> children(const lyd_node *parent, std::string_view name) {
    std::vector<const lyd_node *> found;
    for (const lyd_node *child = lyd_child(parent); child != nullptr; child = child->next)
        if (name == child->schema->name)
            found.push_back(child);
    return found;
}

std::vector<std::string> values(const lyd_node *parent, std::string_view name) {
    std::vector<std::string> found;
    for (const lyd_node *child : children(parent, name))
        found.emplace_back(lyd_get_value(child));
    return found;
}

// For a leaf that is mandatory or has a default.
std::string value(const lyd_node *parent, std::string_view name) {
    return values(parent, name).at(0);
}

unsigned bits_of(const std::string &words) {
    unsigned bits = 0;
    std::istringstream each(words);
    for (std::string word; each >> word;)
        for (const Access access : {Access::read, Access::create, Access::update, Access::remove, Access::exec})
            if (word == "*" || word == to_string(access))
                bits |= bit(access);
    return bits;
}

// Rejects paths to anything but data, such as an operation: the rule would never apply.
std::vector<std::string> modules_on(const std::string &path, const ly_ctx *context, const std::string &place) {
    std::vector<std::string> modules;
    const lysc_node *node = lys_find_path(context, nullptr, path.c_str(), 0);
    constexpr unsigned data = LYS_CONTAINER | LYS_LIST | LYS_LEAF | LYS_LEAFLIST | LYS_ANYDATA;
    if (node == nullptr || (node->nodetype & data) == 0)
        refuse(place, "the path " + path + " names no data");
    for (; node != nullptr; node = node->parent)
        if (std::find(modules.begin(), modules.end(), node->module->name) == modules.end())
            modules.emplace_back(node->module->name);
    return modules;
}

AccessRule rule_from(const lyd_node *node, const ly_ctx *context, const std::string &file) {
    AccessRule rule;
    rule.module = value(node, "module-name");
    rule.accesses = bits_of(value(node, "access-operations"));
    rule.permits = value(node, "action") == "permit";
    if (const auto operation = values(node, "rpc-name"); !operation.empty()) {
        rule.about = About::operation;
        rule.name = operation[0];
    } else if (const auto notification = values(node, "notification-name"); !notification.empty()) {
        rule.about = About::notification;
        rule.name = notification[0];
    } else if (const auto path = values(node, "path"); !path.empty()) {
        rule.about = About::data;
        rule.path = path[0];
        if (rule.path != "/")
            rule.path_modules = modules_on(rule.path, context, file);
    }
    return rule;
}

RuleList list_from(const lyd_node *node, const ly_ctx *context, const std::string &file) {
    RuleList list;
    for (std::string &group : values(node, "group"))
        list.groups.insert(std::move(group));
    for (const lyd_node *rule : children(node, "rule"))
        list.rules.push_back(rule_from(rule, context, file));
    return list;
}

} // namespace

std::string read_rules_text(const std::filesystem::path &file) {
    return bounded_file_text(file, largest_file);
}

AccessRules read_access_rules(const std::string &text, const std::filesystem::path &file,
                              const yang::ModuleFiles &module_files, const std::vector<std::string> &modules) {
    const yang::YangContext context = context_with(module_files, modules);
    const yang::DataTree nacm = parse(text, file, context.get());
    AccessRules rules;
    rules.enabled = value(nacm.get(), "enable-nacm") == "true";
    rules.external_groups = value(nacm.get(), "enable-external-groups") == "true";
    rules.read_default = value(nacm.get(), "read-default") == "permit";
    rules.write_default = value(nacm.get(), "write-default") == "permit";
    rules.exec_default = value(nacm.get(), "exec-default") == "permit";
    for (const lyd_node *groups : children(nacm.get(), "groups"))
        for (const lyd_node *group : children(groups, "group"))
            for (const std::string &user : values(group, "user-name"))
                rules.groups[user].insert(value(group, "name"));
    for (const lyd_node *list : children(nacm.get(), "rule-list"))
        rules.lists.push_back(list_from(list, context.get(), file.string()));
    return rules;
}

} // namespace yfw::access

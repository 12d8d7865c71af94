#include "device/access/nacm_tree.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "base/error.h"
#include "yang/forest.h"
#include "yang/schemas.h"

namespace yfw::access {
namespace {

using About = AccessRule::About;

bool is_about_some_data(const AccessRule &rule) {
    return rule.about == About::data && rule.path != "/";
}

bool is_about_all_data(const AccessRule &rule) {
    return rule.about == About::everything || (rule.about == About::data && rule.path == "/");
}

bool has_extension(const lysc_node *schema, const char *name) {
    if (schema == nullptr)
        return false;
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(schema->exts, i) {
        const lysc_ext *extension = schema->exts[i].def;
        if (std::strcmp(extension->name, name) == 0 &&
            std::strcmp(extension->module->name, "ietf-netconf-acm") == 0)
            return true;
    }
    return false;
}

std::string_view name_of(const lys_module *module) {
    return module != nullptr ? module->name : "";
}

} // namespace

RulesOnTree::RulesOnTree(const AccessRules &all, const std::vector<const AccessRule *> &rules,
                         unsigned accesses, const lyd_node *tree)
    : all_(all), rules_(rules) {
    for (size_t position = 0; tree != nullptr && position < rules.size(); position++)
        if (is_about_some_data(*rules[position]) && (rules[position]->accesses & accesses) != 0)
            find(position, tree);
}

RulesOnTree::Inherited RulesOnTree::at(const lyd_node *node, const Inherited &above, Positions &merged) const {
    Inherited here = above;
    here.deny_all = here.deny_all || has_extension(node->schema, "default-deny-all");
    here.deny_write = here.deny_write || has_extension(node->schema, "default-deny-write");
    const auto own = named_.find(node);
    if (own == named_.end())
        return here;
    if (above.named->empty()) {
        here.named = &own->second;
        return here;
    }
    std::merge(above.named->begin(), above.named->end(), own->second.begin(), own->second.end(),
               std::back_inserter(merged));
    here.named = &merged;
    return here;
}

bool RulesOnTree::permits(Access access, const lyd_node *node, const Inherited &here) {
    if (const AccessRule *rule = deciding(access, node, here))
        return rule->permits;
    const bool is_read = access == Access::read;
    if (here.deny_all || (here.deny_write && !is_read))
        return false;
    return is_read ? all_.read_default : all_.write_default;
}

void RulesOnTree::find(size_t position, const lyd_node *tree) {
    const AccessRule &rule = *rules_[position];
    const bool is_known =
        std::all_of(rule.path_modules.begin(), rule.path_modules.end(), [&](const std::string &module) {
            return ly_ctx_get_module_implemented(LYD_CTX(tree), module.c_str()) != nullptr;
        });
    if (!is_known)
        return;
    for (const lyd_node *named : yang::nodes_at(tree, rule.path))
        named_[named].push_back(position);
}

const AccessRule *RulesOnTree::deciding(Access access, const lyd_node *node, const Inherited &here) {
    const lys_module *module = node->schema != nullptr ? node->schema->module : nullptr;
    const size_t general = first_general(module)[static_cast<size_t>(access)];
    for (const size_t position : *here.named) {
        if (position > general)
            break;
        if (rules_[position]->is_about(access, name_of(module)))
            return rules_[position];
    }
    return general < rules_.size() ? rules_[general] : nullptr;
}

// For each access, the index of the first rule covering all data of a module; one past the last when there is
// none.
const RulesOnTree::First &RulesOnTree::first_general(const lys_module *module) {
    const auto [entry, is_new] = general_.try_emplace(module);
    for (size_t access = 0; is_new && access < access_count; access++) {
        const auto first = std::find_if(rules_.begin(), rules_.end(), [&](const AccessRule *rule) {
            return is_about_all_data(*rule) && rule->is_about(static_cast<Access>(access), name_of(module));
        });
        entry->second[access] = static_cast<size_t>(first - rules_.begin());
    }
    return entry->second;
}

} // namespace yfw::access

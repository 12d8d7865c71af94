#include "frontends/netconf/operations/rules_edit.h"

#include <cctype>

#include "yang/edit_element.h"

namespace yfw::netconf {
namespace {

bool is_of_name(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '-' || c == '.';
}

// The path with the modules' names for the prefixes that the client declared, where the module changes: RFC
// 7951 section 6.11. What is in quotes stays.
std::string with_module_names(const ly_ctx *context, const Element &element, const std::string &path) {
    std::string text;
    char quote = '\0';
    size_t name = 0; // where the current name begins in `text`
    const lys_module *last = nullptr;
    for (const char c : path) {
        if (quote != '\0' || c == '\'' || c == '"')
            quote = quote == '\0' ? c : (c == quote ? '\0' : quote);
        else if (c == ':') {
            const auto ns = element.namespace_of(text.substr(name));
            const lys_module *module =
                ns.has_value() ? ly_ctx_get_module_implemented_ns(context, ns->c_str()) : nullptr;
            if (module != nullptr)
                text.replace(name, std::string::npos, module != last ? module->name : "");
            if (module != nullptr && module == last)
                continue;
            last = module != nullptr ? module : last;
        }
        text += c;
        if (!is_of_name(c))
            name = text.size();
    }
    return text;
}

// The elements of `made` are those of `from`, in the same order.
void resolve_paths(const ly_ctx *context, const Element &from, yang::EditElement &made) {
    if (made.name == "path" && made.text.has_value())
        made.text = with_module_names(context, from, from.text());
    const std::vector<Element> children = from.children();
    for (size_t i = 0; i < children.size(); i++)
        resolve_paths(context, children[i], made.children.at(i));
}

} // namespace

bool is_of_rules(const Server &server, const Element &top) {
    const lysc_node *root = server.modules.access_rules_root();
    return server.service.rules() != nullptr && root != nullptr && top.is(root->module->ns, root->name);
}

yang::EditNode rules_edit(const Server &server, const Element &top, yang::Operation operation) {
    yang::EditElement element = yang::edit_element_from(server.modules.context(), top);
    resolve_paths(server.modules.context(), top, element);
    return yang::read_edit(server.modules.access_rules_root(), element, operation);
}

} // namespace yfw::netconf

#include "frontends/cli/completion/path_completion.h"

#include <algorithm>
#include <string_view>

#include "base/error.h"
#include "yang/typed_path.h"
#include "yang/yang_text.h"

namespace yfw::cli {
namespace {

using Strings = std::vector<std::string>;

constexpr uint16_t with_children = LYS_CONTAINER | LYS_LIST;
constexpr uint16_t completed = with_children | LYS_LEAF | LYS_LEAFLIST;

// Where a path that is being typed stands.
struct Place {
    size_t slash = std::string::npos; // the last one outside brackets
    size_t open = std::string::npos;  // the bracket that is open
};

Place place_in(const std::string &typed) {
    Place place;
    char quote = '\0';
    for (size_t i = 0; i < typed.size(); i++) {
        const char c = typed[i];
        const bool in_brackets = place.open != std::string::npos;
        if (quote != '\0')
            quote = c == quote ? '\0' : quote;
        else if (in_brackets && (c == '\'' || c == '"') && typed[i - 1] == '=')
            quote = c;
        else if (in_brackets)
            place.open = c == ']' ? std::string::npos : place.open;
        else if (c == '[')
            place.open = i;
        else if (c == '/')
            place.slash = i;
    }
    return place;
}

// The paths that the text stands for; none when it is not a path. Nothing typed is the place above the root.
std::vector<yang::Path> paths_of(const lysc_node *root, const std::string &text) {
    try {
        return yang::parse_typed_path(root, text).nodes;
    } catch (const Error &) {
        return {};
    }
}

void add_new(Strings &to, const std::string &text) {
    if (std::find(to.begin(), to.end(), text) == to.end())
        to.push_back(text);
}

bool is_offered(const lysc_node *node, bool edits) {
    return (node->nodetype & completed) != 0 && (!edits || (node->flags & LYS_CONFIG_W) != 0) &&
           !(edits && lysc_is_key(node));
}

// A list goes on with a key or, for all its entries, without one.
void add_node(Strings &to, const std::string &before, const lysc_node *node) {
    const std::string path = before + node->name;
    add_new(to, (node->nodetype & with_children) != 0 ? path + '/' : path);
    const lysc_node *first = node->nodetype == LYS_LIST ? lysc_node_child(node) : nullptr;
    if (first != nullptr && lysc_is_key(first))
        add_new(to, path + '[' + first->name + '=');
}

Strings complete_name(const lysc_node *root, const std::string &typed, size_t slash, bool edits) {
    const std::string before = typed.substr(0, slash + 1);
    Strings all;
    if (slash == 0 || slash == std::string::npos) {
        add_node(all, "/", root);
        return all;
    }
    const std::string parent = typed.substr(0, slash);
    for (const yang::Path &path : paths_of(root, parent.ends_with('/') ? parent + "..." : parent))
        for (const lysc_node *child = lysc_node_child(path.back().node); child != nullptr; child = child->next)
            if (is_offered(child, edits))
                add_node(all, before, child);
    return all;
}

bool has_key(const yang::PathStep &step, const lysc_node *key) {
    return std::any_of(step.predicates.begin(), step.predicates.end(),
                       [key](const yang::Predicate &predicate) { return predicate.leaf == key; });
}

Strings complete_key_name(const std::vector<yang::Path> &lists, const std::string &before) {
    Strings all;
    for (const yang::Path &list : lists)
        for (const lysc_node *key = lysc_node_child(list.back().node); key != nullptr && lysc_is_key(key);
             key = key->next)
            if (!has_key(list.back(), key))
                add_new(all, before + key->name + '=');
    return all;
}

// As people type it, unless that means something else.
std::string written_value(const std::string &value, char quote) {
    const bool is_plain = !value.empty() && value != "*" && value.find(']') == std::string::npos &&
                          value.front() != '\'' && value.front() != '"' && value.front() != ' ' &&
                          value.back() != ' ';
    if (quote == '\0')
        return is_plain ? value : yang::quoted_literal(value);
    std::string text(1, quote);
    for (const char c : value)
        text.append(c == quote ? 2 : 1, c);
    return text + quote;
}

Strings complete_key_value(const std::vector<yang::Path> &lists, const std::string &typed, size_t equals,
                           const std::string &name, const KeyValues &key_values) {
    const char quote = equals + 1 < typed.size() && (typed[equals + 1] == '\'' || typed[equals + 1] == '"')
                           ? typed[equals + 1]
                           : '\0';
    const std::string before = typed.substr(0, equals + 1);
    Strings all;
    for (const yang::Path &list : lists)
        for (const lysc_node *key = lysc_node_child(list.back().node); key != nullptr && lysc_is_key(key);
             key = key->next)
            if (name == key->name)
                for (const std::string &value : key_values(list, key))
                    add_new(all, before + written_value(value, quote) + ']');
    return all;
}

Strings complete_condition(const lysc_node *root, const std::string &typed, size_t open,
                           const KeyValues &key_values) {
    const std::vector<yang::Path> lists = paths_of(root, typed.substr(0, open));
    const size_t equals = typed.find('=', open);
    if (equals == std::string::npos)
        return complete_key_name(lists, typed.substr(0, open + 1));
    return complete_key_value(lists, typed, equals, typed.substr(open + 1, equals - open - 1), key_values);
}

void add_identities(Strings &to, const lysc_ident *base) {
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(base->derived, i) {
        add_new(to, base->derived[i]->name);
        add_identities(to, base->derived[i]);
    }
}

void add_values(Strings &to, const lysc_type *type) {
    if (type->basetype == LY_TYPE_BOOL) {
        to.insert(to.end(), {"true", "false"});
    } else if (type->basetype == LY_TYPE_ENUM) {
        const auto *enums = reinterpret_cast<const lysc_type_enum *>(type)->enums;
        LY_ARRAY_COUNT_TYPE i = 0;
        LY_ARRAY_FOR(enums, i)
        add_new(to, enums[i].name);
    } else if (type->basetype == LY_TYPE_IDENT) {
        const auto *bases = reinterpret_cast<const lysc_type_identityref *>(type)->bases;
        LY_ARRAY_COUNT_TYPE i = 0;
        LY_ARRAY_FOR(bases, i)
        add_identities(to, bases[i]);
    }
}

} // namespace

Strings complete_path(const lysc_node *root, const std::string &typed, bool edits,
                      const KeyValues &key_values) {
    const Place place = place_in(typed);
    Strings all = place.open != std::string::npos ? complete_condition(root, typed, place.open, key_values)
                                                  : complete_name(root, typed, place.slash, edits);
    std::erase_if(all, [&](const std::string &path) { return !path.starts_with(typed); });
    return all;
}

Strings values_of_leaf(const lysc_node *root, const std::string &path) {
    Strings all;
    for (const yang::Path &node : paths_of(root, path))
        if (const lysc_node *leaf = node.back().node; (leaf->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0)
            add_values(all, leaf->nodetype == LYS_LEAF
                                ? reinterpret_cast<const lysc_node_leaf *>(leaf)->type
                                : reinterpret_cast<const lysc_node_leaflist *>(leaf)->type);
    return all;
}

} // namespace yfw::cli

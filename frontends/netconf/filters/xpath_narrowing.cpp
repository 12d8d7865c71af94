#include "frontends/netconf/filters/xpath_narrowing.h"

#include <algorithm>

#include "frontends/netconf/filters/filter.h"
#include "frontends/netconf/filters/xpath_tokens.h"

namespace yfw::netconf {
namespace {

using Kind = XPathToken::Kind;
using Tokens = std::vector<XPathToken>;

// Beyond this, reading all data at once is faster.
constexpr size_t most_paths = 16;

// Whether the expression can reach data outside its own steps: through a parent or ancestor axis, a reference,
// or from the root again.
bool reaches_elsewhere(const Tokens &tokens) {
    size_t predicates = 0;
    for (size_t i = 0; i < tokens.size(); i++) {
        const XPathToken &token = tokens[i];
        predicates += token.is("[") ? 1 : 0;
        predicates -= token.is("]") && predicates > 0 ? 1 : 0;
        const bool is_step = token.is("/") || token.is("//");
        const bool continues_path =
            i > 0 && (tokens[i - 1].kind == Kind::name || tokens[i - 1].is("]") || tokens[i - 1].is(")") ||
                      tokens[i - 1].is(".") || tokens[i - 1].is(".."));
        const bool leads_away =
            token.kind == Kind::function && (token.text == "current" || token.text == "deref");
        if (leads_away || token.is("..") || token.kind == Kind::axis || token.kind == Kind::variable ||
            (is_step && predicates > 0 && !continues_path))
            return true;
    }
    return false;
}

// The operands of the unions outside predicates.
std::vector<Tokens> operands_of(const Tokens &tokens) {
    std::vector<Tokens> operands(1);
    size_t open = 0;
    for (const XPathToken &token : tokens) {
        open += token.is("[") || token.is("(") ? 1 : 0;
        open -= (token.is("]") || token.is(")")) && open > 0 ? 1 : 0;
        if (token.is("|") && open == 0)
            operands.emplace_back();
        else
            operands.back().push_back(token);
    }
    return operands;
}

class Steps {
public:
    Steps(const Tokens &tokens, const Prefixes &prefixes) : tokens_(tokens), prefixes_(prefixes) {}

    // Nothing when the operand may concern everything below the root; an empty path when it concerns nothing
    // there.
    std::optional<yang::Path> below(const lysc_node *root) {
        if (!takes("/") || !is_name())
            return std::nullopt;
        if (!means(root))
            return tokens_[at_].text.ends_with('*') ? std::nullopt : std::optional<yang::Path>(yang::Path{});
        yang::Path path{{root, {}}};
        at_++;
        while (take_predicates(path.back()) && takes("/") && is_name()) {
            const lysc_node *child = child_meant(path.back().node);
            if (child == nullptr) {
                require_served(path.back().node, local_name(path.back().node->module));
                break;
            }
            path.push_back({child, {}});
            at_++;
        }
        return path;
    }

private:
    bool at(std::string_view symbol, size_t ahead = 0) const {
        return at_ + ahead < tokens_.size() && tokens_[at_ + ahead].is(symbol);
    }
    bool takes(std::string_view symbol) {
        const bool there = at(symbol);
        at_ += there ? 1 : 0;
        return there;
    }
    bool is_name(size_t ahead = 0) const {
        return at_ + ahead < tokens_.size() && tokens_[at_ + ahead].kind == Kind::name;
    }

    bool means(const lysc_node *node, size_t ahead = 0) const {
        const std::string_view name = tokens_[at_ + ahead].text;
        const size_t colon = name.find(':');
        if (colon == std::string_view::npos)
            return name == node->name;
        const auto prefix = prefixes_.find(name.substr(0, colon));
        return prefix != prefixes_.end() && prefix->second == node->module->ns &&
               name.substr(colon + 1) == node->name;
    }

    // The step's name without its prefix; empty when that is not of this module.
    std::string_view local_name(const lys_module *module) const {
        const std::string_view name = tokens_[at_].text;
        const size_t colon = name.find(':');
        if (colon == std::string_view::npos)
            return name;
        const auto prefix = prefixes_.find(name.substr(0, colon));
        return prefix != prefixes_.end() && prefix->second == module->ns ? name.substr(colon + 1) : "";
    }

    // NULL when there is no such child, or more than one.
    const lysc_node *child_meant(const lysc_node *parent) const {
        const lysc_node *found = nullptr;
        const lysc_node *child = nullptr;
        while ((child = lys_getnext(child, parent, nullptr, 0)) != nullptr) {
            if (!means(child))
                continue;
            if (found != nullptr)
                return nullptr;
            found = child;
        }
        return found;
    }

    // False when a predicate cannot be expressed in a path: everything below the step is then needed.
    bool take_predicates(yang::PathStep &step) {
        while (at("[")) {
            const lysc_node *key = key_named(step.node);
            const bool is_second =
                std::any_of(step.predicates.begin(), step.predicates.end(),
                            [key](const yang::Predicate &other) { return other.leaf == key; });
            if (key == nullptr || is_second)
                return false;
            const std::string_view quoted = tokens_[at_ + 3].text;
            step.predicates.push_back({key, std::string(quoted.substr(1, quoted.size() - 2))});
            at_ += 5;
        }
        return true;
    }

    // For [key='value']; NULL for any other predicate.
    const lysc_node *key_named(const lysc_node *list) const {
        const bool has_form = is_name(1) && at("=", 2) && at_ + 3 < tokens_.size() &&
                              tokens_[at_ + 3].kind == Kind::literal && tokens_[at_ + 3].text.size() > 1 &&
                              at("]", 4);
        for (const lysc_node *key = has_form ? lysc_node_child(list) : nullptr;
             key != nullptr && lysc_is_key(key); key = key->next)
            if (means(key, 1))
                return key;
        return nullptr;
    }

    const Tokens &tokens_;
    const Prefixes &prefixes_;
    size_t at_ = 0;
};

} // namespace

std::optional<std::vector<yang::Path>> xpath_narrowing(const std::string &expression, const Prefixes &prefixes,
                                                       const lysc_node *root) {
    const Tokens tokens = xpath_tokens(expression);
    if (reaches_elsewhere(tokens))
        return std::nullopt;
    std::vector<yang::Path> paths;
    for (const Tokens &operand : operands_of(tokens)) {
        std::optional<yang::Path> path = Steps(operand, prefixes).below(root);
        if (!path.has_value() || paths.size() == most_paths)
            return std::nullopt;
        if (!path->empty())
            paths.push_back(std::move(*path));
    }
    return paths;
}

} // namespace yfw::netconf

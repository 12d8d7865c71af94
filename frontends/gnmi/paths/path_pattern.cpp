#include "frontends/gnmi/paths/path_pattern.h"

#include <algorithm>

#include "frontends/gnmi/messages/refusal.h"
#include "frontends/gnmi/paths/key_value.h"
#include "frontends/gnmi/paths/path_text.h"
#include "yang/not_served.h"
#include "yang/schemas.h"

namespace yfw::gnmi {
namespace {

constexpr const char *served_origin = "openconfig";
constexpr const char *any_one = "*";
constexpr const char *any_number = "...";

[[noreturn]] void refuse(const std::string &place, const std::string &why) {
    throw Refusal(Code::invalid_argument, place + ": " + why);
}

void check_origin(const ::gnmi::Path &prefix, const ::gnmi::Path &path, const std::string &place) {
    if (!prefix.origin().empty() && !path.origin().empty())
        refuse(place, "the origin stands both in the prefix and in the path");
    const std::string &origin = prefix.origin().empty() ? path.origin() : prefix.origin();
    if (!origin.empty() && origin != served_origin)
        refuse(place, "the origin \"" + origin + "\" is not served, only \"" + served_origin + "\" is");
}

void check_elements(const ::gnmi::Path &path, const std::string &place) {
    if (path.element_size() > 0)
        refuse(place, "paths of \"element\" strings are not supported; use \"elem\"");
    for (const ::gnmi::PathElem &element : path.elem())
        if (element.name().empty())
            refuse(place, "an element has no name");
}

std::vector<const lysc_node *> children_of(const lysc_node *parent, const lysc_node *root) {
    if (parent == nullptr)
        return {root};
    std::vector<const lysc_node *> children;
    for (const lysc_node *child = lysc_node_child(parent); child != nullptr; child = child->next)
        if ((child->nodetype & (LYS_CONTAINER | LYS_LIST | LYS_LEAF | LYS_LEAFLIST)) != 0)
            children.push_back(child);
    return children;
}

std::vector<const lysc_node *> keys_of(const lysc_node *node) {
    std::vector<const lysc_node *> keys;
    if (node->nodetype == LYS_LIST)
        for (const lysc_node *key = lysc_node_child(node); key != nullptr && lysc_is_key(key); key = key->next)
            keys.push_back(key);
    return keys;
}

// Walks the schema along the elements, and collects the nodes that they lead to.
class Reader {
public:
    Reader(const lysc_node *root, std::vector<const ::gnmi::PathElem *> elements, std::string place)
        : root_(root), elements_(std::move(elements)), place_(std::move(place)) {}

    std::vector<PathPattern> read() {
        follow(0);
        if (found_.empty() && is_not_served_)
            throw Refusal(Code::unimplemented, place_ + ": " + why_);
        if (found_.empty())
            refuse(place_, why_.empty() ? "names no node of the model" : why_);
        return minimal();
    }

private:
    void follow(size_t at) {
        if (at == elements_.size()) {
            found_.push_back(pattern_);
            return;
        }
        const ::gnmi::PathElem &element = *elements_[at];
        if (element.name() == any_number)
            return follow_any_number(at);
        const lysc_node *parent = pattern_.node();
        bool is_known = false;
        for (const lysc_node *child : children_of(parent, root_)) {
            if (element.name() != any_one && element.name() != child->name)
                continue;
            is_known = true;
            if (const auto step = step_of(child, element))
                with(*step, [&] { follow(at + 1); });
        }
        if (is_known || !why_.empty())
            return;
        is_not_served_ = parent != nullptr && yang::is_not_served(parent, element.name());
        why_ = parent != nullptr ? yang::unknown_child(parent, element.name())
                                 : "unknown node \"" + element.name() + "\"";
    }

    // None, or any child and so on below it. Several in a row mean no more than one.
    void follow_any_number(size_t at) {
        if (!elements_[at]->key().empty())
            refuse(place_, "\"...\" takes no keys");
        if (at + 1 < elements_.size() && elements_[at + 1]->name() == any_number)
            return follow_any_number(at + 1);
        follow(at + 1);
        for (const lysc_node *child : children_of(pattern_.node(), root_))
            with(PatternStep{child, std::vector<std::optional<std::string>>(keys_of(child).size())},
                 [&] { follow_any_number(at); });
    }

    template <class Then> void with(PatternStep step, Then &&then) {
        pattern_.steps.push_back(std::move(step));
        then();
        pattern_.steps.pop_back();
    }

    // Nothing when a wildcard name leads to a node that does not have the keys.
    std::optional<PatternStep> step_of(const lysc_node *node, const ::gnmi::PathElem &element) {
        PatternStep step{node, {}};
        size_t used = 0;
        for (const lysc_node *key : keys_of(node)) {
            const auto given = element.key().find(key->name);
            used += given != element.key().end() ? 1 : 0;
            const bool is_any = given == element.key().end() || given->second == any_one;
            step.keys.push_back(is_any ? std::nullopt : std::optional(key_value(key, given->second, element)));
        }
        if (used == element.key().size())
            return step;
        if (element.name() != any_one)
            refuse(place_,
                   "\"" + std::string(node->name) + "\" has no key \"" + unknown_key(node, element) + "\"");
        return std::nullopt;
    }

    std::string key_value(const lysc_node *key, const std::string &value,
                          const ::gnmi::PathElem &element) const {
        const auto canonical = canonical_value(key, value);
        if (!canonical.has_value())
            refuse(place_, "the key \"" + std::string(key->name) + "\" of \"" + element.name() +
                               "\" cannot have the value \"" + value + "\"");
        return *canonical;
    }

    static std::string unknown_key(const lysc_node *node, const ::gnmi::PathElem &element) {
        const std::vector<const lysc_node *> keys = keys_of(node);
        for (const auto &given : element.key())
            if (std::none_of(keys.begin(), keys.end(),
                             [&given](const lysc_node *key) { return given.first == key->name; }))
                return given.first;
        return "";
    }

    // In the order found; an earlier one wins over an equal one.
    std::vector<PathPattern> minimal() const {
        std::vector<PathPattern> kept;
        for (const PathPattern &pattern : found_) {
            const auto covers = [&pattern](const PathPattern &other) { return other.covers(pattern); };
            if (std::any_of(kept.begin(), kept.end(), covers))
                continue;
            std::erase_if(kept, [&pattern](const PathPattern &other) { return pattern.covers(other); });
            kept.push_back(pattern);
        }
        return kept;
    }

    const lysc_node *root_;
    std::vector<const ::gnmi::PathElem *> elements_;
    std::string place_;
    PathPattern pattern_;
    std::vector<PathPattern> found_;
    std::string why_; // nothing was found
    bool is_not_served_ = false;
};

bool covers_step(const PatternStep &step, const PatternStep &other) {
    if (step.node != other.node)
        return false;
    for (size_t i = 0; i < step.keys.size(); i++)
        if (step.keys[i].has_value() && step.keys[i] != other.keys[i])
            return false;
    return true;
}

} // namespace

bool PathPattern::covers(const PathPattern &other) const {
    return steps.size() <= other.steps.size() &&
           std::equal(steps.begin(), steps.end(), other.steps.begin(), covers_step);
}

void check_prefix(const ::gnmi::Path &prefix) {
    check_elements(prefix, "the prefix " + to_text(prefix));
    check_origin(prefix, ::gnmi::Path::default_instance(), "the prefix " + to_text(prefix));
}

std::vector<PathPattern> read_path(const lysc_node *root, const ::gnmi::Path &prefix,
                                   const ::gnmi::Path &path) {
    const std::string place = to_text(prefix, path);
    check_origin(prefix, path, place);
    check_elements(prefix, place);
    check_elements(path, place);
    if (!path.target().empty())
        refuse(place, "the target belongs into the prefix");
    std::vector<const ::gnmi::PathElem *> elements;
    for (const ::gnmi::Path *part : {&prefix, &path})
        for (const ::gnmi::PathElem &element : part->elem())
            elements.push_back(&element);
    return Reader(root, std::move(elements), place).read();
}

namespace {

bool has_wildcard(const ::gnmi::PathElem &element) {
    return element.name() == any_one || element.name() == any_number ||
           std::any_of(element.key().begin(), element.key().end(),
                       [](const auto &key) { return key.second == any_one; });
}

} // namespace

PathPattern read_single_path(const lysc_node *root, const ::gnmi::Path &prefix, const ::gnmi::Path &path) {
    const std::string place = to_text(prefix, path);
    for (const ::gnmi::Path *part : {&prefix, &path})
        for (const ::gnmi::PathElem &element : part->elem())
            if (has_wildcard(element))
                refuse(place, "wildcards are not allowed here");
    const std::vector<PathPattern> patterns = read_path(root, prefix, path);
    for (const PatternStep &step : patterns.front().steps) {
        const std::vector<const lysc_node *> keys = keys_of(step.node);
        for (size_t i = 0; i < keys.size(); i++)
            if (!step.keys[i].has_value())
                refuse(place, "the key \"" + std::string(keys[i]->name) + "\" of \"" + step.node->name +
                                  "\" is missing");
    }
    return patterns.front();
}

yang::Path program_path(const PathPattern &pattern, const lysc_node *root) {
    yang::Path path;
    for (const PatternStep &step : pattern.steps) {
        yang::PathStep &made = path.emplace_back(yang::PathStep{step.node, {}});
        const std::vector<const lysc_node *> keys = keys_of(step.node);
        for (size_t i = 0; i < keys.size(); i++)
            if (step.keys[i].has_value())
                made.predicates.push_back({keys[i], *step.keys[i]});
    }
    if (path.empty())
        path.push_back({root, {}});
    return path;
}

} // namespace yfw::gnmi

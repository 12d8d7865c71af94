#include "yang/typed_path.h"

#include <algorithm>

#include "base/error.h"
#include "yang/path_resolver.h"
#include "yang/path_syntax.h"
#include "yang/path_values.h"

namespace yfw::yang {
namespace {

// Whether `path` selects what the other one selects: with wildcards, both have the same conditions where they
// are about the same step.
bool covers(const Path &path, const Path &other) {
    const auto is_same = [](const PathStep &a, const PathStep &b) {
        const auto equal = [](const Predicate &x, const Predicate &y) {
            return x.leaf == y.leaf && x.value == y.value;
        };
        return a.node == b.node &&
               (a.predicates.empty() || std::equal(a.predicates.begin(), a.predicates.end(),
                                                   b.predicates.begin(), b.predicates.end(), equal));
    };
    return path.size() <= other.size() && std::equal(path.begin(), path.end(), other.begin(), is_same);
}

std::vector<Path> without_covered(std::vector<Path> paths) {
    std::vector<Path> kept;
    for (Path &path : paths) {
        const auto is_covered = [&](const Path &other) { return covers(other, path); };
        if (std::any_of(kept.begin(), kept.end(), is_covered))
            continue;
        std::erase_if(kept, [&](const Path &other) { return covers(path, other); });
        kept.push_back(std::move(path));
    }
    return kept;
}

// "//" leaves out the top node, so one slash too many before it stays an error.
void refuse_top_below_itself(const lysc_node *root, std::string_view text, const std::vector<PathWord> &words) {
    if (text.starts_with("//") && words[1].kind == PathWord::Kind::name && words[1].name.name == root->name)
        refuse_malformed_path(text, 1, "one \"/\" before \"" + std::string(root->name) + "\"");
}

// Several in a row mean no more than one, and would be followed in every combination.
void join_any_depths(std::vector<PathWord> &words) {
    const auto are_any_depth = [](const PathWord &a, const PathWord &b) {
        return a.kind == PathWord::Kind::any_depth && b.kind == PathWord::Kind::any_depth;
    };
    words.erase(std::unique(words.begin(), words.end(), are_any_depth), words.end());
}

bool lacks_a_key(const PathStep &step) {
    if (step.node->nodetype != LYS_LIST)
        return false;
    for (const lysc_node *key = lysc_node_child(step.node); key != nullptr && lysc_is_key(key); key = key->next)
        if (std::none_of(step.predicates.begin(), step.predicates.end(),
                         [&](const Predicate &predicate) { return predicate.leaf == key; }))
            return true;
    return false;
}

bool is_editable(const Path &path) {
    return (path.back().node->flags & LYS_CONFIG_W) != 0 && !lysc_is_key(path.back().node);
}

// Finds what the steps of a path select.
class Search {
public:
    Search(const Path &wanted, bool must_exist) : wanted_(wanted), must_exist_(must_exist) {}

    std::vector<Path> in(const lyd_node *data) {
        follow(0, data);
        return std::move(found_);
    }

private:
    bool is_settled(size_t at) const {
        return at == wanted_.size() ||
               (!must_exist_ && std::none_of(wanted_.begin() + static_cast<Path::difference_type>(at),
                                             wanted_.end(), lacks_a_key));
    }

    void follow(size_t at, const lyd_node *siblings) {
        if (is_settled(at)) {
            found_.push_back(path_);
            found_.back().insert(found_.back().end(), wanted_.begin() + static_cast<Path::difference_type>(at),
                                 wanted_.end());
            return;
        }
        const PathStep &wanted = wanted_[at];
        for (const lyd_node *node = siblings; node != nullptr; node = node->next) {
            if (node->schema != wanted.node ||
                !std::all_of(wanted.predicates.begin(), wanted.predicates.end(),
                             [&](const Predicate &predicate) { return meets(node, predicate); }))
                continue;
            path_.push_back(with_keys(wanted, node));
            follow(at + 1, lyd_child(node));
            path_.pop_back();
            if (wanted.node->nodetype == LYS_LEAFLIST)
                return; // the path without a value stands for all of them
        }
    }

    static PathStep with_keys(PathStep step, const lyd_node *node) {
        if (!lacks_a_key(step))
            return step;
        std::erase_if(step.predicates, [](const Predicate &predicate) { return lysc_is_key(predicate.leaf); });
        for (const lyd_node *key = lyd_child(node); key != nullptr && lysc_is_key(key->schema); key = key->next)
            step.predicates.push_back({key->schema, lyd_get_value(key)});
        return step;
    }

    const Path &wanted_;
    bool must_exist_;
    Path path_;
    std::vector<Path> found_;
};

} // namespace

TypedPath parse_typed_path(const lysc_node *root, std::string_view text) {
    std::vector<PathWord> words = read_path_words(text, PathGrammar::typed);
    refuse_top_below_itself(root, text, words);
    join_any_depths(words);
    const bool has_wildcards = std::any_of(words.begin(), words.end(), [](const PathWord &word) {
        return word.kind != PathWord::Kind::name ||
               std::any_of(word.conditions.begin(), word.conditions.end(),
                           [](const PathCondition &condition) { return !condition.value.has_value(); });
    });
    return {std::string(text), without_covered(resolve_path(root, text, words)), has_wildcards};
}

std::vector<Path> existing_paths(const TypedPath &path, const lyd_node *data, bool must_exist) {
    if (!path.has_wildcards)
        return path.nodes;
    std::vector<Path> found;
    for (const Path &node : path.nodes)
        if (is_editable(node))
            for (Path &one : Search(node, must_exist).in(data))
                found.push_back(std::move(one));
    if (found.empty())
        throw Error(ErrorTag::data_missing, path.text, "matches nothing in the configuration");
    return found;
}

} // namespace yfw::yang

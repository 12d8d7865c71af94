#include "yang/path.h"

#include "yang/path_resolver.h"
#include "yang/path_syntax.h"
#include "yang/yang_text.h"

namespace yfw::yang {

const std::string *PathStep::value() const {
    for (const Predicate &predicate : predicates)
        if (predicate.leaf == node)
            return &predicate.value;
    return nullptr;
}

Path parse_path(const lysc_node *root, std::string_view text) {
    return resolve_path(root, text, read_path_words(text, PathGrammar::exact)).front();
}

std::string to_string(const Path &path) {
    std::string text;
    for (const PathStep &step : path) {
        text.append("/").append(step.node->name);
        for (const Predicate &predicate : step.predicates)
            text.append("[")
                .append(predicate.leaf == step.node ? "." : predicate.leaf->name)
                .append("=")
                .append(quoted_literal(predicate.value))
                .append("]");
    }
    return text;
}

std::string schema_path(const lysc_node *node) {
    return node == nullptr ? "" : schema_path(node->parent) + "/" + node->name;
}

} // namespace yfw::yang

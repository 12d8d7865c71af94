// The grammar of paths, without a model.
#ifndef YFW_YANG_PATH_SYNTAX_H
#define YFW_YANG_PATH_SYNTAX_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace yfw::yang {

// `exact`: one node with values in quotes. `typed` also takes what people type: values without quotes, and
// wildcards.
enum class PathGrammar { exact, typed };

// A name, with its module if it has one.
struct PathName {
    std::string_view module;
    std::string_view name;
};

// What stands in brackets.
struct PathCondition {
    bool is_own = false;              // [.='value']
    PathName leaf{};                  // otherwise
    std::optional<std::string> value; // nothing: any, written *
};

// What stands between slashes.
struct PathWord {
    enum class Kind {
        name,
        any_node,  // *
        any_depth, // ... or the empty word of //: no node, or any number of nodes below one another
    };

    Kind kind = Kind::name;
    PathName name{};
    std::vector<PathCondition> conditions{};
    size_t at = 0; // where it begins in the text
};

// The words of a path, in views of its text. Throws Error naming the position where the text is malformed.
std::vector<PathWord> read_path_words(std::string_view text, PathGrammar grammar);

// The error for a text that is malformed at a position, counted from 0.
[[noreturn]] void refuse_malformed_path(std::string_view text, size_t at, const std::string &expected);

} // namespace yfw::yang

#endif

// From the words of a path to nodes of the schema.
#ifndef YFW_YANG_PATH_RESOLVER_H
#define YFW_YANG_PATH_RESOLVER_H

#include <string_view>
#include <vector>

#include "yang/path.h"
#include "yang/path_syntax.h"

namespace yfw::yang {

// All paths below `root`, their first step, that the words stand for, in the schema's order; one unless there
// are wildcards. Throws Error, with the text as its place, naming the word that is not in the model.
std::vector<Path> resolve_path(const lysc_node *root, std::string_view text,
                               const std::vector<PathWord> &words);

} // namespace yfw::yang

#endif

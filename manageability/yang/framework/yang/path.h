// Paths into the OpenConfig model as users write them: /lldp/interfaces/interface[name='eth1']/state.
#ifndef YFW_YANG_PATH_H
#define YFW_YANG_PATH_H

#include <string>
#include <string_view>
#include <vector>

#include <libyang/libyang.h>

namespace yfw::yang {

// `leaf`: a leaf of the step or, for [.='value'], the step's own leaf-list.
struct Predicate {
    const lysc_node *leaf;
    std::string value;
};

struct PathStep {
    const lysc_node *node;
    std::vector<Predicate> predicates;

    // The value that [.='value'] names; NULL when there is none.
    const std::string *value() const;
};

using Path = std::vector<PathStep>;

// Parses an absolute path below `root`, its first step. Steps may have the module name as a prefix; predicates
// ([leaf='value'], with either kind of quotes, doubled inside) name leaves of the step, and [.='value'] a value
// of a leaf-list. Throws Error naming the step that is not in the model, or the position where the text is
// malformed.
Path parse_path(const lysc_node *root, std::string_view text);

// The path as text, with its predicates.
std::string to_string(const Path &path);

// The schema path of a node: /lldp/interfaces/interface.
std::string schema_path(const lysc_node *node);

} // namespace yfw::yang

#endif

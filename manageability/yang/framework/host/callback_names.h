// The names of the plug-in's OpenConfig walkers, by the nodes that they walk.
#ifndef YFW_HOST_CALLBACK_NAMES_H
#define YFW_HOST_CALLBACK_NAMES_H

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include <libyang/libyang.h>

namespace yfw::host {

// Names follow the model: a level letter (which of the nodes of this kind, parent and name it is, in the order
// of the model), the name of the model's top, the parent's name and the node's own, without hyphens.
class CallbackNames {
public:
    // `prefix`: common to the names of the mapping's walkers.
    CallbackNames(std::string_view prefix, const lysc_node *top);

    // The node that a walker handles; NULL for a function that is not a walker. `parent`: the node whose walker
    // calls it, or NULL. Of nodes with the same names it is the one below `parent`: a model in use that has
    // more of them than the one that the walkers are named after shifts the letters.
    const lysc_node *node_of_walker(std::string_view function, const lysc_node *parent) const;

private:
    void add(const lysc_node *node);

    struct Hash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };
    std::string prefix_;
    std::map<std::string, char> next_level_;
    std::unordered_map<std::string, const lysc_node *, Hash, std::equal_to<>> walkers_;
    std::multimap<std::string, const lysc_node *, std::less<>> by_words_;
};

} // namespace yfw::host

#endif

// What somebody may have meant who typed an unknown name.
#ifndef YFW_YANG_NEAR_NAME_H
#define YFW_YANG_NEAR_NAME_H

#include <string>
#include <string_view>

#include <libyang/libyang.h>

namespace yfw::yang {

// The path below `parent` of the node that was probably meant: a child whose name is spelled much like it, else
// a node further down that has the very name. Empty when nothing comes close.
std::string near_child(const lysc_node *parent, std::string_view name);

// The name, spelled much like it, of a node anywhere below `top`. Empty when there is none.
std::string near_descendant(const lysc_node *top, std::string_view name);

} // namespace yfw::yang

#endif

#include "yang/key_reference.h"

#include <string>
#include <string_view>

#include "yang/path_words.h"
#include "yang/schemas.h"

namespace yfw::yang {

std::vector<const lysc_node *> leaf_behind_key(const lysc_node *key) {
    const lysc_type *type = reinterpret_cast<const lysc_node_leaf *>(key)->type;
    if (type->basetype != LY_TYPE_LEAFREF)
        return {};
    const std::string path = lyxp_get_expr(reinterpret_cast<const lysc_type_leafref *>(type)->path);
    constexpr std::string_view up = "../";
    if (path.rfind(up, 0) != 0 || path.find("..", up.size()) != std::string::npos)
        return {};
    std::vector<const lysc_node *> steps;
    PathWords words(std::string_view(path).substr(up.size() - 1));
    std::string_view word;
    while (words.next(word)) {
        const size_t colon = word.find(':');
        const lysc_node *above = steps.empty() ? key->parent : steps.back();
        steps.push_back(schema_child(above, colon == std::string_view::npos ? word : word.substr(colon + 1)));
        if (steps.back() == nullptr)
            return {};
    }
    return steps;
}

} // namespace yfw::yang

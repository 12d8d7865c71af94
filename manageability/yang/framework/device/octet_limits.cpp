#include "device/octet_limits.h"

#include <cstring>
#include <optional>
#include <string>

#include "base/error.h"
#include "yang/tree_text.h"

namespace yfw::device {
namespace {

// The limit that the model sets beside the type, which counts characters.
std::optional<size_t> most_octets(const lysc_node *leaf) {
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(leaf->exts, i) {
        if (std::strcmp(leaf->exts[i].def->name, "max-octets") == 0)
            return std::stoul(leaf->exts[i].argument);
    }
    return std::nullopt;
}

} // namespace

void check_octets(const lyd_node *data) {
    for (; data != nullptr; data = data->next) {
        check_octets(lyd_child(data));
        const char *value = lyd_get_value(data);
        const std::optional<size_t> most = value != nullptr ? most_octets(data->schema) : std::nullopt;
        if (most.has_value() && std::strlen(value) > *most)
            throw Error(ErrorTag::invalid_value, yang::path_of(data),
                        "has at most " + std::to_string(*most) + " octets in UTF-8, not " +
                            std::to_string(std::strlen(value)));
    }
}

} // namespace yfw::device

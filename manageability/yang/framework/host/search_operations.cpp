// The contract's operations that search: stitching by keyed path, and look-ups in the native response.
#include <cstring>
#include <new>
#include <string_view>
#include <vector>

#include "host/host_status.h"
#include "host/node_hierarchy.h"
#include "host/request_context.h"
#include "host/tree_owner.h"
#include "yang/path_words.h"

namespace {

using namespace yfw::host;

// One list of a keyed path: its plain path and the entry's key.
struct KeyedList {
    std::string_view path;
    std::string_view key_name;
    std::string_view key_value;
};

// Splits a keyed path along the plain path of its last list. Key values are unquoted: a value ends where the
// rest of the plain path continues, so it may contain brackets and slashes.
bool take_apart(std::string_view keyed, std::string_view plain, std::vector<KeyedList> &lists) {
    size_t plain_end = 0;
    while (!keyed.empty()) {
        const size_t open = keyed.find('[');
        if (open == std::string_view::npos)
            return lists.size() > 0;
        const std::string_view step = keyed.substr(0, open);
        if (plain.substr(plain_end, step.size()) != step)
            return false;
        plain_end += step.size();
        const size_t equals = keyed.find('=', open);
        if (equals == std::string_view::npos)
            return false;
        const std::string_view rest = plain.substr(plain_end);
        const std::string follows = "]" + (rest.empty() ? "/" : std::string(rest) + "[");
        const size_t end = rest.empty() ? keyed.rfind(follows) : keyed.find(follows, equals + 1);
        if (end == std::string_view::npos || end <= equals)
            return false;
        lists.push_back({plain.substr(0, plain_end), keyed.substr(open + 1, equals - open - 1),
                         keyed.substr(equals + 1, end - equals - 1)});
        keyed.remove_prefix(end + 1);
        if (rest.empty())
            return true;
    }
    return !lists.empty();
}

// The outer lists are found by their keys; the entry of the last one maps the native entry in hand.
terrno stitch(yfw_map_stitch &record, const tidl_yfw_datatree *source) {
    TreeOwner *owner =
        record.parent != nullptr ? static_cast<TreeOwner *>(record.parent->framework_private) : nullptr;
    std::vector<KeyedList> lists;
    if (owner == nullptr || !take_apart(record.keyed_path, record.list_path, lists))
        return status_bad_argument;
    const KeyedList inner = lists.back();
    lists.pop_back();
    for (const KeyedList &list : lists)
        if (owner->find_or_add_entry(*record.parent, list.path, list.key_name, list.key_value) == nullptr)
            return status_unknown_path;
    return owner->map_entry(*record.parent, inner.path, inner.key_name, inner.key_value, source) != nullptr
               ? YMAP_OK
               : status_unknown_path;
}

} // namespace

terrno yfw_map_stitch_list_to_list(yfw_map_ctx ctx, yfw_map_stitch *record) {
    try {
        return stitch(*record, RequestContext::of(ctx).hierarchy().current_list_entry());
    } catch (const std::bad_alloc &) {
        return YMAP_ERR_NO_MEMORY;
    }
}

terrno yfw_map_tree_xpath_operations(yfw_map_ctx, yfw_map_xpath_query *query) {
    constexpr uint32_t value_of_leaf = 4;
    constexpr uint32_t below_start = 3;
    if (query->operation != value_of_leaf || query->operation_kind != below_start || query->start == nullptr)
        return status_bad_argument;
    yfw::yang::PathWords words(query->xpath);
    std::string_view word;
    const tidl_yfw_datatree *at = query->start;
    while (at != nullptr && words.next(word))
        at = find_child(*at, word);
    if (at == nullptr || at == query->start || at->ns == nullptr || std::strcmp(at->ns, query->ns) != 0)
        return status_not_found;
    query->value = at->value;
    return YMAP_OK;
}

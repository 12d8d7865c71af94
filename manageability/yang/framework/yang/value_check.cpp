#include "yang/value_check.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

#include <libyang/plugins_types.h>

#include "yang/leaf_type.h"
#include "yang/schemas.h"

namespace yfw::yang {
namespace {

constexpr size_t most_remembered = 1024;

// Of an integer type without ranges: how many digits any number may have.
size_t digits_of(LY_DATA_TYPE type) {
    switch (type) {
    case LY_TYPE_INT8:
    case LY_TYPE_UINT8:
        return 2;
    case LY_TYPE_INT16:
    case LY_TYPE_UINT16:
        return 4;
    case LY_TYPE_INT32:
    case LY_TYPE_UINT32:
        return 9;
    case LY_TYPE_INT64:
        return 18;
    case LY_TYPE_UINT64:
        return 19;
    default:
        return 0;
    }
}

bool is_canonical_number(std::string_view text) {
    return !text.empty() && (text.front() != '0' || text.size() == 1) &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

// A length counts characters, of one to four octets: a text that is not empty has at least one, and none has
// more characters than octets.
ValueCheck::ValueCheck(const lysc_node *leaf) : leaf_(leaf) {
    const lysc_type *type = leaf_type(leaf);
    if (type->basetype == LY_TYPE_STRING) {
        const auto *string = reinterpret_cast<const lysc_type_str *>(type);
        const lysc_range::lysc_range_part *first = string->length != nullptr ? string->length->parts : nullptr;
        if (string->patterns != nullptr || type->plugin->store != lyplg_type_store_string ||
            (first != nullptr && first->min_u64 > 1))
            return;
        kind_ = Kind::length;
        least_ = first != nullptr ? first->min_u64 : 0;
        most_ = first != nullptr ? first->max_u64 : std::numeric_limits<size_t>::max();
        return;
    }
    most_ = digits_of(type->basetype);
    if (most_ != 0 && reinterpret_cast<const lysc_type_num *>(type)->range == nullptr &&
        (type->plugin->store == lyplg_type_store_uint || type->plugin->store == lyplg_type_store_int))
        kind_ = Kind::digits;
}

bool ValueCheck::is_certainly_allowed(std::string_view text) const {
    return kind_ != Kind::libyang && text.size() >= least_ && text.size() <= most_ &&
           (kind_ == Kind::length || is_canonical_number(text));
}

ValueCheck::Result ValueCheck::ask_libyang(const char *text) const {
    Result result;
    const ly_ctx *context = leaf_->module->ctx;
    const char *canonical = nullptr;
    const LY_ERR status =
        lyd_value_validate(context, leaf_, text, std::strlen(text), nullptr, nullptr, &canonical);
    result.is_allowed = status == LY_SUCCESS || status == LY_EINCOMPLETE;
    if (!result.is_allowed)
        result.error = take_yang_error(context);
    if (canonical != nullptr && std::strcmp(canonical, text) != 0)
        result.canonical = canonical;
    lydict_remove(context, canonical);
    return result;
}

const ValueCheck::Result &ValueCheck::of(const char *text) {
    static const Result allowed;
    if (is_certainly_allowed(text))
        return allowed;
    const auto found = known_.find(std::string_view(text));
    if (found != known_.end())
        return found->second;
    last_ = ask_libyang(text);
    if (known_.size() < most_remembered)
        return known_.emplace(text, std::move(last_)).first->second;
    return last_;
}

} // namespace yfw::yang

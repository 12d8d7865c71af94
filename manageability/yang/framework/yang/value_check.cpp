#include "yang/value_check.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include <libyang/plugins_types.h>

#include "yang/leaf_type.h"
#include "yang/schemas.h"

namespace yfw::yang {
namespace {

constexpr size_t most_remembered = 1024;

// Of an unsigned type without ranges: how many digits are certainly not too many.
size_t digits_of(LY_DATA_TYPE type) {
    switch (type) {
    case LY_TYPE_UINT8:
        return 2;
    case LY_TYPE_UINT16:
        return 4;
    case LY_TYPE_UINT32:
        return 9;
    case LY_TYPE_UINT64:
        return 19;
    default:
        return 0;
    }
}

// Whether it is a number in canonical form with at most this many digits.
bool is_number(std::string_view text, size_t most_digits) {
    return !text.empty() && text.size() <= most_digits && (text.front() != '0' || text.size() == 1) &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

ValueCheck::ValueCheck(const lysc_node *leaf) : leaf_(leaf) {
    const lysc_type *type = leaf_type(leaf);
    if (type->basetype == LY_TYPE_STRING) {
        const auto *string = reinterpret_cast<const lysc_type_str *>(type);
        if (string->length == nullptr && string->patterns == nullptr &&
            type->plugin->store == lyplg_type_store_string)
            kind_ = Kind::every_text;
        return;
    }
    most_digits_ = digits_of(type->basetype);
    if (most_digits_ != 0 && reinterpret_cast<const lysc_type_num *>(type)->range == nullptr &&
        type->plugin->store == lyplg_type_store_uint)
        kind_ = Kind::digits;
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
    if (kind_ == Kind::every_text || (kind_ == Kind::digits && is_number(text, most_digits_)))
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

#include "host/value_check.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include <libyang/plugins_types.h>

#include "yang/leaf_type.h"
#include "yang/schemas.h"

namespace yfw::host {
namespace {

constexpr size_t most_known = 1024; // for each leaf

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

ValueCheck::ValueCheck(const AnswerSchema &schema) : rules_(schema.size()), known_(schema.size()) {}

ValueCheck::Rule ValueCheck::rule_of(const lysc_type *type) {
    if (type->basetype == LY_TYPE_STRING) {
        const auto *string = reinterpret_cast<const lysc_type_str *>(type);
        const bool is_free = string->length == nullptr && string->patterns == nullptr &&
                             type->plugin->store == lyplg_type_store_string;
        return {is_free ? Rule::Kind::every_text : Rule::Kind::libyang, 0};
    }
    const size_t digits = digits_of(type->basetype);
    if (digits != 0 && reinterpret_cast<const lysc_type_num *>(type)->range == nullptr &&
        type->plugin->store == lyplg_type_store_uint)
        return {Rule::Kind::digits, digits};
    return {Rule::Kind::libyang, 0};
}

ValueCheck::Result ValueCheck::ask_libyang(const lysc_node *leaf, const char *text) {
    Result result;
    const ly_ctx *context = leaf->module->ctx;
    const char *canonical = nullptr;
    const LY_ERR status =
        lyd_value_validate(context, leaf, text, std::strlen(text), nullptr, nullptr, &canonical);
    result.is_allowed = status == LY_SUCCESS || status == LY_EINCOMPLETE;
    if (!result.is_allowed)
        result.error = yang::take_yang_error(context);
    if (canonical != nullptr && std::strcmp(canonical, text) != 0)
        result.canonical = canonical;
    lydict_remove(context, canonical);
    return result;
}

const ValueCheck::Result &ValueCheck::of(const AnswerNode &leaf, const char *text) {
    Rule &rule = rules_[leaf.number];
    if (rule.kind == Rule::Kind::unknown)
        rule = rule_of(yang::leaf_type(leaf.schema));
    if (rule.kind == Rule::Kind::every_text ||
        (rule.kind == Rule::Kind::digits && is_number(text, rule.most_digits)))
        return allowed_;
    Known &known = known_[leaf.number];
    const auto found = known.find(std::string_view(text));
    if (found != known.end())
        return found->second;
    Result result = ask_libyang(leaf.schema, text);
    if (known.size() < most_known)
        return known.emplace(text, std::move(result)).first->second;
    last_ = std::move(result);
    return last_;
}

} // namespace yfw::host

#include "yang/refused_value.h"

#include <vector>

#include "yang/leaf_type.h"
#include "yang/yang_text.h"

namespace yfw::yang {
namespace {

constexpr size_t longest_quoted = 60;
constexpr size_t most_names = 12;

std::string joined(const std::vector<std::string> &words, const std::string &between) {
    std::string text;
    for (size_t i = 0; i < words.size() && i < most_names; i++)
        text += (i == 0 ? "" : i + 1 == words.size() ? between : ", ") + words[i];
    return words.size() > most_names ? text + " and others" : text;
}

// Unsigned bounds for texts and unsigned numbers (LY_TYPE_DEC64 divides libyang's basic types so).
std::string bound(const lysc_type &type, int64_t signed_bound, uint64_t unsigned_bound) {
    return type.basetype < LY_TYPE_DEC64 ? std::to_string(unsigned_bound) : std::to_string(signed_bound);
}

std::vector<std::string> parts_of(const lysc_type &type, const lysc_range *range) {
    std::vector<std::string> parts;
    if (range == nullptr)
        return parts;
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(range->parts, i) {
        const std::string least = bound(type, range->parts[i].min_64, range->parts[i].min_u64);
        const std::string most = bound(type, range->parts[i].max_64, range->parts[i].max_u64);
        parts.push_back(least == most ? least : least + " to " + most);
    }
    return parts;
}

std::string range_of_type(LY_DATA_TYPE type) {
    switch (type) {
    case LY_TYPE_INT8:
        return "-128 to 127";
    case LY_TYPE_INT16:
        return "-32768 to 32767";
    case LY_TYPE_INT32:
        return "-2147483648 to 2147483647";
    case LY_TYPE_INT64:
        return "-9223372036854775808 to 9223372036854775807";
    case LY_TYPE_UINT8:
        return "0 to 255";
    case LY_TYPE_UINT16:
        return "0 to 65535";
    case LY_TYPE_UINT32:
        return "0 to 4294967295";
    default:
        return "0 to 18446744073709551615";
    }
}

std::string numbers_of(const lysc_type &type) {
    std::vector<std::string> parts = parts_of(type, reinterpret_cast<const lysc_type_num &>(type).range);
    if (parts.empty())
        parts.push_back(range_of_type(type.basetype));
    return "a number from " + joined(parts, " or ");
}

std::string texts_of(const lysc_type &type) {
    const auto &text = reinterpret_cast<const lysc_type_str &>(type);
    const std::vector<std::string> lengths = parts_of(type, text.length);
    std::string allowed = lengths.empty() ? "text" : "text of " + joined(lengths, " or ") + " characters";
    std::vector<std::string> patterns;
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(text.patterns, i) {
        patterns.push_back((text.patterns[i]->inverted ? "not " : "") +
                           shortened(text.patterns[i]->expr, longest_quoted));
    }
    return patterns.empty() ? allowed : allowed + " of the pattern " + joined(patterns, " and ");
}

std::string words_of(const lysc_type &type) {
    std::vector<std::string> words;
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(reinterpret_cast<const lysc_type_enum &>(type).enums, i) {
        words.emplace_back(reinterpret_cast<const lysc_type_enum &>(type).enums[i].name);
    }
    return joined(words, " or ");
}

std::vector<const lysc_ident *> derived_from(const lysc_type &type) {
    std::vector<const lysc_ident *> found;
    const auto &identities = reinterpret_cast<const lysc_type_identityref &>(type);
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(identities.bases, i) {
        LY_ARRAY_COUNT_TYPE k = 0;
        LY_ARRAY_FOR(identities.bases[i]->derived, k) {
            found.push_back(identities.bases[i]->derived[k]);
        }
    }
    return found;
}

// A value that lacks its module's name means that identity; otherwise, all are listed.
std::string identities_of(const lysc_type &type, std::string_view value) {
    std::vector<std::string> names;
    for (const lysc_ident *identity : derived_from(type)) {
        if (value == identity->name)
            return identity->module->name + std::string(":") + identity->name;
        names.emplace_back(identity->name);
    }
    return joined(names, " or ");
}

std::string values_of(const lysc_type &type, std::string_view value) {
    if (is_integer(type.basetype))
        return numbers_of(type);
    switch (type.basetype) {
    case LY_TYPE_DEC64:
        return "a decimal number";
    case LY_TYPE_STRING:
        return texts_of(type);
    case LY_TYPE_BOOL:
        return "true or false";
    case LY_TYPE_ENUM:
        return words_of(type);
    case LY_TYPE_IDENT:
        return identities_of(type, value);
    case LY_TYPE_BINARY:
        return "bytes in base64";
    case LY_TYPE_EMPTY:
        return "no value";
    case LY_TYPE_LEAFREF:
        return values_of(*reinterpret_cast<const lysc_type_leafref &>(type).realtype, value);
    case LY_TYPE_UNION: {
        std::vector<std::string> members;
        LY_ARRAY_COUNT_TYPE i = 0;
        LY_ARRAY_FOR(reinterpret_cast<const lysc_type_union &>(type).types, i) {
            members.push_back(values_of(*reinterpret_cast<const lysc_type_union &>(type).types[i], value));
        }
        return joined(members, " or ");
    }
    default:
        return "another value";
    }
}

} // namespace

std::string refused_value(const lysc_node *leaf, std::string_view value) {
    return "\"" + shortened(value, longest_quoted) + "\" is not allowed: expected " +
           values_of(*reinterpret_cast<const lysc_node_leaf *>(leaf)->type, value);
}

} // namespace yfw::yang

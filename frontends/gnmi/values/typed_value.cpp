#include "frontends/gnmi/values/typed_value.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "base/base64.h"
#include "frontends/gnmi/data/matching.h"
#include "frontends/gnmi/messages/refusal.h"
#include "frontends/gnmi/paths/key_value.h"
#include "yang/leaf_type.h"

namespace yfw::gnmi {
namespace {

template <class Number> Number number_in(const char *text) {
    Number number{};
    std::from_chars(text, text + std::strlen(text), number);
    return number;
}

} // namespace

void check_encoding(::gnmi::Encoding encoding) {
    if (std::find(std::begin(served_encodings), std::end(served_encodings), encoding) !=
        std::end(served_encodings))
        return;
    const std::string name = ::gnmi::Encoding_Name(encoding);
    throw Refusal(Code::unimplemented, "the encoding " + (name.empty() ? std::to_string(encoding) : name) +
                                           " is not supported, only JSON, JSON_IETF and PROTO are");
}

JsonForm json_form(::gnmi::Encoding encoding) {
    return encoding == ::gnmi::JSON ? JsonForm::plain : JsonForm::ietf;
}

void set_typed(::gnmi::TypedValue &to, const lysc_node *leaf, const char *value) {
    switch (yang::leaf_type(leaf)->basetype) {
    case LY_TYPE_UINT8:
    case LY_TYPE_UINT16:
    case LY_TYPE_UINT32:
    case LY_TYPE_UINT64:
        to.set_uint_val(number_in<uint64_t>(value));
        break;
    case LY_TYPE_INT8:
    case LY_TYPE_INT16:
    case LY_TYPE_INT32:
    case LY_TYPE_INT64:
        to.set_int_val(number_in<int64_t>(value));
        break;
    case LY_TYPE_BOOL:
        to.set_bool_val(std::string_view(value) == "true");
        break;
    case LY_TYPE_EMPTY:
        to.set_bool_val(true);
        break;
    case LY_TYPE_DEC64:
        to.set_double_val(number_in<double>(value));
        break;
    case LY_TYPE_BINARY:
        to.set_bytes_val(from_base64(value).value_or(value));
        break;
    default:
        to.set_string_val(std::string(bare_value(leaf, value)));
    }
}

void set_typed(::gnmi::TypedValue &to, const Snapshot &snapshot, Snapshot::Index node) {
    const lysc_node *leaf = snapshot[node].schema;
    if (leaf->nodetype != LYS_LEAFLIST)
        return set_typed(to, leaf, snapshot[node].value);
    ::gnmi::ScalarArray &values = *to.mutable_leaflist_val();
    const Snapshot::Index end = end_of_values(snapshot, node);
    for (Snapshot::Index at = node; at < end; at++)
        set_typed(*values.add_element(), leaf, snapshot[at].value);
}

void set_json(::gnmi::TypedValue &to, JsonForm form, std::string json) {
    if (form == JsonForm::ietf)
        to.set_json_ietf_val(std::move(json));
    else
        to.set_json_val(std::move(json));
}

} // namespace yfw::gnmi

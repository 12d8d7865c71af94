#include "written_paths.h"

#include "base/base64.h"
#include "frontends/gnmi/paths/path_text.h"

namespace yfw::gnmi::test {
namespace {

void add_keys(::gnmi::PathElem &element, const std::string &keys) {
    for (size_t at = 0; at < keys.size();) {
        const size_t equals = keys.find('=', at);
        const size_t end = keys.find(']', at);
        (*element.mutable_key())[keys.substr(at + 1, equals - at - 1)] =
            keys.substr(equals + 1, end - equals - 1);
        at = end + 1;
    }
}

} // namespace

::gnmi::Path path(const std::string &text) {
    ::gnmi::Path made;
    for (size_t at = 1; at < text.size();) {
        const size_t end = std::min(text.find('/', at), text.size());
        const std::string word = text.substr(at, end - at);
        const size_t bracket = std::min(word.find('['), word.size());
        ::gnmi::PathElem &element = *made.add_elem();
        element.set_name(word.substr(0, bracket));
        add_keys(element, word.substr(bracket));
        at = end + 1;
    }
    return made;
}

::gnmi::Path path_of_origin(const std::string &origin, const std::string &text) {
    ::gnmi::Path made = path(text);
    made.set_origin(origin);
    return made;
}

::gnmi::Path path_of_target(const std::string &target, const std::string &text) {
    ::gnmi::Path made = path(text);
    made.set_target(target);
    return made;
}

std::string written(const ::gnmi::TypedValue &value) {
    switch (value.value_case()) {
    case ::gnmi::TypedValue::kStringVal:
        return "'" + value.string_val() + "'";
    case ::gnmi::TypedValue::kIntVal:
        return std::to_string(value.int_val());
    case ::gnmi::TypedValue::kUintVal:
        return std::to_string(value.uint_val()) + "u";
    case ::gnmi::TypedValue::kBoolVal:
        return value.bool_val() ? "true" : "false";
    case ::gnmi::TypedValue::kBytesVal:
        return "bytes " + base64(value.bytes_val());
    case ::gnmi::TypedValue::kJsonVal:
        return "json " + value.json_val();
    case ::gnmi::TypedValue::kJsonIetfVal:
        return "ietf " + value.json_ietf_val();
    case ::gnmi::TypedValue::kLeaflistVal: {
        std::string text;
        for (const ::gnmi::TypedValue &each : value.leaflist_val().element())
            text += (text.empty() ? "" : ", ") + written(each);
        return "[" + text + "]";
    }
    default:
        return value.ShortDebugString();
    }
}

std::string written(const ::gnmi::Notification &notification) {
    std::string text;
    for (const ::gnmi::Path &path : notification.delete_())
        text += "- " + to_text(path) + "\n";
    for (const ::gnmi::Update &update : notification.update())
        text += to_text(update.path()) + " = " + written(update.val()) + "\n";
    return text;
}

} // namespace yfw::gnmi::test

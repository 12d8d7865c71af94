#include "frontends/gnmi/paths/path_text.h"

#include <map>

namespace yfw::gnmi {
namespace {

void append_escaped(std::string &to, const std::string &text, const char *special) {
    for (const char c : text) {
        if (std::string_view(special).find(c) != std::string_view::npos)
            to += '\\';
        to += c;
    }
}

void append_elements(std::string &to, const ::gnmi::Path &path) {
    for (const ::gnmi::PathElem &element : path.elem()) {
        to += '/';
        append_escaped(to, element.name(), "\\/");
        for (const auto &[name, value] :
             std::map<std::string, std::string>(element.key().begin(), element.key().end())) {
            to += "[" + name + "=";
            append_escaped(to, value, "\\]");
            to += ']';
        }
    }
}

} // namespace

std::string to_text(const ::gnmi::Path &path) {
    return to_text(::gnmi::Path::default_instance(), path);
}

std::string to_text(const ::gnmi::Path &prefix, const ::gnmi::Path &path) {
    const std::string &origin = prefix.origin().empty() ? path.origin() : prefix.origin();
    std::string text = origin.empty() ? "" : origin + ":";
    append_elements(text, prefix);
    append_elements(text, path);
    return prefix.elem().empty() && path.elem().empty() ? text + "/" : text;
}

} // namespace yfw::gnmi

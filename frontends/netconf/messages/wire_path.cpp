#include "frontends/netconf/messages/wire_path.h"

#include <optional>
#include <string_view>

#include "frontends/netconf/messages/rpc_error.h"

namespace yfw::netconf {
namespace {

// The quoted value that begins at `at`, which moves behind it; nothing when its quote is not closed.
std::optional<std::string> take_value(std::string_view path, size_t &at) {
    const char quote = path[at];
    std::string value;
    for (size_t i = at + 1; i < path.size(); i++) {
        if (path[i] == quote && (i + 1 >= path.size() || path[i + 1] != quote)) {
            at = i + 1;
            return value;
        }
        i += path[i] == quote ? 1 : 0;
        value += path[i];
    }
    return std::nullopt;
}

// Calls `outside` with each character of a path that is not in quotes, and `inside` with each quoted value.
template <class Outside, class Inside>
void split_path(std::string_view path, const Outside &outside, const Inside &inside) {
    for (size_t at = 0; at < path.size();) {
        const bool is_quote = path[at] == '\'' || path[at] == '"';
        if (const auto value = is_quote ? take_value(path, at) : std::nullopt)
            inside(*value);
        else
            outside(path[at++]);
    }
}

// In the quotes that the value does not have itself. XPath 1.0 has no literal for a value with both kinds.
std::string xpath_literal(const std::string &value) {
    if (value.find('\'') == std::string::npos)
        return "'" + value + "'";
    if (value.find('"') == std::string::npos)
        return "\"" + value + "\"";
    std::string call = "concat('";
    for (const char c : value) {
        if (c == '\'')
            call += "',\"'\",'";
        else
            call += c;
    }
    return call + "')";
}

// Each step of the path gets the prefix. A leaf-list entry's own value, [.='x'], has none.
std::string prefixed(const std::string &path, const std::string &prefix) {
    std::string text;
    bool step = false;
    split_path(
        path,
        [&](char c) {
            if (step && c != '/' && c != '.')
                text += prefix;
            step = c == '/' || c == '[';
            text += c;
        },
        [&](const std::string &value) { text += xpath_literal(value); });
    return text;
}

// Declarations of the prefixes in the path's values: an identity is written with its module's name.
std::string value_namespaces(const std::string &path, const lysc_node *top) {
    std::string declarations;
    split_path(
        path, [](char) {},
        [&](const std::string &value) {
            const size_t colon = value.find(':');
            const std::string name = value.substr(0, colon);
            const lys_module *module =
                colon != std::string::npos ? ly_ctx_get_module_latest(top->module->ctx, name.c_str()) : nullptr;
            if (module == nullptr || name == top->module->prefix)
                return;
            const std::string declaration = " xmlns:" + name + "=\"" + escaped(module->ns) + "\"";
            if (declarations.find(declaration) == std::string::npos)
                declarations += declaration;
        });
    return declarations;
}

} // namespace

bool is_within(const std::string &path, const lysc_node *top) {
    const std::string name = "/" + std::string(top->name);
    const std::string plain = without_module(path, top);
    return plain == name || plain.starts_with(name + "/");
}

std::string without_module(const std::string &path, const lysc_node *top) {
    const std::string module = "/" + std::string(top->module->name) + ":";
    return path.rfind(module, 0) == 0 ? "/" + path.substr(module.size()) : path;
}

std::string path_element(const char *name, const std::string &path, const lysc_node *top) {
    const std::string prefix = top->module->prefix;
    return "<" + std::string(name) + " xmlns:" + prefix + "=\"" + escaped(top->module->ns) + "\"" +
           value_namespaces(path, top) + ">" + escaped(prefixed(without_module(path, top), prefix + ":")) +
           "</" + name + ">";
}

} // namespace yfw::netconf

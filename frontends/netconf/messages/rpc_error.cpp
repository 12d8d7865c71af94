#include "frontends/netconf/messages/rpc_error.h"

#include "host/host_status.h"
#include "yang/yang_text.h"

namespace yfw::netconf {
namespace {

// Calls `outside` with each character of a path that is not in quotes, and `inside` with each quoted text.
template <class Outside, class Inside>
void split_path(std::string_view path, const Outside &outside, const Inside &inside) {
    for (size_t at = 0; at < path.size(); at++) {
        const size_t end =
            path[at] == '\'' || path[at] == '"' ? path.find(path[at], at + 1) : std::string_view::npos;
        if (end == std::string_view::npos) {
            outside(path[at]);
            continue;
        }
        inside(path.substr(at, end - at + 1));
        at = end;
    }
}

// Each step of an OpenConfig path gets the prefix that openconfig_path_element() declares. A leaf-list entry's
// own value, [.='x'], has none.
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
        [&](std::string_view quoted) { text += quoted; });
    return text;
}

// Declarations of the prefixes in the path's values: an identity is written with its module's name.
std::string value_namespaces(const std::string &path, const lysc_node *openconfig) {
    std::string declarations;
    split_path(
        path, [](char) {},
        [&](std::string_view quoted) {
            const std::string name(quoted.substr(1, quoted.find(':') - 1));
            const lys_module *module = quoted.find(':') != std::string_view::npos
                                           ? ly_ctx_get_module_latest(openconfig->module->ctx, name.c_str())
                                           : nullptr;
            if (module == nullptr || name == openconfig->module->prefix)
                return;
            const std::string declaration = " xmlns:" + name + "=\"" + escaped(module->ns) + "\"";
            if (declarations.find(declaration) == std::string::npos)
                declarations += declaration;
        });
    return declarations;
}

bool is_openconfig_path(const std::string &path, const lysc_node *openconfig) {
    const std::string top = "/" + std::string(openconfig->name);
    return path == top || path.starts_with(top + "/");
}

// "/module:top/config" as "/top/config".
std::string without_module(const std::string &path, const lysc_node *openconfig) {
    const std::string module = "/" + std::string(openconfig->module->name) + ":";
    return path.rfind(module, 0) == 0 ? "/" + path.substr(module.size()) : path;
}

// The error-info that RFC 6241 appendix A requires for a tag; `name`: of the last node on the path.
std::string mandatory_info(const Error &error, const std::string &name) {
    switch (error.tag()) {
    case ErrorTag::unknown_element:
    case ErrorTag::bad_element:
        return text_element("bad-element", name);
    case ErrorTag::missing_element:
        return text_element("bad-element", error.subject().empty() ? name : error.subject());
    case ErrorTag::unknown_namespace:
        return text_element("bad-element", name) + "<bad-namespace>" + escaped(error.subject()) +
               "</bad-namespace>";
    case ErrorTag::bad_attribute:
    case ErrorTag::unknown_attribute:
        return text_element("bad-attribute", error.subject().empty() ? "operation" : error.subject()) +
               text_element("bad-element", name);
    case ErrorTag::lock_denied:
        return text_element("session-id", error.subject());
    default:
        return "";
    }
}

} // namespace

std::string escaped(std::string_view text) {
    const bool is_text = yang::is_yang_text(text);
    std::string out;
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            // Messages may quote arbitrary bytes of a bad request.
            out += is_text || (c >= ' ' && c <= '~') || c == '\n' || c == '\t' ? c : '?';
        }
    }
    return out;
}

RpcError rpc_error_of(const Error &error, const lysc_node *openconfig) {
    if (error.status() == host::status_leafref_mismatch) // RFC 7950 section 15.5
        return RpcError("application", "data-missing", error.what())
            .at(without_module(error.path(), openconfig) + "/config/name")
            .with_app_tag("instance-required");
    RpcError told(error.is_by_request() ? "protocol" : "application", std::string(to_string(error.tag())),
                  error.what());
    const std::string path = without_module(error.path(), openconfig);
    if (is_openconfig_path(path, openconfig))
        told.at(path);
    const size_t step = path.find_last_of('/');
    const std::string name = step == std::string::npos ? path : path.substr(step + 1);
    return told.with_info(mandatory_info(error, name));
}

std::string text_element(const char *name, const std::string &text) {
    return text.empty() ? "" : "<" + std::string(name) + ">" + escaped(text) + "</" + name + ">";
}

std::string openconfig_path_element(const char *name, const std::string &path, const lysc_node *openconfig) {
    const std::string prefix = openconfig->module->prefix;
    return "<" + std::string(name) + " xmlns:" + prefix + "=\"" + escaped(openconfig->module->ns) + "\"" +
           value_namespaces(path, openconfig) + ">" +
           escaped(prefixed(without_module(path, openconfig), prefix + ":")) + "</" + name + ">";
}

std::string print_error(const RpcError &error, const lysc_node *openconfig) {
    std::string xml = "<rpc-error>" + text_element("error-type", error.type) +
                      text_element("error-tag", error.tag) + "<error-severity>error</error-severity>" +
                      text_element("error-app-tag", error.app_tag);
    if (!error.path.empty())
        xml += openconfig_path_element("error-path", error.path, openconfig);
    if (*error.what() != '\0')
        xml += "<error-message xml:lang=\"en\">" + escaped(error.what()) + "</error-message>";
    if (!error.info.empty())
        xml += "<error-info>" + error.info + "</error-info>";
    return xml + "</rpc-error>";
}

} // namespace yfw::netconf

#include "frontends/netconf/messages/rpc_error.h"

#include "frontends/netconf/messages/wire_path.h"
#include "host/host_status.h"
#include "yang/key_reference.h"
#include "yang/path.h"
#include "yang/yang_text.h"

namespace yfw::netconf {
namespace {

// Messages may quote what a client sent, however long that is.
constexpr size_t longest_message = 800;
constexpr size_t longest_name = 200;
constexpr size_t longest_path = 1000;

// The node at an instance path; NULL for what is no such path.
const lysc_node *schema_at(const std::string &path, const lysc_node *top) {
    try {
        return yang::parse_path(top, path).back().node;
    } catch (const Error &) {
        return nullptr;
    }
}

// The name of the last node on an instance path, without predicates.
std::string last_name(const std::string &path) {
    std::string name;
    char quote = '\0';
    size_t brackets = 0;
    for (const char c : path) {
        if (quote == '\0' && brackets > 0 && (c == '\'' || c == '"'))
            quote = c;
        else if (quote != '\0')
            quote = c == quote ? '\0' : quote;
        else if (c == '[')
            brackets++;
        else if (c == ']' && brackets > 0)
            brackets--;
        else if (c == '/' && brackets == 0)
            name.clear();
        else if (brackets == 0)
            name += c;
    }
    return name;
}

// The leaf that an entry's key refers to; the entry where it refers to none.
std::string leaf_behind_key_of(const std::string &entry, const lysc_node *top) {
    const lysc_node *list = schema_at(entry, top);
    if (list == nullptr)
        return entry;
    for (const lysc_node *key = lysc_node_child(list); key != nullptr && lysc_is_key(key); key = key->next) {
        std::string path = entry;
        for (const lysc_node *step : yang::leaf_behind_key(key))
            path.append("/").append(step->name);
        if (path != entry)
            return path;
    }
    return entry;
}

// The error-info that RFC 6241 appendix A requires for a tag; `name`: of the last node on the path.
std::string mandatory_info(const Error &error, const std::string &name) {
    switch (error.tag()) {
    case ErrorTag::unknown_element:
    case ErrorTag::bad_element:
        return bad_name("bad-element", name);
    case ErrorTag::missing_element:
        return bad_name("bad-element", error.subject().empty() ? name : error.subject());
    case ErrorTag::unknown_namespace:
        return bad_name("bad-element", name) + bad_namespace(error.subject());
    case ErrorTag::bad_attribute:
    case ErrorTag::unknown_attribute:
        return bad_name("bad-attribute", error.subject().empty() ? "operation" : error.subject()) +
               bad_name("bad-element", name);
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

RpcError rpc_error_of(const Error &error, const lysc_node *top) {
    if (error.status() == host::status_leafref_mismatch) // RFC 7950 section 15.5
        return RpcError("application", "data-missing", error.what())
            .at(leaf_behind_key_of(without_module(error.path(), top), top))
            .with_app_tag("instance-required");
    RpcError told(error.is_by_request() ? "protocol" : "application", std::string(to_string(error.tag())),
                  error.what());
    const std::string path = without_module(error.path(), top);
    if (is_within(path, top))
        told.at(path);
    return told.with_info(mandatory_info(error, last_name(path)));
}

std::string text_element(const char *name, const std::string &text) {
    return text.empty() ? "" : "<" + std::string(name) + ">" + escaped(text) + "</" + name + ">";
}

std::string bad_name(const char *element, std::string_view name) {
    return text_element(element, yang::shortened(name, longest_name));
}

std::string bad_namespace(std::string_view ns) {
    return "<bad-namespace>" + escaped(yang::shortened(ns, longest_name)) + "</bad-namespace>";
}

std::string print_error(const RpcError &error, const lysc_node *top) {
    std::string xml = "<rpc-error>" + text_element("error-type", error.type) +
                      text_element("error-tag", error.tag) + "<error-severity>error</error-severity>" +
                      text_element("error-app-tag", error.app_tag);
    if (!error.path.empty() && error.path.size() <= longest_path) // a part of it would name another node
        xml += path_element("error-path", error.path, top);
    if (*error.what() != '\0')
        xml += "<error-message xml:lang=\"en\">" + escaped(yang::shortened(error.what(), longest_message)) +
               "</error-message>";
    if (!error.info.empty())
        xml += "<error-info>" + error.info + "</error-info>";
    return xml + "</rpc-error>";
}

} // namespace yfw::netconf

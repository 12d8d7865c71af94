// Errors as reported to clients (RFC 6241 section 4.3).
#ifndef YFW_FRONTENDS_NETCONF_MESSAGES_RPC_ERROR_H
#define YFW_FRONTENDS_NETCONF_MESSAGES_RPC_ERROR_H

#include <stdexcept>
#include <string>

#include <libyang/libyang.h>

#include "base/error.h"

namespace yfw::netconf {

// `type`: transport, rpc, protocol or application. The path (without prefixes), the
// app-tag and the info may be empty; `info` is XML.
class RpcError : public std::runtime_error {
public:
    RpcError(std::string error_type, std::string error_tag, const std::string &message)
        : std::runtime_error(message), type(std::move(error_type)), tag(std::move(error_tag)) {}

    RpcError &at(std::string error_path) {
        path = std::move(error_path);
        return *this;
    }
    RpcError &with_app_tag(std::string tag_of_application) {
        app_tag = std::move(tag_of_application);
        return *this;
    }
    RpcError &with_info(std::string xml) {
        info = std::move(xml);
        return *this;
    }

    std::string type;
    std::string tag;
    std::string path;
    std::string app_tag;
    std::string info;
};

// Converts the host's error: the tag, the path if it lies below `top`, a top container, and the
// app-tag (RFC 7950 section 15) if there is one.
RpcError rpc_error_of(const Error &error, const lysc_node *top);

// The <rpc-error> element; its path uses the prefix of the module of `top`.
std::string print_error(const RpcError &error, const lysc_node *top);

// An element with this text; nothing when the text is empty.
std::string text_element(const char *name, const std::string &text);

// <element>NAME</element> and <bad-namespace>, which are mandatory for some tags (RFC 6241 appendix A). Only
// the beginning of a name of hundreds of bytes.
std::string bad_name(const char *element, std::string_view name);
std::string bad_namespace(std::string_view ns);

// Escapes text for XML character data and quoted attributes.
std::string escaped(std::string_view text);

} // namespace yfw::netconf

#endif

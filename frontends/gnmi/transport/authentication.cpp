#include "frontends/gnmi/transport/authentication.h"

#include <grpc/grpc_security_constants.h>

#include "frontends/gnmi/messages/refusal.h"

namespace yfw::gnmi {
namespace {

std::string metadata(const grpc::ServerContextBase &context, const char *name) {
    const auto found = context.client_metadata().find(name);
    return found != context.client_metadata().end() ? std::string(found->second.data(), found->second.size())
                                                    : "";
}

// "ipv4:127.0.0.1:50000", "ipv6:%5B::1%5D:50000"; Unix sockets have no host.
std::string host_of(const std::string &peer) {
    const size_t begin = peer.find(':');
    const size_t end = peer.rfind(':');
    if (!peer.starts_with("ip") || begin == end)
        return "";
    std::string host = peer.substr(begin + 1, end - begin - 1);
    if (host.starts_with("%5B") && host.ends_with("%5D"))
        host = host.substr(3, host.size() - 6);
    return host;
}

} // namespace

Credentials credentials_of(const grpc::ServerContextBase &context) {
    Credentials found{std::nullopt, metadata(context, "username"), metadata(context, "password"),
                      host_of(context.peer())};
    const auto connection = context.auth_context();
    if (connection != nullptr && connection->IsPeerAuthenticated()) {
        const auto names = connection->FindPropertyValues(GRPC_X509_CN_PROPERTY_NAME);
        if (!names.empty())
            found.certified = std::string(names.front().data(), names.front().size());
    }
    return found;
}

KnownUser Authentication::user_of(const Credentials &credentials) const {
    const std::string name = credentials.certified.value_or(credentials.user);
    if (name.empty())
        throw Refusal(Code::unauthenticated,
                      "a client certificate, or a username and a password, are required");
    if (!credentials.certified.has_value() && !is_password_of_(name, credentials.password))
        throw Refusal(Code::unauthenticated, "the username or the password is wrong");
    const std::optional<access::User> user = access::user_named(name, groups_);
    if (!user.has_value())
        throw Refusal(Code::permission_denied, name + " is in none of the groups that may use this device");
    KnownUser known{{}, access::names_of(user->groups)};
    known.caller.user = user->name;
    known.caller.may_write = user->may_write;
    known.caller.rules = service_.rules_of(user->name, known.groups);
    known.caller.host = credentials.host;
    return known;
}

} // namespace yfw::gnmi

// Who sends a request.
#ifndef YFW_FRONTENDS_GNMI_TRANSPORT_AUTHENTICATION_H
#define YFW_FRONTENDS_GNMI_TRANSPORT_AUTHENTICATION_H

#include <optional>
#include <string>
#include <vector>

#include <grpcpp/server_context.h>

#include "device/access/groups.h"
#include "device/service.h"
#include "frontends/gnmi/transport/password_check.h"

namespace yfw::gnmi {

// What a connection and the metadata of a request say.
struct Credentials {
    std::optional<std::string> certified; // the common name of the client's certificate
    std::string user;                     // from the metadata
    std::string password;
    std::string host; // an IP address; empty when there is none
};

Credentials credentials_of(const grpc::ServerContextBase &context);

struct KnownUser {
    device::Caller caller;
    std::vector<std::string> groups; // their names
};

// Decides who a caller is and what the groups permit. Immutable: any thread may call any member.
class Authentication {
public:
    Authentication(device::Service &service, access::AccessGroups groups, PasswordCheck is_password_of)
        : service_(service), groups_(std::move(groups)), is_password_of_(std::move(is_password_of)) {}

    // May block while a password is checked. Throws Refusal: UNAUTHENTICATED, and PERMISSION_DENIED for a user
    // of neither group.
    KnownUser user_of(const Credentials &credentials) const;

private:
    device::Service &service_;
    access::AccessGroups groups_;
    PasswordCheck is_password_of_;
};

} // namespace yfw::gnmi

#endif

// Users' passwords.
#ifndef YFW_FRONTENDS_GNMI_TRANSPORT_PASSWORD_CHECK_H
#define YFW_FRONTENDS_GNMI_TRANSPORT_PASSWORD_CHECK_H

#include <functional>
#include <string>

namespace yfw::gnmi {

// Whether this is the user's password and the user may log in. May block for seconds. Any thread may call it.
using PasswordCheck = std::function<bool(const std::string &user, const std::string &password)>;

// By PAM's service "yfw", see /etc/pam.d/yfw.
bool is_password_of(const std::string &user, const std::string &password);

// The same, with the service's file in another directory.
bool is_password_by(const std::string &directory, const std::string &user, const std::string &password);

} // namespace yfw::gnmi

#endif

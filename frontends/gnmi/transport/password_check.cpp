#include "frontends/gnmi/transport/password_check.h"

#include <cstdlib>
#include <cstring>

#include <security/pam_appl.h>

namespace yfw::gnmi {
namespace {

constexpr const char *service = "yfw";

// Answers every question without an echo by the password, and refuses others: there is nobody to ask.
int converse(int count, const pam_message **messages, pam_response **responses, void *password) {
    auto *answers = static_cast<pam_response *>(std::calloc(static_cast<size_t>(count), sizeof(pam_response)));
    if (answers == nullptr)
        return PAM_BUF_ERR;
    for (int i = 0; i < count; i++) {
        if (messages[i]->msg_style == PAM_PROMPT_ECHO_OFF) {
            answers[i].resp = strdup(static_cast<const char *>(password));
        } else if (messages[i]->msg_style == PAM_PROMPT_ECHO_ON) {
            for (int k = 0; k < i; k++)
                std::free(answers[k].resp);
            std::free(answers);
            return PAM_CONV_ERR;
        }
    }
    *responses = answers;
    return PAM_SUCCESS;
}

// `directory`: of the services' files; NULL: the system's.
bool is_password(const char *directory, const std::string &user, const std::string &password) {
    const pam_conv conversation{converse, const_cast<char *>(password.c_str())};
    pam_handle_t *handle = nullptr;
    if (pam_start_confdir(service, user.c_str(), &conversation, directory, &handle) != PAM_SUCCESS)
        return false;
    int status = pam_authenticate(handle, PAM_SILENT | PAM_DISALLOW_NULL_AUTHTOK);
    if (status == PAM_SUCCESS)
        status = pam_acct_mgmt(handle, PAM_SILENT);
    pam_end(handle, status);
    return status == PAM_SUCCESS;
}

} // namespace

bool is_password_of(const std::string &user, const std::string &password) {
    return is_password(nullptr, user, password);
}

bool is_password_by(const std::string &directory, const std::string &user, const std::string &password) {
    return is_password(directory.c_str(), user, password);
}

} // namespace yfw::gnmi

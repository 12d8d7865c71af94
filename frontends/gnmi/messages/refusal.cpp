#include "frontends/gnmi/messages/refusal.h"

namespace yfw::gnmi {
namespace {

Code code_of(const Error &error) {
    if (error.is_by_device())
        return Code::unavailable;
    switch (error.tag()) {
    case ErrorTag::access_denied:
        return Code::permission_denied;
    case ErrorTag::in_use:
    case ErrorTag::lock_denied:
        return Code::failed_precondition;
    case ErrorTag::data_exists:
        return Code::already_exists;
    case ErrorTag::data_missing:
        return Code::not_found;
    case ErrorTag::resource_denied:
        return Code::resource_exhausted;
    case ErrorTag::operation_not_supported:
        return Code::unimplemented;
    case ErrorTag::operation_failed:
        return Code::internal;
    default:
        return Code::invalid_argument;
    }
}

} // namespace

Refusal refusal_of(const Error &error, const std::string &place) {
    std::string message = place;
    for (const std::string &part : {error.path(), std::string(error.what())})
        if (!part.empty())
            message += (message.empty() ? "" : ": ") + part;
    return {code_of(error), message};
}

} // namespace yfw::gnmi

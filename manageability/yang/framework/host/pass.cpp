#include "host/pass.h"

#include "base/error.h"
#include "host/host_status.h"
#include "platform/debug_log.h"

namespace yfw::host {
namespace {

ErrorTag tag_of(terrno status) {
    switch (status) {
    case YMAP_ERR_INVALID_ARGS:
    case YMAP_ERR_INVALID_VALUE:
        return ErrorTag::invalid_value;
    case status_leafref_mismatch: // RFC 7950 section 15.5
        return ErrorTag::data_missing;
    case YMAP_ERR_UNSUPPORTED_TAG:
    case YMAP_ERR_UNSUPPORTED_AUGMENT:
        return ErrorTag::unknown_element;
    case YMAP_ERR_EMPTY_LIST_KEY:
        return ErrorTag::missing_element;
    case YMAP_ERR_KEY_DELETE:
        return ErrorTag::bad_element;
    case YMAP_ERR_NO_MEMORY:
        return ErrorTag::resource_denied;
    default:
        return ErrorTag::operation_failed;
    }
}

constexpr const char *leafref_mismatch =
    "the entry's key and the leaf that the key refers to have different values";

bool is_failure(terrno status) {
    return status != YMAP_OK && status != YMAP_STS_NO_MAPPING;
}

} // namespace

Pass::Pass(const RequestTraits &traits, platform::TraceBuffer &buffer)
    : context(traits, platform::error_log_handle(), platform::trace_log_handle(), &buffer), log(traits.trace) {}

void Pass::check(terrno status) const {
    if (!is_failure(status))
        return;
    std::string reason = status == status_leafref_mismatch ? leafref_mismatch : context.error_text();
    if (reason.empty())
        reason = log.last_error();
    throw Error(tag_of(status), context.error_path(), reason.empty() ? terr_strerror(status) : reason, status);
}

void Pass::refuse_reported_errors() const {
    if (!log.last_error().empty())
        throw Error(ErrorTag::operation_failed, context.error_path(), log.last_error());
}

} // namespace yfw::host

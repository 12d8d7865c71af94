#include "base/error.h"

namespace yfw {

std::string_view to_string(ErrorTag tag) {
    switch (tag) {
    case ErrorTag::invalid_value:
        return "invalid-value";
    case ErrorTag::unknown_element:
        return "unknown-element";
    case ErrorTag::unknown_namespace:
        return "unknown-namespace";
    case ErrorTag::missing_element:
        return "missing-element";
    case ErrorTag::bad_element:
        return "bad-element";
    case ErrorTag::bad_attribute:
        return "bad-attribute";
    case ErrorTag::unknown_attribute:
        return "unknown-attribute";
    case ErrorTag::access_denied:
        return "access-denied";
    case ErrorTag::in_use:
        return "in-use";
    case ErrorTag::lock_denied:
        return "lock-denied";
    case ErrorTag::data_exists:
        return "data-exists";
    case ErrorTag::data_missing:
        return "data-missing";
    case ErrorTag::resource_denied:
        return "resource-denied";
    case ErrorTag::operation_not_supported:
        return "operation-not-supported";
    case ErrorTag::operation_failed:
        break;
    }
    return "operation-failed";
}

} // namespace yfw

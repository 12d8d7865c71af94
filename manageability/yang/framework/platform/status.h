// The statuses of the platform's own calls. Like every platform failure they have bit 31 set. terr_strerror
// gives their texts and those of the mapping's statuses in ymap_status.h.
#ifndef PLATFORM_STATUS_H
#define PLATFORM_STATUS_H

#include <array>
#include <exception>
#include <new>

#include "ymap_status.h"

namespace yfw::platform {

inline constexpr terrno status_ok = 0;
inline constexpr terrno status_invalid_argument = 0x80826200U;
inline constexpr terrno status_text_cut = 0x80826400U;
inline constexpr terrno status_no_platform = 0x80826600U;
inline constexpr terrno status_no_device = 0x80826800U;
inline constexpr terrno status_unknown_path = 0x80826a00U;
inline constexpr terrno status_unknown_connection = 0x80826c00U;
inline constexpr terrno status_not_searchable = 0x80826e00U;
inline constexpr terrno status_no_such_item = 0x80827000U;
inline constexpr terrno status_bad_pattern = 0x80827200U;
inline constexpr terrno status_end_of_list = 0x80827400U;
inline constexpr terrno status_unknown_list = 0x80827600U;
inline constexpr terrno status_bad_name = 0x80827800U;
inline constexpr terrno status_no_memory = 0x80827a00U;
inline constexpr terrno status_internal = 0x80827c00U;

struct StatusText {
    terrno status;
    const char *text;
};

inline constexpr std::array status_texts{
    StatusText{status_ok, "success"},
    StatusText{status_invalid_argument, "invalid argument"},
    StatusText{status_text_cut, "text does not fit and was cut"},
    StatusText{status_no_platform, "no platform is in use"},
    StatusText{status_no_device, "the platform has no device"},
    StatusText{status_unknown_path, "no such path in the system database"},
    StatusText{status_unknown_connection, "connection is not open"},
    StatusText{status_not_searchable, "connection was not bound for searching"},
    StatusText{status_no_such_item, "no such item in the system database"},
    StatusText{status_bad_pattern, "malformed search pattern"},
    StatusText{status_end_of_list, "end of list"},
    StatusText{status_unknown_list, "list is not open"},
    StatusText{status_bad_name, "malformed interface name"},
    StatusText{status_no_memory, "out of memory"},
    StatusText{status_internal, "internal error"},
    StatusText{YMAP_ERR_INVALID_ARGS, "invalid arguments in a mapping callback"},
    StatusText{YMAP_ERR_MAP_FAILED, "mapping failed"},
    StatusText{YMAP_STS_SUBTREE_DONE, "subtree already handled"},
    StatusText{YMAP_ERR_UNSUPPORTED_TAG, "unsupported node"},
    StatusText{YMAP_ERR_UNSUPPORTED_AUGMENT, "unsupported augmentation"},
    StatusText{YMAP_ERR_INVALID_VALUE, "invalid or unsupported value"},
    StatusText{YMAP_ERR_NO_MEMORY, "out of memory in a mapping callback"},
    StatusText{YMAP_ERR_EMPTY_LIST_KEY, "empty list key"},
    StatusText{YMAP_ERR_KEY_DELETE, "delete operation on a list key"},
    StatusText{YMAP_ERR_SYSDB_UNAVAILABLE, "system database is not available"},
    StatusText{YMAP_STS_NO_MAPPING, "nothing is mapped for this leaf"},
    StatusText{IMC_STATUS_NO_SUCH_INTERFACE, "no such interface"},
};

// Runs the body of a C function and turns exceptions into a status: none may cross into a plug-in.
template <class Body> terrno guarded(Body &&body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc &) {
        return status_no_memory;
    } catch (...) {
        return status_internal;
    }
}

} // namespace yfw::platform

#endif

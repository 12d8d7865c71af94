// Conversions between native and OpenConfig values. Results are kept in a ring of slots.
#include <cctype>
#include <ctime>

#include "frame.h"

namespace {

using namespace oclldp;

constexpr size_t longest_text = OCLLDP_STR_SLOT_SIZE - 1;

char *convert(const char *value, char (*replace)(char)) {
    char *slot = nullptr;
    if (oc_lldp_string_buffer_get(&slot) != YMAP_OK)
        return nullptr;
    size_t i = 0;
    for (; i < longest_text && value[i] != '\0'; i++) {
        slot[i] = replace(value[i]);
        if (slot[i] == '\0')
            return nullptr; // the slot stays taken
    }
    slot[i] = '\0';
    return slot;
}

char to_openconfig(char c) {
    return c == '-' ? '_' : static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

// Identity names consist of capitals and underscores; anything else is rejected on purpose.
char to_native(char c) {
    if (c == '_')
        return '-';
    const auto letter = static_cast<unsigned char>(c);
    return std::isupper(letter) != 0 ? static_cast<char>(std::tolower(letter)) : '\0';
}

} // namespace

terrno oc_lldp_string_buffer_get(char **slot) {
    const int32_t index = oc_lldp_str_buf_index;
    *slot = nullptr;
    if (index < 0 || index >= OCLLDP_STR_SLOTS) { // corrupted
        oc_lldp_str_buf_index = 0;
        return YMAP_ERR_MAP_FAILED;
    }
    oc_lldp_str_buf_index = index == OCLLDP_STR_SLOTS - 1 ? 0 : index + 1;
    *slot = &oc_lldp_str_buf[index * OCLLDP_STR_SLOT_SIZE];
    **slot = '\0';
    return YMAP_OK;
}

char *qd2oc_lldp_str(yfw_map_ctx ctx, const node *in, node *) {
    YMAP_SITE("char *", qd2oc_lldp_str, YMAP_CALLBACK_TYPES);
    char *text = nullptr;
    in_frame(site, ctx, true, null_nodes::accepted, [&](frame &f) -> terrno {
        if (in == nullptr || in->value == nullptr)
            YMAP_ERROR(f, "OCLLDP: QD2OC data null");
        else
            text = convert(in->value, to_openconfig);
        return YMAP_OK;
    });
    return text;
}

char *oc2qd_lldp_str(yfw_map_ctx ctx, const node *in, node *) {
    YMAP_SITE("char *", oc2qd_lldp_str, YMAP_CALLBACK_TYPES);
    char *text = nullptr;
    in_frame(site, ctx, true, null_nodes::accepted, [&](frame &f) -> terrno {
        if (in == nullptr || in->value == nullptr)
            YMAP_ERROR(f, "OCLLDP: OC2QD data null");
        else
            text = convert(in->value, to_native);
        return YMAP_OK;
    });
    return text;
}

char *oclldp_convert_seconds_to_timestamp(uint32_t seconds) {
    constexpr uint64_t nanoseconds_per_second = 1000000000;
    const uint64_t ago = seconds != 0 ? seconds : fts_get_stamp_fast() / nanoseconds_per_second;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    now.tv_sec -= static_cast<time_t>(ago);
    const tm *local = std::localtime(&now.tv_sec);
    char *slot = nullptr;
    if (local == nullptr || oc_lldp_string_buffer_get(&slot) != YMAP_OK)
        return nullptr;

    char date_time[80];
    std::snprintf(date_time, sizeof date_time, "%d-%02d-%02d%s%02d:%02d:%02d.%03ld", local->tm_year + 1900,
                  local->tm_mon + 1, local->tm_mday, "T", local->tm_hour, local->tm_min, local->tm_sec,
                  now.tv_nsec / 1000000);
    char zone[20] = {};
    std::strftime(zone, sizeof zone, "%z", local);
    // RFC 3339 section 5.6 requires a colon between the hours and the minutes of the offset.
    if (std::snprintf(slot, 80, "%s%.3s:%.2s", date_time, zone, zone + 3) < 0)
        return nullptr;
    slot[79] = '\0';
    return slot;
}

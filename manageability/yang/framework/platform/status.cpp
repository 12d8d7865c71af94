#include "platform/status.h"

#include <algorithm>
#include <cstdio>

#include "yfw_map.h"

extern "C" const char *terr_strerror(terrno status) {
    using yfw::platform::status_texts;
    const auto *known = std::ranges::find(status_texts, status, &yfw::platform::StatusText::status);
    if (known != status_texts.end()) {
        return known->text;
    }
    // Per thread; valid until the thread asks for another unknown status.
    static thread_local char unknown[sizeof "unknown status 0x00000000"];
    std::snprintf(unknown, sizeof unknown, "unknown status 0x%08x", status);
    return unknown;
}

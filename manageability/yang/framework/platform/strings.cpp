// Bounded strings. `caller` and `owner` identify the caller in a backtrace; nothing here stores them.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "platform/status.h"
#include "yfw_map.h"

namespace platform = yfw::platform;

namespace {

// Copies as much as fits into `size` bytes (at least one), but no more than `count` characters, and terminates
// the copy. The two strings may overlap.
terrno copy_bounded(char *destination, std::size_t size, const char *source, std::size_t count) {
    const std::size_t room = std::min(count, size - 1);
    const std::size_t length = strnlen(source, room + 1);
    const std::size_t copied = std::min(length, room);
    std::memmove(destination, source, copied);
    destination[copied] = '\0';
    return length > room ? platform::status_text_cut : platform::status_ok;
}

} // namespace

extern "C" {

terrno yfw_strncpy_s(const char * /*caller*/, char *destination, size_t size, const char *source,
                     size_t count) {
    if (destination == nullptr || size == 0) {
        return platform::status_invalid_argument;
    }
    if (source == nullptr) {
        destination[0] = '\0';
        return platform::status_invalid_argument;
    }
    return copy_bounded(destination, size, source, count);
}

terrno yfw_strcpy_s(const char *caller, char *destination, size_t size, const char *source) {
    return yfw_strncpy_s(caller, destination, size, source, SIZE_MAX);
}

terrno yfw_strcat_s(const char * /*caller*/, char *destination, size_t size, const char *source) {
    if (destination == nullptr || size == 0) {
        return platform::status_invalid_argument;
    }
    const std::size_t used = strnlen(destination, size);
    if (used == size) { // not a string: unterminated
        destination[size - 1] = '\0';
        return platform::status_invalid_argument;
    }
    if (source == nullptr) {
        return platform::status_invalid_argument;
    }
    return copy_bounded(destination + used, size - used, source, SIZE_MAX);
}

terrno yfw_strcmp_s(const char * /*caller*/, const char *a, size_t maximum, const char *b, int *result) {
    if (result == nullptr) {
        return platform::status_invalid_argument;
    }
    if (a == nullptr || b == nullptr) {
        *result = 1; // a caller that checks only the result must not see equal texts
        return platform::status_invalid_argument;
    }
    const int difference = std::strncmp(a, b, maximum);
    *result = (difference > 0) - (difference < 0);
    return platform::status_ok;
}

char *yfw_strdup(const char *text, const char * /*owner*/) {
    return text == nullptr ? nullptr : strdup(text);
}

void qdos_named_free(void *memory) {
    std::free(memory);
}

} // extern "C"

#include "platform/interface_name.h"

#include "platform/status.h"
#include "yfw_map.h"

namespace yfw::platform {

namespace {

constexpr std::string_view escaped_percent = "%25";
constexpr std::string_view escaped_underscore = "%5F";

} // namespace

std::string to_system_database_form(std::string_view display_name) {
    std::string form;
    form.reserve(display_name.size());
    for (const char c : display_name) {
        switch (c) {
        case '/':
            form += '_';
            break;
        case '%':
            form += escaped_percent;
            break;
        case '_':
            form += escaped_underscore;
            break;
        default:
            form += c;
        }
    }
    return form;
}

std::optional<std::string> to_display_form(std::string_view name) {
    std::string display;
    display.reserve(name.size());
    while (!name.empty()) {
        std::size_t taken = 1;
        if (name.front() == '/') {
            return std::nullopt;
        }
        if (name.front() == '_') {
            display += '/';
        } else if (name.starts_with(escaped_percent)) {
            display += '%';
            taken = escaped_percent.size();
        } else if (name.starts_with(escaped_underscore)) {
            display += '_';
            taken = escaped_underscore.size();
        } else if (name.front() == '%') {
            return std::nullopt;
        } else {
            display += name.front();
        }
        name.remove_prefix(taken);
    }
    return display;
}

} // namespace yfw::platform

extern "C" terrno imc_display_namestring(const char *name, char *display, size_t size) {
    namespace platform = yfw::platform;
    if (display == nullptr || size == 0) {
        return platform::status_invalid_argument;
    }
    display[0] = '\0';
    if (name == nullptr) {
        return platform::status_invalid_argument;
    }
    return platform::guarded([&]() -> terrno {
        const std::optional<std::string> text = platform::to_display_form(name);
        return text ? yfw_strcpy_s(__func__, display, size, text->c_str()) : platform::status_bad_name;
    });
}

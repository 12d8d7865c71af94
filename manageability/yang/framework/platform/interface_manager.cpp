#include "platform/interface_manager.h"

#include <cstring>
#include <optional>

#include <fmt/format.h>

#include "platform/interface_name.h"
#include "platform/platform.h"
#include "platform/status.h"

namespace yfw::platform {

namespace {

constexpr std::string_view digest_mark = "%~"; // cannot occur in a system-database form
constexpr std::size_t digest_digits = 16;
constexpr std::size_t longest_spelling = IMC_NAME_SIZE - 1;

// A look-up immediately follows its conversion, so old spellings can be forgotten; a client that makes up long
// names must not exhaust memory.
constexpr std::size_t most_remembered_spellings = 4096;

// FNV-1a: the same on every run and machine, so that handles and spellings in recorded traces can be compared.
std::uint64_t digest(std::string_view text) {
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : text) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 0x100000001b3U;
    }
    return hash;
}

char connection_object = 0; // the connection is just its address

} // namespace

std::string InterfaceManager::spell(std::string_view display_name, bool *shortened) {
    std::string form = to_system_database_form(display_name);
    *shortened = form.size() > longest_spelling;
    if (*shortened) {
        const std::uint64_t whole = digest(form);
        form.resize(longest_spelling - digest_mark.size() - digest_digits);
        form += fmt::format("{}{:016x}", digest_mark, whole);
    }
    return form;
}

std::string InterfaceManager::spelling(std::string_view display_name) {
    bool shortened = false;
    std::string form = spell(display_name, &shortened);
    if (shortened) {
        if (shortened_.size() >= most_remembered_spellings) {
            shortened_.clear();
        }
        shortened_.insert_or_assign(form, std::string(display_name));
    }
    return form;
}

std::uint32_t InterfaceManager::handle_of(const std::string &display_name) {
    const std::uint64_t hash = digest(display_name);
    auto handle = static_cast<std::uint32_t>(hash ^ (hash >> 32));
    // If two names hash to the same number, the later one gets the next free number.
    while (handle == 0 || handles_.try_emplace(handle, display_name).first->second != display_name) {
        ++handle;
    }
    return handle;
}

InterfaceManager::Answer InterfaceManager::look_up(const DeviceView &device, std::string_view spelled) {
    std::optional<std::string> name;
    if (spelled.find(digest_mark) == std::string_view::npos) {
        name = to_display_form(spelled);
    } else if (const auto known = shortened_.find(std::string(spelled)); known != shortened_.end()) {
        name = known->second;
    } else {
        return {status_bad_name, 0};
    }
    if (!name || !device.interface_exists(*name)) {
        return {IMC_STATUS_NO_SUCH_INTERFACE, 0};
    }
    return {status_ok, handle_of(*name)};
}

void InterfaceManager::find(const DeviceView &device, const imc_find_request &entry) {
    const Answer answer = look_up(device, {entry.name, strnlen(entry.name, sizeof entry.name)});
    if (entry.handle != nullptr) {
        *entry.handle = answer.handle;
    }
    if (entry.status != nullptr) {
        *entry.status = answer.status;
    }
}

} // namespace yfw::platform

namespace platform = yfw::platform;

extern "C" {

void *yfw_ocifmgr_im_conn = &platform::connection_object;

terrno imc_interface_find(void *connection, uint32_t count, struct imc_find_request *request, uint32_t flags,
                          uint32_t *answered) {
    if (answered != nullptr) {
        *answered = 0;
    }
    if (connection != &platform::connection_object) {
        return platform::status_unknown_connection;
    }
    if (flags != 0 || (request == nullptr && count != 0)) {
        return platform::status_invalid_argument;
    }
    platform::Platform *current = platform::Platform::current();
    if (current == nullptr) {
        return platform::status_no_platform;
    }
    const platform::DeviceView *device = current->settings().device;
    if (device == nullptr) {
        return platform::status_no_device;
    }
    return platform::guarded([&]() -> terrno {
        for (uint32_t i = 0; i < count; ++i) {
            current->interface_manager().find(*device, request[i]);
            if (answered != nullptr) {
                ++*answered;
            }
        }
        return platform::status_ok;
    });
}

terrno convert_ifname_ifentry(char *out, const char *ifname) {
    if (out == nullptr) {
        return platform::status_invalid_argument;
    }
    out[0] = '\0';
    if (ifname == nullptr) {
        return platform::status_invalid_argument;
    }
    return platform::guarded([&]() -> terrno {
        if (platform::Platform *current = platform::Platform::current(); current != nullptr) {
            const std::string spelled = current->interface_manager().spelling(ifname);
            return yfw_strcpy_s(__func__, out, IMC_IFENTRY_SIZE, spelled.c_str());
        }
        bool shortened = false;
        const std::string spelled = platform::InterfaceManager::spell(ifname, &shortened);
        const terrno status = yfw_strcpy_s(__func__, out, IMC_IFENTRY_SIZE, spelled.c_str());
        // Without a platform, nothing remembers which name a shortened spelling stands for.
        return shortened ? platform::status_no_platform : status;
    });
}

} // extern "C"

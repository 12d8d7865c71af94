#include "frontends/cli/options/store_name.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <string_view>

namespace yfw::cli {
namespace {

constexpr std::string_view extension = ".db";
// The longest that is added to the name of a store, by unconfirmed commits; new stores and SQLite add less.
constexpr std::string_view longest_addition = ".unconfirmed";
constexpr size_t longest_name = NAME_MAX - extension.size() - longest_addition.size();

// FNV-1a of 64 bits.
std::string hash_of(const std::string &text) {
    uint64_t hash = 0xcbf29ce484222325;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    char digits[2 * sizeof hash + 1];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return digits;
}

std::string percent_encoded(const std::string &device) {
    std::string encoded;
    for (const char c : device) {
        if (c == '%')
            encoded += "%25";
        else if (c == '/')
            encoded += "%2F";
        else
            encoded += c;
    }
    return encoded;
}

// Between characters of UTF-8: some file systems take no parts of them.
std::string cut(const std::string &name, size_t length) {
    const auto is_inside_character = [&](size_t i) {
        return (static_cast<unsigned char>(name[i]) & 0xc0) == 0x80;
    };
    while (length > 0 && is_inside_character(length))
        --length;
    return name.substr(0, length);
}

} // namespace

std::string store_name(const std::string &device) {
    std::string name = percent_encoded(device);
    if (name.size() > longest_name) {
        const std::string end = "%~" + hash_of(device); // no encoded path has "%~"
        name = cut(name, longest_name - end.size()) + end;
    }
    return name + std::string(extension);
}

std::optional<std::string> former_store_name(const std::string &device) {
    if (device.find('%') != std::string::npos)
        return std::nullopt;
    std::string name = device;
    std::replace(name.begin(), name.end(), '/', '%');
    return name + std::string(extension);
}

} // namespace yfw::cli

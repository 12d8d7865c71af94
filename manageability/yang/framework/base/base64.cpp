#include "base/base64.h"

#include <cstdint>

namespace yfw {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The characters without the padding; nothing when the length or the padding is wrong.
std::optional<std::string_view> unpadded(std::string_view text) {
    if (text.size() % 4 != 0)
        return std::nullopt;
    const size_t end = text.find_last_not_of('=');
    const size_t length = end == std::string_view::npos ? 0 : end + 1;
    return text.size() - length <= 2 ? std::optional(text.substr(0, length)) : std::nullopt;
}

} // namespace

std::string base64(std::string_view octets) {
    std::string text;
    for (size_t at = 0; at < octets.size(); at += 3) {
        uint32_t group = 0;
        for (size_t i = 0; i < 3; i++)
            group = group << 8 | (at + i < octets.size() ? static_cast<uint8_t>(octets[at + i]) : 0u);
        for (size_t i = 0; i < 4; i++)
            text += at + i <= octets.size() ? alphabet[group >> (18 - 6 * i) & 63] : '=';
    }
    return text;
}

std::optional<std::string> from_base64(std::string_view text) {
    const std::optional<std::string_view> characters = unpadded(text);
    if (!characters.has_value())
        return std::nullopt;
    std::string octets;
    uint32_t bits = 0;
    int count = 0; // of the bits not yet taken
    for (const char c : *characters) {
        const size_t digit = alphabet.find(c);
        if (digit == std::string_view::npos)
            return std::nullopt;
        bits = (bits << 6 | static_cast<uint32_t>(digit)) & 0xffff;
        count += 6;
        if (count >= 8) {
            count -= 8;
            octets += static_cast<char>(bits >> count & 0xff);
        }
    }
    return octets;
}

} // namespace yfw

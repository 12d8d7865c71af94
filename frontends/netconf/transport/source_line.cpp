#include "frontends/netconf/transport/source_line.h"

#include <algorithm>
#include <array>

#include <arpa/inet.h>

namespace yfw::netconf {
namespace {

// The longest IPv6 address with a zone of the length of an interface's name.
constexpr size_t longest_source_line = source_word.size() + 64;

bool is_address(const std::string &text) {
    std::array<unsigned char, sizeof(in6_addr)> parsed{};
    const std::string without_zone = text.substr(0, text.find('%'));
    return inet_pton(AF_INET, text.c_str(), parsed.data()) == 1 ||
           inet_pton(AF_INET6, without_zone.c_str(), parsed.data()) == 1;
}

} // namespace

std::string SourceLine::without_line(std::string_view bytes) {
    if (is_over_)
        return std::string(bytes);
    kept_ += bytes;
    const size_t common = std::min(kept_.size(), source_word.size());
    const bool is_line = kept_.compare(0, common, source_word, 0, common) == 0;
    const size_t end = kept_.find('\n');
    if (is_line && end == std::string::npos && kept_.size() <= longest_source_line)
        return "";
    is_over_ = true;
    if (!is_line || end == std::string::npos || end > longest_source_line)
        return std::move(kept_);
    const std::string address = kept_.substr(source_word.size(), end - source_word.size());
    if (is_address(address))
        address_ = address;
    return kept_.substr(end + 1);
}

} // namespace yfw::netconf

#include "frontends/cli/options/option_checks.h"

#include <charconv>
#include <optional>
#include <string>

namespace yfw::cli {
namespace {

std::optional<uint64_t> number_in(const std::string &text) {
    uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

} // namespace

CLI::Validator number_range(uint64_t smallest, uint64_t largest) {
    const auto check = [smallest, largest](std::string &text) -> std::string {
        const std::optional<uint64_t> number = number_in(text);
        if (number.has_value() && *number >= smallest && *number <= largest)
            return "";
        return "expected a number from " + std::to_string(smallest) + " to " + std::to_string(largest) +
               ", not \"" + text + "\"";
    };
    return CLI::Validator(check, "");
}

CLI::Validator not_empty() {
    return CLI::Validator(
        [](const std::string &text) -> std::string { return text.empty() ? "must not be empty" : ""; }, "");
}

} // namespace yfw::cli

// Checks of the values of options.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_OPTION_CHECKS_H
#define YFW_FRONTENDS_CLI_OPTIONS_OPTION_CHECKS_H

#include <cstdint>

#include <CLI/CLI.hpp>

namespace yfw::cli {

// Accepts whole decimal numbers within the range; CLI11's own ranges print their bounds as floating-point
// numbers of up to 309 digits.
CLI::Validator number_range(uint64_t smallest, uint64_t largest);

// Accepts anything but the empty text, which an unset variable of a script leaves.
CLI::Validator not_empty();

} // namespace yfw::cli

#endif

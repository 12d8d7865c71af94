// The first word of a command line that is no command, option or argument.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_UNKNOWN_WORD_H
#define YFW_FRONTENDS_CLI_OPTIONS_UNKNOWN_WORD_H

#include <string>

#include <CLI/CLI.hpp>

namespace yfw::cli {

// Names the word after the parser has refused it, and what may have been meant. Empty when all words were
// understood.
std::string unknown_word(const CLI::App &program);

} // namespace yfw::cli

#endif

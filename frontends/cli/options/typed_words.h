// The words of a command line as they were typed.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_TYPED_WORDS_H
#define YFW_FRONTENDS_CLI_OPTIONS_TYPED_WORDS_H

#include <string>

#include <CLI/CLI.hpp>

namespace yfw::cli {

// Parses the arguments with the program's options, as CLI::App::parse does. CLI11 reads a word in brackets as a
// list wherever an option takes several words: "[a,b]" would become two words, and "[]" none. Here it stays
// one. Call once, when all subcommands and options have been added. Throws what CLI::App::parse throws.
void parse_as_typed(CLI::App &app, int argc, const char *const *argv);

// The word as it was typed, of one that CLI11 has left over.
std::string as_typed(const std::string &word);

} // namespace yfw::cli

#endif

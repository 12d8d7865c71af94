// A command line of a shell, up to the cursor.
#ifndef YFW_FRONTENDS_CLI_COMPLETION_SHELL_LINE_H
#define YFW_FRONTENDS_CLI_COMPLETION_SHELL_LINE_H

#include <string>
#include <string_view>
#include <vector>

namespace yfw::cli {

// What has been typed, without the shell's quotes and escapes (POSIX.1-2017, Shell Command Language,
// section 2.2).
struct ShellLine {
    std::vector<std::string> words; // the last one is being typed; it may be empty
    char open_quote = '\0';         // of the last word: ' or "; NUL where none is open
    size_t kept = 0;                // bytes of the last word that the shell takes for complete
};

// `breaks`: characters that end a word for the shell's completion, but not for its commands (COMP_WORDBREAKS).
ShellLine read_shell_line(std::string_view line, std::string_view breaks);

// What the shell has to insert so that the last word becomes `word`, which begins with it: the bytes behind
// `kept`, escaped as the open quote needs it.
std::string inserted(const ShellLine &line, const std::string &word);

} // namespace yfw::cli

#endif

// Several changes, as text or as arguments: set PATH VALUE, delete PATH.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_EDIT_SCRIPT_H
#define YFW_FRONTENDS_CLI_COMMANDS_EDIT_SCRIPT_H

#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace yfw::cli {

struct Change {
    std::string path;
    std::optional<std::string> value; // nothing: the node is deleted
};

// One change per line; blank lines and lines that start with "#" are skipped. A path or a value in quotes is
// read as a shell reads it; otherwise, the value is the rest of the line as it is. `place` names the text in
// errors. Throws Error naming the line.
std::vector<Change> read_script(std::istream &text, const std::string &place);

// set PATH VALUE and delete PATH, one after the other. Throws Error.
std::vector<Change> read_words(const std::vector<std::string> &words);

} // namespace yfw::cli

#endif

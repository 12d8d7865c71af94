// Prints commits, as text and as JSON.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_COMMIT_PRINT_H
#define YFW_FRONTENDS_CLI_COMMANDS_COMMIT_PRINT_H

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "commits/commit_log.h"
#include "yang/configuration_text.h"
#include "yang/schemas.h"

namespace yfw::cli {

// What a commit changed on both sides of the mapping.
struct CommitDifferences {
    // Nothing when an earlier version made this commit or the one before it: that kept no OpenConfig text.
    std::optional<std::vector<yang::Difference>> openconfig;
    std::vector<yang::Difference> native;
};

// `previous`: the commit before it; nothing for the first one, which changed nothing. Throws Error when a
// stored configuration does not fit the schemas.
CommitDifferences differences_of(const yang::Schemas &schemas, const commits::Commit &commit,
                                 const std::optional<commits::Commit> &previous);

// Everything about the commit, under headings.
void print_commit(std::ostream &to, const commits::Commit &commit, const CommitDifferences &differences);

// Both differences under headings; without the OpenConfig one if that is not known.
void print_differences(std::ostream &to, const CommitDifferences &differences);

// Number, time, author and comment.
nlohmann::ordered_json json_of(const commits::Commit &commit);
// Adds "openconfig-difference", unless that is not known, and "native-difference".
void add_differences(nlohmann::ordered_json &to, const CommitDifferences &differences);
// Adds the texts: "edit", "openconfig" and "native".
void add_texts(nlohmann::ordered_json &to, const commits::Commit &commit);

// Indented, with a final newline, in ASCII. Bytes that are not UTF-8 are replaced.
void print_json(std::ostream &to, const nlohmann::ordered_json &json);

} // namespace yfw::cli

#endif

// The neighbors of devices, as a table and as JSON.
#ifndef YFW_FRONTENDS_CLI_OUTPUT_NEIGHBOR_TABLE_H
#define YFW_FRONTENDS_CLI_OUTPUT_NEIGHBOR_TABLE_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "frontends/pictures/topology_model.h"

namespace yfw::cli {

// One line for each neighbor below a heading, with the device first if there are several. `width`: cells are
// shortened to it; nothing: none are. Says so when there are no neighbors.
std::string neighbor_table(const std::vector<pictures::Report> &reports, std::optional<size_t> width,
                           bool colors);

// An array of objects, in ASCII, without a final newline. What a neighbor did not announce is missing. Indented
// by so many blanks; on one line if that is negative.
std::string neighbor_json(const std::vector<pictures::Report> &reports, int indent);

// A number of seconds for people: "41s", "5m12s", "3h05m", "2d03h". Other text as it is.
std::string age_text(const std::string &seconds);

} // namespace yfw::cli

#endif

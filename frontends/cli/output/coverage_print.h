// Prints what a device serves of its model.
#ifndef YFW_FRONTENDS_CLI_OUTPUT_COVERAGE_PRINT_H
#define YFW_FRONTENDS_CLI_OUTPUT_COVERAGE_PRINT_H

#include <ostream>

#include "coverage/coverage.h"

namespace yfw::cli {

// One line for each leaf.
void print_coverage(std::ostream &to, const coverage::Coverage &coverage);
// The same with the native nodes, as a table.
void print_coverage_markdown(std::ostream &to, const coverage::Coverage &coverage);
// Everything that is known.
void print_coverage_json(std::ostream &to, const coverage::Coverage &coverage);
// The same for people.
void print_coverage_details(std::ostream &to, const coverage::Coverage &coverage);

} // namespace yfw::cli

#endif

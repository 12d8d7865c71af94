// Prints answers.
#ifndef YFW_FRONTENDS_CLI_OUTPUT_PRINT_H
#define YFW_FRONTENDS_CLI_OUTPUT_PRINT_H

#include <cstdio>

#include "frontends/cli/options/options.h"
#include "yang/data_tree.h"
#include "yang/schemas.h"

namespace yfw::cli {

// Prepares a stream for large output by a single thread. Call before anything is written.
void prepare_output(std::FILE *to);

// Flushes standard output. Throws std::runtime_error when not everything that was printed could be written.
void finish_output();

// Writes the data as JSON (RFC 7951) or XML, with a final newline. Without data, writes an empty object or the
// empty top container. Throws std::runtime_error when the output cannot be written.
void print_data(std::FILE *to, const yang::Schemas &schemas, const lyd_node *data, Format format);

} // namespace yfw::cli

#endif

// Prints answers.
#ifndef YFW_FRONTENDS_CLI_OUTPUT_PRINT_H
#define YFW_FRONTENDS_CLI_OUTPUT_PRINT_H

#include <cstdio>

#include "frontends/cli/options/options.h"
#include "host/settled_answer.h"
#include "yang/schemas.h"

namespace yfw::cli {

// Flushes standard output. Throws std::runtime_error when not everything that was printed could be written.
void finish_output();

// Writes the answer as JSON (RFC 7951) or XML, with a final newline. An empty one is an empty object or the
// empty top container. Throws std::runtime_error when the output cannot be written.
void print_answer(std::FILE *to, const yang::Schemas &schemas, const host::SettledAnswer &answer,
                  Format format);

} // namespace yfw::cli

#endif

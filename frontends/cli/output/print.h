// Prints answers.
#ifndef YFW_FRONTENDS_CLI_OUTPUT_PRINT_H
#define YFW_FRONTENDS_CLI_OUTPUT_PRINT_H

#include <cstdio>

#include "frontends/cli/options/options.h"
#include "host/settled_answer.h"
#include "yang/schemas.h"

namespace yfw::cli {

// Thrown when whoever reads standard output has gone: there is nobody left to tell.
struct ReaderGone {};

// For output that could not be written: throws ReaderGone or, with the reason, std::runtime_error.
[[noreturn]] void refuse_output();

// Thrown when something failed that the user has been told about, and the rest was done.
struct FailureTold {};

// Flushes standard output. Throws as refuse_output() when not everything that was printed could be written.
void finish_output();

// Writes the answer as JSON (RFC 7951) or XML, with a final newline. An empty one is an empty object or the
// empty top container. A terminal gets it with harmful characters escaped. Throws as refuse_output() when the
// output cannot be written.
void print_answer(std::FILE *to, const yang::Schemas &schemas, const host::SettledAnswer &answer,
                  Format format);

} // namespace yfw::cli

#endif

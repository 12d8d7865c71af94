// Prints explanations as text or JSON.
#ifndef YFW_FRONTENDS_CLI_OUTPUT_EXPLAIN_PRINT_H
#define YFW_FRONTENDS_CLI_OUTPUT_EXPLAIN_PRINT_H

#include <ostream>

#include "host/explanation.h"

namespace yfw::cli {

// `edit`: the request was an edit, and the native paths are edits in the order in which they are made;
// otherwise they are reads.
void print_explanation(std::ostream &to, const host::Explanation &explanation, bool edit);
void print_explanation_json(std::ostream &to, const host::Explanation &explanation, bool edit);

} // namespace yfw::cli

#endif

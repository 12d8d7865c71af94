// Prints explanations as text or JSON.
#ifndef YFW_FRONTENDS_CLI_OUTPUT_EXPLAIN_PRINT_H
#define YFW_FRONTENDS_CLI_OUTPUT_EXPLAIN_PRINT_H

#include <ostream>
#include <string>
#include <vector>

#include "host/explanation.h"

namespace yfw::cli {

// How one OpenConfig leaf maps to native nodes.
struct Correspondence {
    std::string openconfig;
    std::vector<std::string> sources; // native paths that a read of it fetches
    std::vector<std::string> targets; // native edits that result from setting it
    bool writable = false;
};

// `edit`: the request was an edit, and the native paths are edits in the order in which they are made;
// otherwise they are reads.
void print_explanation(std::ostream &to, const host::Explanation &explanation, bool edit);
void print_explanation_json(std::ostream &to, const host::Explanation &explanation, bool edit);

void print_correspondence(std::ostream &to, const std::vector<Correspondence> &rows);
void print_correspondence_json(std::ostream &to, const std::vector<Correspondence> &rows);

// A native edit as text: "merge  /lldp/timer = 30".
std::string edit_text(const host::NativePath &path);

} // namespace yfw::cli

#endif

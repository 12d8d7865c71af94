// What the plug-in did with a request: node by node, callback by callback.
#ifndef YFW_HOST_EXPLANATION_H
#define YFW_HOST_EXPLANATION_H

#include <string>
#include <vector>

#include "host/answer_tree.h"
#include "host/callback_names.h"
#include "host/native_paths.h"

namespace yfw::host {

// One call of a node's callback.
struct ExplainedNode {
    std::string openconfig;             // the node's schema path
    std::vector<std::string> callbacks; // the node's callback and those that it called, in order
    std::vector<NativePath> paths;      // the paths they added, in order
};

using Explanation = std::vector<ExplainedNode>;

// Combines the numbered trace of a request walk with the native paths it emitted. `trace`: every line of the
// walk; `paths` record the trace's length when they were added.
Explanation explain_walk(const CallbackNames &names, const std::vector<std::string> &trace,
                         const std::vector<NativePath> &paths);

// A leaf of an answer, and the callback that wrote it.
struct WrittenNode {
    std::string openconfig; // the schema path
    std::string callback;
    bool is_known = true; // whether the model in use has it; the callback is not known otherwise
};

// `trace`: every line of a read, its responses included; `written` records the trace's length at each leaf.
std::vector<WrittenNode> explain_answer_walk(const std::vector<std::string> &trace,
                                             const std::vector<AnswerTree::Written> &written);

// Appends what a mapping beside the main one did: the nodes that it has native paths for, with the library's
// file name before each callback.
void append_beside(Explanation &to, Explanation added, const std::string &library);

} // namespace yfw::host

#endif

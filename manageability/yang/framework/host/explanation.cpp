#include "host/explanation.h"

#include <algorithm>

#include "yang/path.h"

namespace yfw::host {
namespace {

// "#12: TRC: function:34 ctx=0x55d0,message"
struct TraceLine {
    std::string function;
    std::string message;
};

TraceLine parse_line(const std::string &line) {
    const size_t tag = line.find(": ");
    const size_t name = line.find(": ", tag + 2);
    const size_t end = line.find(':', name + 2);
    const size_t comma = line.find(',', end);
    if (name == std::string::npos || end == std::string::npos || comma == std::string::npos)
        return {};
    return {line.substr(name + 2, end - name - 2), line.substr(comma + 1)};
}

// Tracks which callbacks are running.
class Replay {
public:
    Replay(const CallbackNames &names, Explanation &into) : names_(names), into_(into) {}

    void line(const std::string &text) {
        const TraceLine line = parse_line(text);
        if (line.message == "Start")
            enter(line.function);
        else if (std::find_if(running_.begin(), running_.end(), [&](const Running &call) {
                     return call.function == line.function;
                 }) != running_.end())
            leave_until(line.function, line.message == "End");
        else if (line.message == "End" && !running_.empty())
            note_callback(line.function); // all that a do-nothing callback writes
    }

    void path(const NativePath &path) {
        if (!running_.empty() && running_.back().row != no_row)
            into_[running_.back().row].paths.push_back(path);
    }

private:
    static constexpr size_t no_row = SIZE_MAX;

    struct Running {
        std::string function;
        size_t row; // of the node whose callback is running
        const lysc_node *node;
    };

    void enter(const std::string &function) {
        const lysc_node *above = running_.empty() ? nullptr : running_.back().node;
        if (const lysc_node *node = names_.node_of_walker(function, above)) {
            into_.push_back({yang::schema_path(node), {}, {}});
            running_.push_back({function, into_.size() - 1, node});
            return;
        }
        note_callback(function);
        running_.push_back({function, running_.empty() ? no_row : running_.back().row, above});
    }

    void note_callback(const std::string &function) {
        if (!running_.empty() && running_.back().row != no_row &&
            function.find("parse_augments") == std::string::npos)
            into_[running_.back().row].callbacks.push_back(function);
    }

    // Some callbacks return without an exit trace.
    void leave_until(const std::string &function, bool ends) {
        while (running_.back().function != function)
            running_.pop_back();
        if (ends)
            running_.pop_back();
    }

    const CallbackNames &names_;
    Explanation &into_;
    std::vector<Running> running_;
};

} // namespace

Explanation explain_walk(const CallbackNames &names, const std::vector<std::string> &trace,
                         const std::vector<NativePath> &paths) {
    Explanation explanation;
    Replay replay(names, explanation);
    size_t next = 0;
    for (size_t i = 0; i < trace.size(); i++) {
        while (next < paths.size() && paths[next].trace_lines <= i)
            replay.path(paths[next++]);
        replay.line(trace[i]);
    }
    while (next < paths.size())
        replay.path(paths[next++]);
    return explanation;
}

namespace {

// Which functions run at a line of the trace. The innermost one that wrote is the callback.
class Running {
public:
    void line(const std::string &text) {
        const TraceLine line = parse_line(text);
        if (line.message == "Start")
            functions_.push_back(line.function);
        else if (const auto found = std::find(functions_.rbegin(), functions_.rend(), line.function);
                 found != functions_.rend())
            functions_.erase(line.message == "End" ? std::prev(found.base()) : found.base(), functions_.end());
    }

    std::string innermost() const { return functions_.empty() ? "" : functions_.back(); }

private:
    std::vector<std::string> functions_;
};

} // namespace

std::vector<WrittenNode> explain_answer_walk(const std::vector<std::string> &trace,
                                             const std::vector<AnswerTree::Written> &written) {
    std::vector<WrittenNode> nodes;
    Running running;
    size_t line = 0;
    for (const AnswerTree::Written &one : written) {
        for (; line < one.trace_lines && line < trace.size(); line++)
            running.line(trace[line]);
        nodes.push_back({yang::schema_path(one.node->schema), running.innermost(), true});
    }
    return nodes;
}

void append_beside(Explanation &to, Explanation added, const std::string &library) {
    for (ExplainedNode &node : added) {
        if (node.paths.empty())
            continue;
        for (std::string &callback : node.callbacks)
            callback.insert(0, library + ":");
        to.push_back(std::move(node));
    }
}

} // namespace yfw::host

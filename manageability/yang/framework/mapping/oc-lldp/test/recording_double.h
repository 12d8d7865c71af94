// A double of the framework and the platform. It defines every operation that the plug-in leaves undefined,
// records each call with its arguments in order, answers from tables that a test fills, and can make the nth
// call of any operation fail. There is one double per process; `reset` restores its initial state.
#ifndef OCLLDP_RECORDING_DOUBLE_H
#define OCLLDP_RECORDING_DOUBLE_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "yfw_map.h"

namespace oclldp_test {

// One call of an operation. `args` are the arguments as text, separated by ", ": nodes by name, the context
// omitted.
struct Call {
    std::string operation;
    std::string args;

    bool operator==(const Call &) const = default;
};

// Makes a failed comparison print calls as "operation(args)".
std::string to_string(const Call &call);
void PrintTo(const Call &call, std::ostream *stream);

// One call of yfw_map_datatree_add_path_flagged, with the arguments as they were at that moment.
struct Add {
    std::string path;
    std::string ns;
    std::optional<std::string> value;
    const tidl_yfw_datatree *source = nullptr;
    std::optional<uint32_t> source_operation; // of `source` at that moment
    tidl_yfw_datatree *parent = nullptr;
    bool slot_given = false;
    tidl_yfw_datatree **slot = nullptr;
    tidl_yfw_datatree *node = nullptr; // what the slot received; owned by the double until reset
    uint32_t list_entry = 0;
    uint32_t flags = 0;
    terrno status = 0; // what the call returned
};

// One line of the debug log or of the trace buffer.
struct LogLine {
    enum class Channel { debug_log, numbered };

    Channel channel = Channel::debug_log;
    uint32_t level = 0; // 0 for "ERR", 3 for "TRC"
    void *handle = nullptr;
    std::string text;           // the line as a reader sees it
    std::string format;         // debug log: the format string
    std::string message;        // what follows "ctx=...,"
    std::string function;       // numbered: the function's name
    uint32_t number = 0;        // numbered: the sequence number
    uint32_t line = 0;          // numbered: the source line
    uint64_t word = 0;          // numbered: the word passed in
    const void *slot = nullptr; // debug log: the call site's slot
    int32_t slot_value = 0;     // debug log: what the slot held
    uint64_t zero_words_or = 0; // debug log: the five zero words, ORed together
};

// One record of the error path, with the context's err_node_name at that moment.
struct ErrorPath {
    std::optional<std::string> err_node_name;
};

// One call of yfw_map_search_or_add_list.
struct ListSearch {
    tidl_yfw_datatree *parent = nullptr;
    tidl_yfw_datatree **slot = nullptr;
    std::string list_path;
    std::optional<std::string> key_value;
    std::string key_name;
    std::optional<std::string> ns;
};

// One call of yfw_map_tree_xpath_operations.
struct XpathQuery {
    uint32_t operation = 0;
    uint32_t operation_kind = 0;
    std::string ns;
    std::string xpath;
    const tidl_yfw_datatree *start = nullptr;
};

// One call of imc_interface_find: the names of the entries, flags and connection.
struct InterfaceFind {
    void *connection = nullptr;
    std::vector<std::string> names;
    uint32_t flags = 0;
};

// The answer to a look-up of a leaf or an item; without a value, the out-pointer becomes NULL.
struct TextAnswer {
    std::optional<std::string> value{};
    terrno status = 0;
};

// An item of the system database; without a value, it answers with no data (count 0, pointer NULL).
struct ItemAnswer {
    std::optional<uint32_t> value{};
    terrno status = 0;
};

class Double {
public:
    // ---- what was called ----
    std::vector<Call> calls;
    std::vector<Add> adds;
    std::vector<LogLine> lines;
    std::vector<ErrorPath> error_paths;
    std::vector<ListSearch> searches;
    std::vector<yfw_map_stitch> stitches;
    std::vector<XpathQuery> queries;
    std::vector<InterfaceFind> interface_finds;
    std::vector<int> gate_levels;                       // levels passed to yfw_debug_should_log
    std::vector<const yfw_debug_filter *> gate_filters; // and the filters

    // ---- what to answer ----
    bool log_traces = true; // the gate for level 3
    bool log_errors = true; // the gate for level 0
    // (path, leaf) to answer; anything else gets `node_info_fallback`, or NULL and 0.
    std::map<std::pair<std::string, std::string>, TextAnswer> node_info;
    std::function<TextAnswer(const std::string &path, const std::string &leaf)> node_info_fallback;
    // XPath to answer; anything else gets the status `xpath_missing`.
    std::map<std::string, TextAnswer> xpath;
    terrno xpath_missing = 1;
    // What yfw_map_is_request_add returns; unset: true in an edit, for a node with operation 0, 1 or 2.
    std::optional<bool> is_request_add;
    bool add_without_node = false; // adds succeed but leave the slot NULL
    // System database: item to answer; an absent item gets the status `sysdb_item_missing`.
    std::map<std::string, ItemAnswer> sysdb_items;
    terrno sysdb_item_missing = 2;
    uint64_t sysdb_next_connection = 0x5d01; // counted up by each bind
    std::vector<std::string> sysdb_paths;    // what sysdb_find finds
    bool library_readable = true;            // access() below "/pkg/"
    // Interface manager: name to the entry's status (others 0), and how many entries the look-up reports as
    // filled in.
    std::map<std::string, terrno> imc_entry_status;
    std::optional<uint32_t> imc_answered; // unset: as many as requested
    std::map<std::string, std::string> display_names;
    std::map<std::string, std::string> ifentry_names;
    int router_type = 0;
    int lldp_over_mgmt = 1;
    uint64_t stamp_ns = 0;
    std::optional<std::pair<int64_t, long>> wall_clock; // seconds, nanoseconds; unset: the real clock
    std::map<terrno, std::string> status_texts;
    uint32_t next_trace_number = 1;

    // ---- how to fail, and what else to do ----
    // Makes the nth call (from 1; 0: every call) of `operation` return `status`; the operation is recorded but
    // does nothing else.
    void fail(const std::string &operation, unsigned nth, uint32_t status);
    // Makes the plug-in's nth malloc or calloc from now (counting from 1) return NULL.
    void fail_allocation(unsigned nth);
    // Runs `hook` for each call of `operation`, after it has been recorded and before it is answered.
    void on_call(const std::string &operation, std::function<void(const Call &)> hook);
    // Runs `hook` after each add has been answered.
    void on_add(std::function<void(const Add &)> hook) { add_hook = std::move(hook); }

    // ---- what a test asks ----
    // Calls in order, except logging, comparing and string copying.
    std::vector<Call> mapping_calls() const;
    // Calls of one operation.
    std::vector<Call> calls_of(const std::string &operation) const;
    // Lines of a channel, each as "TRC: message" or "ERR: message".
    std::vector<std::string> debug_lines() const { return lines_of(LogLine::Channel::debug_log); }
    std::vector<std::string> numbered_lines() const { return lines_of(LogLine::Channel::numbered); }
    // Messages of the "ERR" lines of the debug log.
    std::vector<std::string> errors() const;
    // Names of the functions that wrote "Start" to the numbered channel, in order.
    std::vector<std::string> started() const;
    // Paths of the adds, in order.
    std::vector<std::string> add_paths() const;
    // yfw_strdup copies not yet freed, of one owner or of all.
    std::size_t live_strings() const { return strings.size(); }
    std::size_t live_strings(const std::string &owner) const;
    bool is_live_string(const void *text) const { return strings.contains(text); }
    // sysdb_find lists not yet freed, and connections still bound.
    std::size_t live_lists() const { return lists.size(); }
    std::vector<uint64_t> bound_connections() const;
    std::size_t entry_stack_size() const { return entry_stack.size(); }

    // Forgets the recorded calls; keeps the answers.
    void forget_calls();
    // Restores the initial state; frees what the plug-in left behind.
    void reset();

    // ---- for the operations themselves ----
    // Records a call and returns the status ordered for it, if any.
    std::optional<uint32_t> record(const std::string &operation, std::string args);
    void forget_string(const void *text) { strings.erase(text); }
    const char *keep(const std::string &text);
    tidl_yfw_datatree *new_node(const std::string &path, const char *value, const char *ns,
                                const tidl_yfw_datatree *source);

    std::map<const void *, std::string> strings; // live yfw_strdup copies, by address, with their owners
    std::map<void *, std::size_t> lists;         // live lists of sysdb_find and their positions
    std::map<uint64_t, std::string> connections; // bound connections and their paths
    std::vector<yfw_map_itree_item> entry_stack;
    std::function<void(const Add &)> add_hook;

private:
    std::vector<std::string> lines_of(LogLine::Channel channel) const;

    std::map<std::string, std::map<unsigned, uint32_t>> failures;
    std::map<std::string, unsigned> counts;
    std::multimap<std::string, std::function<void(const Call &)>> hooks;
    std::deque<std::string> texts;
    std::deque<tidl_yfw_datatree> nodes;
};

// The process's double.
Double &contract();

// Tells the double where the plug-in's code is, so that it can recognize the plug-in's allocations; two zeros
// when none is loaded.
void set_plugin_range(std::uintptr_t begin, std::uintptr_t end);

} // namespace oclldp_test

#endif

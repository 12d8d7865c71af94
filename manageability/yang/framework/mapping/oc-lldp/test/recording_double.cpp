#include "recording_double.h"

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <set>

#include "plugin_allocations.h"

namespace oclldp_test {

std::string to_string(const Call &call) {
    return call.operation + "(" + call.args + ")";
}

void PrintTo(const Call &call, std::ostream *stream) {
    *stream << to_string(call);
}

Double &contract() {
    static Double instance;
    return instance;
}

void Double::fail(const std::string &operation, unsigned nth, uint32_t status) {
    failures[operation][nth == 0 ? 0 : counts[operation] + nth] = status;
}

void Double::fail_allocation(unsigned nth) {
    arm_allocation_failure(nth);
}

void Double::on_call(const std::string &operation, std::function<void(const Call &)> hook) {
    hooks.emplace(operation, std::move(hook));
}

std::optional<uint32_t> Double::record(const std::string &operation, std::string args) {
    calls.push_back({operation, std::move(args)});
    const unsigned nth = ++counts[operation];
    // A copy, since a hook may cause further calls.
    const Call call = calls.back();
    std::vector<std::function<void(const Call &)>> to_run;
    const auto [first, last] = hooks.equal_range(operation);
    std::transform(first, last, std::back_inserter(to_run), [](const auto &hook) { return hook.second; });
    for (const auto &hook : to_run)
        hook(call);
    const auto ordered = failures.find(operation);
    if (ordered == failures.end())
        return std::nullopt;
    for (const unsigned key : {nth, 0u}) {
        if (const auto found = ordered->second.find(key); found != ordered->second.end())
            return found->second;
    }
    return std::nullopt;
}

std::vector<Call> Double::mapping_calls() const {
    static const std::set<std::string> left_out = {
        "yfw_debug_should_log", "_qdos_dt_log_filter_adv", "ret_nc_yfw_trace_index_incr", "_lstrace",
        "yfw_map_do_these_match", "yfw_strncpy_s", "yfw_strcpy_s", "yfw_strcat_s", "yfw_strcmp_s", "yfw_strdup",
        "qdos_named_free", "terr_strerror",
        // Predicates: calling them changes nothing.
        "yfw_map_is_request_delete", "yfw_map_is_request_add", "yfw_map_util_itree_stack_size"};
    std::vector<Call> kept;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(kept),
                 [](const Call &call) { return !left_out.contains(call.operation); });
    return kept;
}

std::vector<Call> Double::calls_of(const std::string &operation) const {
    std::vector<Call> kept;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(kept),
                 [&](const Call &call) { return call.operation == operation; });
    return kept;
}

std::vector<std::string> Double::lines_of(LogLine::Channel channel) const {
    std::vector<std::string> texts_of;
    for (const LogLine &line : lines) {
        if (line.channel == channel)
            texts_of.push_back((line.level == YFW_LOG_ERROR ? "ERR: " : "TRC: ") + line.message);
    }
    return texts_of;
}

std::vector<std::string> Double::errors() const {
    std::vector<std::string> messages;
    for (const LogLine &line : lines) {
        if (line.channel == LogLine::Channel::debug_log && line.level == YFW_LOG_ERROR)
            messages.push_back(line.message);
    }
    return messages;
}

std::vector<std::string> Double::started() const {
    std::vector<std::string> functions;
    for (const LogLine &line : lines) {
        if (line.channel == LogLine::Channel::numbered && line.message == "Start")
            functions.push_back(line.function);
    }
    return functions;
}

std::vector<std::string> Double::add_paths() const {
    std::vector<std::string> paths;
    std::transform(adds.begin(), adds.end(), std::back_inserter(paths),
                   [](const Add &add) { return add.path; });
    return paths;
}

std::size_t Double::live_strings(const std::string &owner) const {
    return static_cast<std::size_t>(std::count_if(strings.begin(), strings.end(),
                                                  [&](const auto &entry) { return entry.second == owner; }));
}

std::vector<uint64_t> Double::bound_connections() const {
    std::vector<uint64_t> bound;
    std::transform(connections.begin(), connections.end(), std::back_inserter(bound),
                   [](const auto &entry) { return entry.first; });
    return bound;
}

const char *Double::keep(const std::string &text) {
    return texts.emplace_back(text).c_str();
}

tidl_yfw_datatree *Double::new_node(const std::string &path, const char *value, const char *ns,
                                    const tidl_yfw_datatree *source) {
    tidl_yfw_datatree &node = nodes.emplace_back();
    const std::size_t slash = path.rfind('/');
    node.name = keep(slash == std::string::npos ? path : path.substr(slash + 1));
    node.value = value == nullptr ? nullptr : keep(value);
    node.ns = ns == nullptr ? nullptr : keep(ns);
    node.operation = source == nullptr ? static_cast<uint32_t>(YFW_OP_NONE) : source->operation;
    return &node;
}

void Double::forget_calls() {
    calls.clear();
    adds.clear();
    lines.clear();
    error_paths.clear();
    searches.clear();
    stitches.clear();
    queries.clear();
    interface_finds.clear();
    gate_levels.clear();
    gate_filters.clear();
}

void Double::reset() {
    arm_allocation_failure(0);
    for (const auto &[text, owner] : strings)
        std::free(const_cast<void *>(text));
    for (const auto &[list, position] : lists)
        delete static_cast<char *>(list);
    *this = Double();
}

} // namespace oclldp_test

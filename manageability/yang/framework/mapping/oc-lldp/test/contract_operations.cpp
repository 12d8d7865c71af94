// The double's implementation of the framework's operations.
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "recording_double.h"

using oclldp_test::Add;
using oclldp_test::contract;
using oclldp_test::LogLine;
using oclldp_test::TextAnswer;

namespace {

std::string show(const char *text) {
    return text == nullptr ? "NULL" : text;
}

std::string show(const tidl_yfw_datatree *node) {
    return node == nullptr ? "NULL" : show(node->name);
}

std::optional<std::string> optional_text(const char *text) {
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

// What follows "ctx=...," in a finished line.
std::string message_of(const std::string &text) {
    const std::size_t context = text.find("ctx=");
    const std::size_t comma = context == std::string::npos ? context : text.find(',', context);
    return comma == std::string::npos ? text : text.substr(comma + 1);
}

uint32_t level_of(const std::string &text) {
    return text.find("ERR:") == std::string::npos ? YFW_LOG_TRACE : YFW_LOG_ERROR;
}

// Copies within a destination of `size` bytes; returns nonzero when the text was cut.
terrno bounded_copy(char *destination, std::size_t size, std::size_t used, const char *source,
                    std::size_t count) {
    if (destination == nullptr || size == 0 || used >= size)
        return 22;
    if (source == nullptr) {
        destination[used] = '\0';
        return 22;
    }
    const std::size_t wanted = strnlen(source, count);
    const std::size_t copied = std::min(wanted, size - used - 1);
    std::memcpy(destination + used, source, copied);
    destination[used + copied] = '\0';
    return copied < wanted ? 34 : 0;
}

} // namespace

extern "C" {

int yfw_map_do_these_match(const char *a, const char *b) {
    const auto ordered = contract().record("yfw_map_do_these_match", show(a) + ", " + show(b));
    if (ordered)
        return static_cast<int>(*ordered);
    return a != nullptr && b != nullptr && std::strcmp(a, b) == 0;
}

void yfw_map_add_to_node_hierarchy(yfw_map_ctx, const tidl_yfw_datatree *node, uint32_t kind) {
    contract().record("yfw_map_add_to_node_hierarchy", show(node) + ", " + std::to_string(kind));
}

void yfw_map_remove_from_node_hierarchy(yfw_map_ctx, const tidl_yfw_datatree *node) {
    contract().record("yfw_map_remove_from_node_hierarchy", show(node));
}

int yfw_map_is_request_delete(const tidl_yfw_datatree *node) {
    if (const auto ordered = contract().record("yfw_map_is_request_delete", show(node)))
        return static_cast<int>(*ordered);
    return node != nullptr && (node->operation == YFW_OP_DELETE || node->operation == YFW_OP_REMOVE);
}

int yfw_map_is_request_add(yfw_map_ctx ctx, const tidl_yfw_datatree *node) {
    if (const auto ordered = contract().record("yfw_map_is_request_add", show(node)))
        return static_cast<int>(*ordered);
    if (contract().is_request_add)
        return *contract().is_request_add;
    const uint32_t kind = ctx->req_ctx->request->req_type;
    const bool edit = kind != YMAP_REQ_GET_CONFIG && kind != YMAP_REQ_GET;
    return edit && node != nullptr && node->operation <= YFW_OP_CREATE;
}

void yfw_oc_error_path(yfw_map_ctx ctx) {
    const char *name = ctx->req_ctx == nullptr ? nullptr : ctx->req_ctx->err_node_name;
    contract().error_paths.push_back({optional_text(name)});
    contract().record("yfw_oc_error_path", show(name));
}

terrno yfw_map_datatree_add_path_flagged(yfw_map_ctx, tidl_yfw_datatree *parent, const char *path,
                                         const char *ns, const char *value, const tidl_yfw_datatree *source,
                                         tidl_yfw_datatree **slot, uint32_t list_entry, uint32_t flags) {
    auto &recording = contract();
    Add add;
    add.path = show(path);
    add.ns = show(ns);
    add.value = optional_text(value);
    add.source = source;
    if (source != nullptr)
        add.source_operation = source->operation;
    add.parent = parent;
    add.slot_given = slot != nullptr;
    add.slot = slot;
    add.list_entry = list_entry;
    add.flags = flags;
    const auto ordered = recording.record("yfw_map_datatree_add_path_flagged",
                                          add.path + ", " + show(value) + ", " + show(source) + ", " +
                                              std::to_string(list_entry) + ", " + std::to_string(flags));
    add.status = ordered.value_or(0);
    if (!ordered && slot != nullptr) {
        if (!recording.add_without_node)
            add.node = recording.new_node(add.path, value, ns, source);
        *slot = add.node;
    }
    recording.adds.push_back(add);
    if (recording.add_hook)
        recording.add_hook(add);
    return add.status;
}

terrno yfw_map_get_node_info(yfw_map_ctx, const char *path, const char *leaf, const char **value) {
    auto &recording = contract();
    const auto ordered = recording.record("yfw_map_get_node_info", show(path) + ", " + show(leaf));
    *value = nullptr;
    if (ordered)
        return *ordered;
    TextAnswer answer;
    if (const auto found = recording.node_info.find({show(path), show(leaf)});
        found != recording.node_info.end())
        answer = found->second;
    else if (recording.node_info_fallback)
        answer = recording.node_info_fallback(show(path), show(leaf));
    if (answer.value)
        *value = recording.keep(*answer.value);
    return answer.status;
}

terrno yfw_map_search_or_add_list(yfw_map_ctx, tidl_yfw_datatree *parent, tidl_yfw_datatree **slot,
                                  const char *list_path, const char *key_value, const char *key_name,
                                  const char *ns) {
    auto &recording = contract();
    recording.searches.push_back({.parent = parent,
                                  .slot = slot,
                                  .list_path = show(list_path),
                                  .key_value = optional_text(key_value),
                                  .key_name = show(key_name),
                                  .ns = optional_text(ns)});
    const auto ordered = recording.record("yfw_map_search_or_add_list",
                                          show(list_path) + ", " + show(key_value) + ", " + show(key_name));
    if (ordered)
        return *ordered;
    if (slot != nullptr)
        *slot = recording.new_node(show(list_path), nullptr, ns, nullptr);
    return 0;
}

terrno yfw_map_stitch_list_to_list(yfw_map_ctx, yfw_map_stitch *record) {
    contract().stitches.push_back(*record);
    return contract()
        .record("yfw_map_stitch_list_to_list", show(record->list_path) + ", " + show(record->keyed_path))
        .value_or(0);
}

terrno yfw_map_update_current_list_node(yfw_map_ctx, const char *list_path) {
    return contract().record("yfw_map_update_current_list_node", show(list_path)).value_or(0);
}

terrno yfw_map_copy_trim_path_list_ctx(yfw_map_ctx, const char *path) {
    return contract().record("yfw_map_copy_trim_path_list_ctx", show(path)).value_or(0);
}

terrno yfw_add_to_output_list_ctx(yfw_map_ctx, const tidl_yfw_datatree *node, tidl_yfw_datatree *output) {
    return contract().record("yfw_add_to_output_list_ctx", show(node) + ", " + show(output)).value_or(0);
}

terrno yfw_remove_from_output_list_ctx(yfw_map_ctx, const tidl_yfw_datatree *node, tidl_yfw_datatree *output) {
    return contract().record("yfw_remove_from_output_list_ctx", show(node) + ", " + show(output)).value_or(0);
}

terrno yfw_map_check_oc_leafref(yfw_map_ctx, const char *list_path, const char *container, const char *key_name,
                                const tidl_yfw_datatree *list_node) {
    return contract()
        .record("yfw_map_check_oc_leafref",
                show(list_path) + ", " + show(container) + ", " + show(key_name) + ", " + show(list_node))
        .value_or(0);
}

terrno yfw_map_tree_xpath_operations(yfw_map_ctx, yfw_map_xpath_query *query) {
    auto &recording = contract();
    recording.queries.push_back({.operation = query->operation,
                                 .operation_kind = query->operation_kind,
                                 .ns = query->ns,
                                 .xpath = query->xpath,
                                 .start = query->start});
    const auto ordered =
        recording.record("yfw_map_tree_xpath_operations", show(query->xpath) + ", " + show(query->start));
    if (ordered)
        return *ordered;
    const auto found = recording.xpath.find(query->xpath);
    if (found == recording.xpath.end())
        return recording.xpath_missing;
    query->value = found->second.value ? recording.keep(*found->second.value) : nullptr;
    return found->second.status;
}

terrno yfw_map_util_itree_stack_push(yfw_map_ctx, tidl_yfw_datatree *entries, uint32_t count,
                                     yfw_map_callback callback) {
    const auto ordered =
        contract().record("yfw_map_util_itree_stack_push",
                          std::to_string(count) + (callback == nullptr ? ", NULL" : ", callback"));
    if (ordered)
        return *ordered;
    contract().entry_stack.push_back({.entries = entries, .count = count, .callback = callback});
    return 0;
}

terrno yfw_map_util_itree_stack_pop(yfw_map_ctx) {
    const auto ordered = contract().record("yfw_map_util_itree_stack_pop", "");
    if (ordered)
        return *ordered;
    if (contract().entry_stack.empty())
        return 1;
    contract().entry_stack.pop_back();
    return 0;
}

terrno yfw_map_util_itree_stack_peak(yfw_map_ctx, yfw_map_itree_item *item) {
    const auto ordered = contract().record("yfw_map_util_itree_stack_peak", "");
    if (ordered)
        return *ordered;
    if (contract().entry_stack.empty())
        return 1;
    *item = contract().entry_stack.back();
    return 0;
}

uint32_t yfw_map_util_itree_stack_size(yfw_map_ctx) {
    const auto ordered = contract().record("yfw_map_util_itree_stack_size", "");
    return ordered ? *ordered : static_cast<uint32_t>(contract().entry_stack.size());
}

terrno yfw_strncpy_s(const char *caller, char *destination, size_t size, const char *source, size_t count) {
    const auto ordered = contract().record("yfw_strncpy_s", show(caller) + ", " + std::to_string(size) + ", " +
                                                                show(source) + ", " + std::to_string(count));
    return ordered ? *ordered : bounded_copy(destination, size, 0, source, count);
}

terrno yfw_strcpy_s(const char *caller, char *destination, size_t size, const char *source) {
    const auto ordered =
        contract().record("yfw_strcpy_s", show(caller) + ", " + std::to_string(size) + ", " + show(source));
    return ordered ? *ordered : bounded_copy(destination, size, 0, source, SIZE_MAX);
}

terrno yfw_strcat_s(const char *caller, char *destination, size_t size, const char *source) {
    const auto ordered =
        contract().record("yfw_strcat_s", show(caller) + ", " + std::to_string(size) + ", " + show(source));
    return ordered ? *ordered : bounded_copy(destination, size, strnlen(destination, size), source, SIZE_MAX);
}

terrno yfw_strcmp_s(const char *caller, const char *a, size_t maximum, const char *b, int *result) {
    const auto ordered = contract().record("yfw_strcmp_s", show(caller) + ", " + show(a) + ", " +
                                                               std::to_string(maximum) + ", " + show(b));
    if (ordered)
        return *ordered;
    if (a == nullptr || b == nullptr)
        return 22;
    const int difference = std::strncmp(a, b, maximum);
    *result = (difference > 0) - (difference < 0);
    return 0;
}

char *yfw_strdup(const char *text, const char *owner) {
    const auto ordered = contract().record("yfw_strdup", show(text) + ", " + show(owner));
    if (ordered || text == nullptr)
        return nullptr;
    const std::size_t size = std::strlen(text) + 1;
    auto *copy = static_cast<char *>(std::malloc(size));
    std::memcpy(copy, text, size);
    contract().strings[copy] = show(owner);
    return copy;
}

void qdos_named_free(void *memory) {
    contract().record("qdos_named_free", memory == nullptr ? "NULL" : static_cast<const char *>(memory));
    contract().forget_string(memory);
    std::free(memory);
}

int yfw_debug_should_log(const yfw_debug_filter *filter, int level) {
    contract().gate_levels.push_back(level);
    contract().gate_filters.push_back(filter);
    const auto ordered = contract().record("yfw_debug_should_log", std::to_string(level));
    if (ordered)
        return static_cast<int>(*ordered);
    return level == YFW_LOG_ERROR ? contract().log_errors : contract().log_traces;
}

void _qdos_dt_log_filter_adv(void *handle, uint64_t zero_a, uint64_t zero_b, uint64_t zero_c, uint64_t zero_d,
                             uint64_t zero_e, int32_t *slot, const char *format, ...) {
    char text[2048];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    LogLine line;
    line.channel = LogLine::Channel::debug_log;
    line.level = level_of(format);
    line.handle = handle;
    line.text = text;
    line.format = format;
    line.message = message_of(text);
    line.slot = slot;
    line.slot_value = *slot;
    line.zero_words_or = zero_a | zero_b | zero_c | zero_d | zero_e;
    contract().lines.push_back(line);
    contract().record("_qdos_dt_log_filter_adv", text);
}

uint32_t ret_nc_yfw_trace_index_incr(void) {
    const auto ordered = contract().record("ret_nc_yfw_trace_index_incr", "");
    return ordered ? *ordered : contract().next_trace_number++;
}

void _lstrace(void *handle, uint64_t word, const char *text) {
    LogLine line;
    line.channel = LogLine::Channel::numbered;
    line.level = level_of(text);
    line.handle = handle;
    line.text = text;
    line.message = message_of(text);
    line.word = word;
    char function[256] = "";
    std::sscanf(text, "#%u: %*3s: %255[^:]:%u", &line.number, function, &line.line);
    line.function = function;
    contract().lines.push_back(line);
    contract().record("_lstrace", text);
}

const char *terr_strerror(terrno status) {
    contract().record("terr_strerror", std::to_string(status));
    const auto found = contract().status_texts.find(status);
    return contract().keep(found == contract().status_texts.end() ? "status " + std::to_string(status)
                                                                  : found->second);
}

} // extern "C"

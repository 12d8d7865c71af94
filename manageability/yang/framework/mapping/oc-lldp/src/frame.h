// The frame that every callback runs in: assertion, entry trace, argument check, body, exit trace.
//
// A callback is one YMAP_DEFINE... row, which defines a real exported function with its own call site; its body
// is passed to `in_frame`. Messages go to two channels at once: the debug log and the numbered trace buffer.
#ifndef OCLLDP_FRAME_H
#define OCLLDP_FRAME_H

#include <cstdint>
#include <cstdio>

#include "oclldp_plugin.h"

// Not <cassert>: the abort must not depend on NDEBUG, and it reports the callback's own prototype.
extern "C" [[noreturn]] void __assert_fail(const char *assertion, const char *file, unsigned line,
                                           const char *function) noexcept;

namespace oclldp {

using node = tidl_yfw_datatree;

// The statements with which shared code logs on behalf of a callback. Each has a slot of its own in every
// callback, so a slot is named by one statement only.
enum site_slot : unsigned {
    slot_start,
    slot_end,
    slot_invalid_arguments,
    slot_null_arguments,
    slot_left_to_children,
    slot_whole_container,
    slot_no_subtrees,
    slot_no_tag,
    slot_unsupported_tag,
    slot_ignored_tag,
    slot_list_without_keys,
    slot_entry_without_keys,
    slot_leafref,
    slot_key_rule,
    slot_empty_key,
    slot_key_delete,
    slot_xpath_error_node,
    slot_unstitched,
    slot_chassis_id_type,
    slot_bad_chassis_id_type,
    slot_count
};

// The logging layer's words, one a call site; -1 until it registers the site.
struct site_slots {
    int32_t words[slot_count];

    constexpr site_slots() : words{} {
        for (int32_t &word : words)
            word = -1;
    }
};

// The constant part of a callback.
struct callback_site {
    const char *function;
    const char *file;
    int line;
    const char *prototype;
    site_slots slots{};
};

// One call of a callback. `silent_end` suppresses the exit trace.
struct frame {
    callback_site &site;
    yfw_map_ctx ctx;
    bool silent_end = false;
};

// How a callback answers a NULL node.
enum class null_nodes {
    invalid_arguments, // "Invalid arguments passed!", error path, no exit trace
    null_arguments,    // "NULL arguments passed"
    accepted
};

template <class... Arguments>
void emit(const frame &f, int level, int32_t *slot, int line, const char *debug_format,
          const char *numbered_format, Arguments... arguments) {
    yfw_map_context &ctx = *f.ctx;
    if (yfw_debug_should_log(&ctx.dbg_filter, level) != 0) {
        void *handle = level == YFW_LOG_ERROR ? ctx.err_log_handle : ctx.trc_log_handle;
        _qdos_dt_log_filter_adv(handle, 0, 0, 0, 0, 0, slot, debug_format, static_cast<void *>(f.ctx),
                                arguments...);
    }
    if (ctx.trace_enabled != 0) {
        char text[250];
        std::snprintf(text, sizeof text, numbered_format, ret_nc_yfw_trace_index_incr(), f.site.function, line,
                      static_cast<void *>(f.ctx), arguments...);
        _lstrace(ctx.ltrace_handle, YFW_LTRACE_WORD, text);
    }
}

} // namespace oclldp

#define YMAP_EMIT(f, level, tag, slot, message, ...)                                                           \
    do {                                                                                                       \
        (void)sizeof(std::printf(message __VA_OPT__(, ) __VA_ARGS__)); /* checks the format */                 \
        ::oclldp::emit(f, level, slot, __LINE__, tag ": YFW: ctx=%p," message,                                 \
                       "#%u: " tag ": %s:%d ctx=%p," message __VA_OPT__(, ) __VA_ARGS__);                      \
    } while (false)

// Logs from shared code, using the running callback's slot for this message.
#define YMAP_TRACE_AT(f, slot, message, ...)                                                                   \
    YMAP_EMIT(f, YFW_LOG_TRACE, "TRC", &(f).site.slots.words[slot], message __VA_OPT__(, ) __VA_ARGS__)
#define YMAP_ERROR_AT(f, slot, message, ...)                                                                   \
    YMAP_EMIT(f, YFW_LOG_ERROR, "ERR", &(f).site.slots.words[slot], message __VA_OPT__(, ) __VA_ARGS__)

// Logs from a hand-written body: the statement is the call site.
#define YMAP_TRACE(f, message, ...)                                                                            \
    do {                                                                                                       \
        static int32_t ymap_slot = -1;                                                                         \
        YMAP_EMIT(f, YFW_LOG_TRACE, "TRC", &ymap_slot, message __VA_OPT__(, ) __VA_ARGS__);                    \
    } while (false)
#define YMAP_ERROR(f, message, ...)                                                                            \
    do {                                                                                                       \
        static int32_t ymap_slot = -1;                                                                         \
        YMAP_EMIT(f, YFW_LOG_ERROR, "ERR", &ymap_slot, message __VA_OPT__(, ) __VA_ARGS__);                    \
    } while (false)

namespace oclldp {

inline void assert_context(const callback_site &site, yfw_map_ctx ctx) {
    if (ctx == nullptr)
        __assert_fail("NULL != ctx", site.file, static_cast<unsigned>(site.line), site.prototype);
}

inline void trace_start(frame &f) {
    YMAP_TRACE_AT(f, slot_start, "Start");
}
inline void trace_end(frame &f) {
    YMAP_TRACE_AT(f, slot_end, "End");
}

// "Invalid arguments passed!": returns without an exit trace, on purpose.
inline terrno invalid_arguments(frame &f) {
    YMAP_ERROR_AT(f, slot_invalid_arguments, "Invalid arguments passed!");
    yfw_oc_error_path(f.ctx);
    f.silent_end = true;
    return YMAP_ERR_INVALID_ARGS;
}

inline terrno null_arguments(frame &f) {
    YMAP_ERROR_AT(f, slot_null_arguments, "NULL arguments passed");
    return YMAP_ERR_MAP_FAILED;
}

template <class Body> terrno checked(frame &f, null_nodes rule, bool complete, Body &&body) {
    if (!complete && rule == null_nodes::invalid_arguments)
        return invalid_arguments(f);
    if (!complete && rule == null_nodes::null_arguments)
        return null_arguments(f);
    return body(f);
}

// Runs `body` (frame &) -> terrno as one callback. `complete` is true when none of the nodes is NULL.
template <class Body>
terrno in_frame(callback_site &site, yfw_map_ctx ctx, bool complete, null_nodes rule, Body &&body) {
    assert_context(site, ctx);
    frame f{site, ctx};
    trace_start(f);
    const terrno status = checked(f, rule, complete, body);
    if (!f.silent_end)
        trace_end(f);
    return status;
}

inline terrno exit_trace_only(callback_site &site, yfw_map_ctx ctx) {
    assert_context(site, ctx);
    frame f{site, ctx};
    trace_end(f);
    return YMAP_OK;
}

// ---- what bodies share ---------------------------------------------------------------------------------

// The request's kind; a context without a request does not count as a read.
inline uint32_t request_kind(yfw_map_ctx ctx) {
    const yfw_req_ctx *request = ctx->req_ctx;
    return request != nullptr && request->request != nullptr ? request->request->req_type : UINT32_MAX;
}

inline bool is_get(yfw_map_ctx ctx) {
    return request_kind(ctx) == YMAP_REQ_GET;
}

inline bool is_read(yfw_map_ctx ctx) {
    const uint32_t kind = request_kind(ctx);
    return kind == YMAP_REQ_GET || kind == YMAP_REQ_GET_CONFIG;
}

inline bool is_delete(const node *n) {
    return yfw_map_is_request_delete(n) != 0;
}

inline bool has_text(const char *text) {
    return text != nullptr && *text != '\0';
}

// Callbacks receive the framework's nodes as const, but the walkers and some edits mark them.
inline node *writable(const node *n) {
    return const_cast<node *>(n);
}

inline void change_operation(const node *n, uint32_t operation) {
    writable(n)->operation = operation;
    writable(n)->node_flags |= YFW_NODE_OPERATION_CHANGED;
}

// Sets `tag` as the node that the error reply names, then records the error path.
inline void report_failing_node(yfw_map_ctx ctx, const char *tag) {
    if (yfw_req_ctx *request = ctx->req_ctx) {
        if (request->err_node_name != nullptr)
            qdos_named_free(request->err_node_name);
        request->err_node_name = nullptr;
        request->err_node_name = yfw_strdup(tag, "YFW MAP");
    }
    yfw_oc_error_path(ctx);
}

// Equality by the framework's own, unbounded comparison.
inline bool equal(frame &f, const char *a, const char *b) {
    int result = 1;
    return yfw_strcmp_s(f.site.function, a, INT64_MAX, b, &result) == YMAP_OK && result == 0;
}

// The optional arguments of an add.
struct add_options {
    const node *source = nullptr;
    node **slot = nullptr;
    uint32_t list_entry = 0;
    uint32_t flags = 0;
};

inline terrno add(frame &f, node *parent, const char *path, const char *ns, const char *value,
                  const add_options &options = {}) {
    return yfw_map_datatree_add_path_flagged(f.ctx, parent, path, ns, value, options.source, options.slot,
                                             options.list_entry, options.flags);
}

// Adds a container that is mapped whole; one with children is left to them.
inline terrno whole_container(frame &f, uint32_t count, node *out, const char *ns, const char *path) {
    if (count != 0) {
        YMAP_TRACE_AT(f, slot_left_to_children, "No mapping done for this node");
        return YMAP_OK;
    }
    YMAP_TRACE_AT(f, slot_whole_container, "No subtrees");
    return add(f, out, path, ns, nullptr);
}

} // namespace oclldp

// ---- rows ----------------------------------------------------------------------------------------------

#define YMAP_CALLBACK_ARGUMENTS                                                                                \
    yfw_map_ctx ctx, const struct tidl_yfw_datatree *in, struct tidl_yfw_datatree *out
#define YMAP_CONTAINER_ARGUMENTS                                                                               \
    yfw_map_ctx ctx, const struct tidl_yfw_datatree *in, uint32_t count, struct tidl_yfw_datatree *out

#define YMAP_CALLBACK_TYPES "(yfw_map_ctx, const struct tidl_yfw_datatree *, struct tidl_yfw_datatree *)"
#define YMAP_CONTAINER_TYPES                                                                                   \
    "(yfw_map_ctx, const struct tidl_yfw_datatree *, uint32_t, struct tidl_yfw_datatree *)"

// `result` and `types` are the texts before and after the name in the function's prototype.
#define YMAP_SITE(result, name, types)                                                                         \
    static constinit ::oclldp::callback_site site {                                                            \
#name, __FILE__, __LINE__, result #name types                                                          \
    }

#define YMAP_WEAK __attribute__((weak))

// Defines the callback `name`. `...` is an expression that yields its status; it sees the frame `f`, `in` and
// `out` (and `count` in a container callback). `rule` says how NULL nodes are answered.
#define YMAP_DEFINE(name, rule, ...)                                                                           \
    extern "C" terrno name(YMAP_CALLBACK_ARGUMENTS) {                                                          \
        YMAP_SITE("terrno ", name, YMAP_CALLBACK_TYPES);                                                       \
        return ::oclldp::in_frame(site, ctx, in != nullptr && out != nullptr, ::oclldp::null_nodes::rule,      \
                                  [&]([[maybe_unused]] ::oclldp::frame &f) -> terrno { return __VA_ARGS__; }); \
    }
#define YMAP_DEFINE_CONTAINER(name, rule, ...)                                                                 \
    extern "C" terrno name(YMAP_CONTAINER_ARGUMENTS) {                                                         \
        YMAP_SITE("terrno ", name, YMAP_CONTAINER_TYPES);                                                      \
        (void)count;                                                                                           \
        return ::oclldp::in_frame(site, ctx, in != nullptr && out != nullptr, ::oclldp::null_nodes::rule,      \
                                  [&]([[maybe_unused]] ::oclldp::frame &f) -> terrno { return __VA_ARGS__; }); \
    }

// The same, as a weak symbol that a strong definition of the same name replaces at link time.
#define YMAP_DEFINE_WEAK(name, rule, ...)                                                                      \
    extern "C" YMAP_WEAK terrno name(YMAP_CALLBACK_ARGUMENTS);                                                 \
    YMAP_DEFINE(name, rule, __VA_ARGS__)
#define YMAP_DEFINE_WEAK_CONTAINER(name, rule, ...)                                                            \
    extern "C" YMAP_WEAK terrno name(YMAP_CONTAINER_ARGUMENTS);                                                \
    YMAP_DEFINE_CONTAINER(name, rule, __VA_ARGS__)

// Do-nothing callbacks that write only their exit trace.
#define YMAP_DEFINE_DUCK(name)                                                                                 \
    extern "C" terrno name(YMAP_CALLBACK_ARGUMENTS) {                                                          \
        YMAP_SITE("terrno ", name, YMAP_CALLBACK_TYPES);                                                       \
        (void)in;                                                                                              \
        (void)out;                                                                                             \
        return ::oclldp::exit_trace_only(site, ctx);                                                           \
    }
#define YMAP_DEFINE_CONTAINER_DUCK(name)                                                                       \
    extern "C" terrno name(YMAP_CONTAINER_ARGUMENTS) {                                                         \
        YMAP_SITE("terrno ", name, YMAP_CONTAINER_TYPES);                                                      \
        (void)in;                                                                                              \
        (void)count;                                                                                           \
        (void)out;                                                                                             \
        return ::oclldp::exit_trace_only(site, ctx);                                                           \
    }

// Exports a callback of this file under another name, for a node with nothing to map.
#define YMAP_ALIAS(name, target)                                                                               \
    extern "C" __attribute__((weak, alias(#target))) terrno name(YMAP_CALLBACK_ARGUMENTS);
#define YMAP_ALIAS_CONTAINER(name, target)                                                                     \
    extern "C" __attribute__((weak, alias(#target))) terrno name(YMAP_CONTAINER_ARGUMENTS);

#endif

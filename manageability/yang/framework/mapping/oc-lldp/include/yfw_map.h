/* The contract between the YANG mapping framework and its mapping plug-ins.
 *
 * The framework owns every structure declared here; a plug-in borrows it for the duration of one callback.
 * The functions are undefined in a plug-in; its loader supplies them. They are synchronous and are called
 * from one thread at a time. Unless stated otherwise, strings are NUL-terminated UTF-8 and borrowed for the
 * call; an operation that keeps a string copies it. Compiles on its own as C11 and as C++20. */
#ifndef YFW_MAP_H
#define YFW_MAP_H

#include <stddef.h>
#include <stdint.h>

#include "ymap_status.h"

#ifdef __cplusplus
#define YFW_STATIC_ASSERT(condition, text) static_assert(condition, text)
extern "C" {
#else
#define YFW_STATIC_ASSERT(condition, text) _Static_assert(condition, text)
#endif

/* ---- data trees --------------------------------------------------------------------------------- */

/* Edit operations of a node (RFC 6241 section 7.2; remove is a delete that tolerates missing data). */
enum {
    YFW_OP_NONE = 0, /* merge */
    YFW_OP_REPLACE = 1,
    YFW_OP_CREATE = 2,
    YFW_OP_DELETE = 3,
    YFW_OP_REMOVE = 4
};

/* What a walker tells the framework about a request node (`hierarchy_marker`). */
enum {
    YFW_MARKER_LEAF = 1, /* selection leaf or key leaf */
    YFW_MARKER_LEAF_LIST = 2,
    YFW_MARKER_CONTAINER = 3,
    YFW_MARKER_LIST = 4,
    YFW_MARKER_CONTENT_MATCH = 6
};

/* Bits of `framework_flags`: which optional members are set. */
enum {
    YFW_FW_HAS_MARKER = 0x4,    /* hierarchy_marker is set */
    YFW_FW_HAS_NODE_TYPE = 0x8, /* node_type is set; with node_type 5 the node is an xpath error node */
    YFW_FW_HAS_VALUE_NS = 0x10  /* value_ns is set */
};

/* Bits of `node_flags`. */
enum {
    YFW_NODE_HAS_VALUE = 0x2,          /* a leaf with a value in a read: a content-match node */
    YFW_NODE_OPERATION_CHANGED = 0x10, /* the plug-in changed `operation` */
    YFW_NODE_CHILDREN_VALID = 0x40,    /* `children` and `child_count` are valid */
    YFW_NODE_IS_KEY = 0x200            /* the node is a list key */
};

/* `node_type` of an xpath error node. */
enum { YFW_NODE_TYPE_ERROR = 5 };

/* A node of a request, response or output tree. Lives for one request. */
struct tidl_yfw_datatree {
    const char *name;                   /* local name; never NULL in a tree that the framework made */
    const char *value;                  /* leaf value as text, or NULL */
    const char *ns;                     /* namespace URI of the node's module */
    struct tidl_yfw_datatree *children; /* contiguous; valid with YFW_NODE_CHILDREN_VALID */
    uint32_t child_count;
    uint32_t operation;
    uint32_t hierarchy_marker;
    uint32_t framework_flags;
    uint32_t node_type;
    uint16_t node_flags;
    uint8_t key_byte;        /* 1 on a list's key children */
    char *value_ns;          /* namespace of an identity value: a yfw_strdup copy that the tree owns */
    void *framework_private; /* for the framework's own use */
};

/* ---- the context of one request ------------------------------------------------------------------- */

/* Request kinds (`req_type`). Every other value is an edit. */
enum { YMAP_REQ_GET_CONFIG = 0, YMAP_REQ_GET = 10 };

/* Edit kinds that require a list entry to carry its key: exactly one key with a value, at least one, and
 * again exactly one. */
enum { YMAP_REQ_EDIT_ONE_KEY = 1, YMAP_REQ_EDIT_VALUED_KEY = 8, YMAP_REQ_EDIT_ONE_KEY_ALSO = 15 };

/* Content selector (`req_content`) and data kind (`data_kind`). */
enum { YFW_CONTENT_ALL = 0, YFW_CONTENT_CONFIG = 1, YFW_CONTENT_OPERATIONAL = 2 };

/* What the framework knows about the request. The `touches_...` members are bit sets of the operational
 * subtrees of the OpenConfig LLDP model that the request selects; only the bits listed here count. */
struct yfw_request_descriptor {
    uint32_t req_type;
    uint32_t req_content;
    uint32_t req_selection_empty; /* nonzero when the request has no selection parameters */
    uint8_t reserved_00c[0x4f4 - 0x00c];
    uint8_t touches_4f4; /* bits 0x0f */
    uint8_t reserved_4f5[0x520 - 0x4f5];
    uint8_t touches_520; /* bits 0x03 */
    uint8_t reserved_521[0x538 - 0x521];
    uint8_t touches_538; /* bits 0x03 */
    uint8_t reserved_539[0x540 - 0x539];
    uint8_t touches_540; /* bits 0x07 */
    uint8_t reserved_541[0x559 - 0x541];
    uint8_t touches_559[2]; /* a little-endian 16-bit word, unaligned: bits 0x3fff */
    uint8_t reserved_55b[0x560 - 0x55b];
    uint8_t touches_560; /* bits 0x03 */
    uint8_t reserved_561[0x568 - 0x561];
    uint32_t data_kind;
    uint8_t reserved_56c[0x584 - 0x56c];
    uint8_t touches_584; /* bits 0x0f */
    uint8_t reserved_585[0x588 - 0x585];
    uint8_t touches_588; /* bits 0x07 */
    uint8_t reserved_589[0x808 - 0x589];
    uint16_t touches_808; /* bit 0x8000 */
    uint8_t reserved_80a[2];
};

YFW_STATIC_ASSERT(offsetof(struct yfw_request_descriptor, req_type) == 0, "req_type is the first member");
YFW_STATIC_ASSERT(offsetof(struct yfw_request_descriptor, touches_4f4) == 0x4f4, "descriptor byte 0x4f4");
YFW_STATIC_ASSERT(offsetof(struct yfw_request_descriptor, touches_520) == 0x520, "descriptor byte 0x520");
YFW_STATIC_ASSERT(offsetof(struct yfw_request_descriptor, touches_538) == 0x538, "descriptor byte 0x538");
YFW_STATIC_ASSERT(offsetof(struct yfw_request_descriptor, touches_540) == 0x540, "descriptor byte 0x540");
YFW_STATIC_ASSERT(offsetof(struct yfw_request_descriptor, touches_559) == 0x559, "descriptor word 0x559");
YFW_STATIC_ASSERT(offsetof(struct yfw_request_descriptor, touches_560) == 0x560, "descriptor byte 0x560");
YFW_STATIC_ASSERT(offsetof(struct yfw_request_descriptor, data_kind) == 0x568, "descriptor field 0x568");
YFW_STATIC_ASSERT(offsetof(struct yfw_request_descriptor, touches_584) == 0x584, "descriptor byte 0x584");
YFW_STATIC_ASSERT(offsetof(struct yfw_request_descriptor, touches_588) == 0x588, "descriptor byte 0x588");
YFW_STATIC_ASSERT(offsetof(struct yfw_request_descriptor, touches_808) == 0x808, "descriptor word 0x808");

/* One subtree of the request: its path and its node. */
struct yfw_request_subtree {
    const char *path;
    const struct tidl_yfw_datatree *node;
};

enum { YFW_REQUEST_SUBTREES = 50 };

/* The request's output list. `current_list_node` is the slot that receives the current output list entry;
 * `depth` counts the native entries added to the list. */
struct yfw_output_list_ctx {
    struct tidl_yfw_datatree *current_list_node;
    uint8_t depth;
    void *framework_private;
};

/* Bits of `request_flags`. */
enum {
    YFW_REQ_REPLACE_DELETE_PASS = 0x40,
    YFW_REQ_REPLACE_MERGE_PASS = 0x80,
    YFW_REQ_XPATH_ERROR_NODE = 0x100
};

/* Bits of `walk_flags`. */
enum {
    YFW_WALK_WHOLE_SUBTREE = 0x1,
    YFW_WALK_SELECTION_LEAF = 0x2,
    YFW_WALK_CONTENT_MATCH_LEAF = 0x4,
    YFW_WALK_ANY_CONTENT_MATCH = 0x10000
};

/* The per-request context, shared by all callbacks of one request. */
struct yfw_req_ctx {
    struct yfw_request_descriptor *request;
    struct yfw_request_subtree subtrees[YFW_REQUEST_SUBTREES]; /* unused entries have a NULL path */
    struct yfw_output_list_ctx output_list;
    char *err_node_name; /* yfw_strdup copy or NULL: the tag that yfw_oc_error_path reports */
    uint32_t request_flags;
    uint32_t map_all;      /* 1 while a walker maps a whole subtree on its own initiative */
    void *common_data_ptr; /* allocated with malloc by the plug-in's callbacks, or NULL */
    uint32_t walk_flags;
    uint32_t list_entry_state; /* 0, 1 or 2 */
    uint32_t replace_marker;   /* 1 during both passes of a replace */
};

YFW_STATIC_ASSERT(offsetof(struct yfw_req_ctx, request) == 0, "the descriptor is the first member");

/* The debug filter consulted by yfw_debug_should_log. */
struct yfw_debug_filter {
    uint32_t level_mask; /* bit n allows level n */
};

/* The context of one request, the first argument of every callback. A plug-in writes only
 * `current_list_operation`. */
struct yfw_map_context {
    struct yfw_req_ctx *req_ctx;
    struct yfw_debug_filter dbg_filter;
    void *err_log_handle;
    void *trc_log_handle;
    void *ltrace_handle;
    uint32_t trace_enabled;
    void *framework_private;
    uint32_t current_list_operation;
};

typedef struct yfw_map_context *yfw_map_ctx;

/* ---- callbacks and registration ------------------------------------------------------------------- */

typedef terrno (*yfw_map_callback)(yfw_map_ctx, const struct tidl_yfw_datatree *, struct tidl_yfw_datatree *);

/* A container callback also receives the number of children that the walker will walk. */
typedef terrno (*yfw_map_container_callback)(yfw_map_ctx, const struct tidl_yfw_datatree *, uint32_t,
                                             struct tidl_yfw_datatree *);

typedef uint32_t (*yfw_map_disable_capability_callback)(void);

enum { YFW_REG_TEXT_SIZE = 81 };

/* The record that a registration function fills in; owned by the framework. */
struct yfw_map_registration {
    char tree_name[YFW_REG_TEXT_SIZE];
    char native_ns[YFW_REG_TEXT_SIZE];
    char oc_ns[YFW_REG_TEXT_SIZE];
    char native_top[YFW_REG_TEXT_SIZE];
    char oc_top[YFW_REG_TEXT_SIZE];
    yfw_map_callback oc_to_native;
    yfw_map_callback framework_callbacks[2]; /* left as the framework set them */
    yfw_map_callback native_to_oc;
    uint32_t flag_a;
    uint32_t flag_b;
    void *framework_slot; /* left as the framework set it */
    yfw_map_disable_capability_callback disable_capability;
};

YFW_STATIC_ASSERT(offsetof(struct yfw_map_registration, tree_name) == 0, "registration text 1");
YFW_STATIC_ASSERT(offsetof(struct yfw_map_registration, native_ns) == 81, "registration text 2");
YFW_STATIC_ASSERT(offsetof(struct yfw_map_registration, oc_ns) == 162, "registration text 3");
YFW_STATIC_ASSERT(offsetof(struct yfw_map_registration, native_top) == 243, "registration text 4");
YFW_STATIC_ASSERT(offsetof(struct yfw_map_registration, oc_top) == 324, "registration text 5");
YFW_STATIC_ASSERT(sizeof(((struct yfw_map_registration *)0)->tree_name) == 81, "registration text size");

typedef void (*yfw_map_register_function)(struct yfw_map_registration *record);

/* ---- trees and paths ------------------------------------------------------------------------------ */

/* Nonzero when the two strings are equal; a NULL string matches nothing. */
int yfw_map_do_these_match(const char *a, const char *b);

/* Pushes `node` onto the record of the current path. `kind`: 1 for a container, 2 for a list or list entry. */
void yfw_map_add_to_node_hierarchy(yfw_map_ctx ctx, const struct tidl_yfw_datatree *node, uint32_t kind);

/* Pops `node`. */
void yfw_map_remove_from_node_hierarchy(yfw_map_ctx ctx, const struct tidl_yfw_datatree *node);

/* Nonzero when the node carries a delete or remove operation. */
int yfw_map_is_request_delete(const struct tidl_yfw_datatree *node);

/* Nonzero when the request creates or merges the node. */
int yfw_map_is_request_add(yfw_map_ctx ctx, const struct tidl_yfw_datatree *node);

/* Records the error path of the current node (plus `err_node_name` when set) for the error reply. */
void yfw_oc_error_path(yfw_map_ctx ctx);

/* Adds the node at `path`, creating missing nodes on the way, and sets its value.
 * `parent`: the output tree, or an output node that the framework returned earlier.
 * `path`: absolute, or a child's name relative to `parent`. `ns`: namespace URI of the last node.
 * `value`: text, copied; NULL for none. `source`: the node whose edit operation the new node takes over,
 * or NULL. `slot`: receives the node unless NULL; may be the output list's slot.
 * `list_entry`: 1 when the path ends in a list entry. `flags`: 1 for the LLDP nodes of a native interface,
 * 32 for interface state, else 0. Returns 0, or the framework's status. */
terrno yfw_map_datatree_add_path_flagged(yfw_map_ctx ctx, struct tidl_yfw_datatree *parent, const char *path,
                                         const char *ns, const char *value,
                                         const struct tidl_yfw_datatree *source,
                                         struct tidl_yfw_datatree **slot, uint32_t list_entry, uint32_t flags);

/* Looks up `leaf` below `path` in the tree being walked, within the list entries of the current node
 * hierarchy. *value: the text, valid as long as the tree; NULL when absent (the status is still 0). */
terrno yfw_map_get_node_info(yfw_map_ctx ctx, const char *path, const char *leaf, const char **value);

/* Finds the entry of the output list at `list_path` whose key leaf `key_name` holds `key_value`, or creates
 * it; *slot receives the entry, which becomes the list's current one. */
terrno yfw_map_search_or_add_list(yfw_map_ctx ctx, struct tidl_yfw_datatree *parent,
                                  struct tidl_yfw_datatree **slot, const char *list_path, const char *key_value,
                                  const char *key_name, const char *ns);

/* The argument of yfw_map_stitch_list_to_list; zero it before use. Key values in `keyed_path` are not
 * quoted. */
struct yfw_map_stitch {
    struct tidl_yfw_datatree *parent;
    uint64_t zero;
    uint32_t kind_a; /* 1 */
    uint32_t kind_b; /* 2 */
    uint8_t reserved[300];
    char ns[250];
    char keyed_path[1000];
    char list_path[1000];
};

YFW_STATIC_ASSERT(offsetof(struct yfw_map_stitch, parent) == 0, "stitch parent");
YFW_STATIC_ASSERT(offsetof(struct yfw_map_stitch, zero) == 8, "stitch zero");
YFW_STATIC_ASSERT(offsetof(struct yfw_map_stitch, kind_a) == 16, "stitch kind a");
YFW_STATIC_ASSERT(offsetof(struct yfw_map_stitch, kind_b) == 20, "stitch kind b");
YFW_STATIC_ASSERT(offsetof(struct yfw_map_stitch, ns) == 324, "stitch namespace");
YFW_STATIC_ASSERT(offsetof(struct yfw_map_stitch, keyed_path) == 574, "stitch keyed path");
YFW_STATIC_ASSERT(offsetof(struct yfw_map_stitch, list_path) == 1574, "stitch list path");
YFW_STATIC_ASSERT(sizeof(struct yfw_map_stitch) == 2576, "stitch size");

/* Finds or creates the list entry that `record` names and makes it current. */
terrno yfw_map_stitch_list_to_list(yfw_map_ctx ctx, struct yfw_map_stitch *record);

/* Makes the entry at `list_path` the framework's current list entry. Also returns 0 when the request holds
 * no node there. */
terrno yfw_map_update_current_list_node(yfw_map_ctx ctx, const char *list_path);

/* Copies the current path list, trimmed at `path`, into the context (paths of deleted entries). */
terrno yfw_map_copy_trim_path_list_ctx(yfw_map_ctx ctx, const char *path);

/* Add a native list entry to, or drop it from, the request's output list. */
terrno yfw_add_to_output_list_ctx(yfw_map_ctx ctx, const struct tidl_yfw_datatree *node,
                                  struct tidl_yfw_datatree *output);
terrno yfw_remove_from_output_list_ctx(yfw_map_ctx ctx, const struct tidl_yfw_datatree *node,
                                       struct tidl_yfw_datatree *output);

/* Returns 0 when the value of the key `key_name` of `list_node` equals the leaf that it refers to below the
 * child `container` ("config"), or when that leaf is not in the request; else a status. */
terrno yfw_map_check_oc_leafref(yfw_map_ctx ctx, const char *list_path, const char *container,
                                const char *key_name, const struct tidl_yfw_datatree *list_node);

/* A query for yfw_map_tree_xpath_operations; zero it before use. */
struct yfw_map_xpath_query {
    uint32_t operation;      /* 4: value of one leaf */
    uint32_t operation_kind; /* 3: relative to `start` */
    char ns[250];
    char xpath[1000];
    const struct tidl_yfw_datatree *start;
    const char *value; /* set by the call; valid as long as the tree */
};

/* Reads a value elsewhere in the native response; 0 when found. */
terrno yfw_map_tree_xpath_operations(yfw_map_ctx ctx, struct yfw_map_xpath_query *query);

/* An item of the list-entry stack: the entries to walk and the callback to call with each. */
struct yfw_map_itree_item {
    struct tidl_yfw_datatree *entries; /* contiguous */
    uint32_t count;
    yfw_map_callback callback; /* or NULL */
};

terrno yfw_map_util_itree_stack_push(yfw_map_ctx ctx, struct tidl_yfw_datatree *entries, uint32_t count,
                                     yfw_map_callback callback);
terrno yfw_map_util_itree_stack_pop(yfw_map_ctx ctx);
/* Copies the top item to *item; returns a nonzero status when the stack is empty. */
terrno yfw_map_util_itree_stack_peak(yfw_map_ctx ctx, struct yfw_map_itree_item *item);
uint32_t yfw_map_util_itree_stack_size(yfw_map_ctx ctx);

/* ---- bounded strings ------------------------------------------------------------------------------ */

/* `caller` is the calling function's name. The destination is always terminated; a nonzero status means that
 * the text was cut. `size` is the destination's size in bytes, `count` the maximum number of characters to
 * copy. */
terrno yfw_strncpy_s(const char *caller, char *destination, size_t size, const char *source, size_t count);
terrno yfw_strcpy_s(const char *caller, char *destination, size_t size, const char *source);
terrno yfw_strcat_s(const char *caller, char *destination, size_t size, const char *source);
/* *result: 0 when equal, else the sign of the difference. A NULL string gives a nonzero status. */
terrno yfw_strcmp_s(const char *caller, const char *a, size_t maximum, const char *b, int *result);
/* Returns a heap copy, or NULL when out of memory. Free it with qdos_named_free; it is malloc memory, so
 * free works too. `owner` names the owner in the memory accounts. */
char *yfw_strdup(const char *text, const char *owner);
void qdos_named_free(void *memory);

/* ---- debug log and trace buffer ------------------------------------------------------------------- */

enum { YFW_LOG_ERROR = 0, YFW_LOG_TRACE = 3 };

/* Nonzero when a line of this level should be logged. */
int yfw_debug_should_log(const struct yfw_debug_filter *filter, int level);

/* Writes one line to the debug log. `slot`: one static word per call site, initially -1, for the logging
 * layer's use. `format` starts with "TRC: YFW: ctx=%p," or "ERR: YFW: ctx=%p,"; the context is the first
 * variable argument. */
void _qdos_dt_log_filter_adv(void *handle, uint64_t zero_a, uint64_t zero_b, uint64_t zero_c, uint64_t zero_d,
                             uint64_t zero_e, int32_t *slot, const char *format, ...);

/* Returns the next number of the trace buffer. */
uint32_t ret_nc_yfw_trace_index_incr(void);

#define YFW_LTRACE_WORD UINT64_C(0x10101000000)

/* Writes one complete line to the trace buffer; `word` is always YFW_LTRACE_WORD. */
void _lstrace(void *handle, uint64_t word, const char *line);

/* The text of a status; static storage. */
const char *terr_strerror(terrno status);

/* ---- system database ------------------------------------------------------------------------------ */

/* Binds *connection to `path`. `flags`: 0, or 4 for a connection used for searching. */
terrno _sysdb_bind(uint64_t *connection, const char *path, uint32_t flags);
terrno _sysdb_unbind(uint64_t connection);

/* Reads an item. *count: the number wanted on entry, the number returned on exit. *data: a 32-bit value in
 * the system database's storage, valid until the connection is unbound; NULL without data. Returns a nonzero
 * status for an absent item. */
terrno sysdb_item_get(uint64_t connection, const char *item, const void **data, uint32_t *count);

/* Finds the paths below the connection that match the regular expression `pattern`; `second_pattern` is
 * empty. Free *list with sysdb_list_free. */
terrno sysdb_find(uint64_t connection, const char *pattern, const char *second_pattern, uint32_t mode,
                  int32_t *count, void **list);
/* *path is valid as long as the list. */
terrno sysdb_list_next(void *list, const char **path);
void sysdb_list_free(void *list);

/* ---- interface manager, platform, clocks ---------------------------------------------------------- */

enum { IMC_NAME_SIZE = 64, IMC_IFENTRY_SIZE = 256 };

/* One entry of a look-up: the name in the interface manager's spelling, and where to store the entry's
 * handle and status. */
struct imc_find_request {
    char name[IMC_NAME_SIZE];
    uint32_t *handle;
    uint32_t *status;
};

/* The framework's connection to the interface manager. */
extern void *yfw_ocifmgr_im_conn;

/* Looks up `count` interfaces; *answered receives the number of entries filled in. */
terrno imc_interface_find(void *connection, uint32_t count, struct imc_find_request *request, uint32_t flags,
                          uint32_t *answered);

/* Converts an interface name from its system-database form to its display name; `size` is in bytes. */
terrno imc_display_namestring(const char *name, char *display, size_t size);

/* Converts an interface name to the interface manager's spelling; `out` holds IMC_IFENTRY_SIZE bytes. */
terrno convert_ifname_ifentry(char *out, const char *ifname);

/* The router's type; on type 7, LLDP is on even when it is not configured. */
int platform_get_router_type(void);

/* Nonzero when LLDP may run on management interfaces. */
int platform_supports_lldp_over_mgmt(void);

/* Nanoseconds since the system started. */
uint64_t fts_get_stamp_fast(void);

#ifdef __cplusplus
}
#endif

#endif

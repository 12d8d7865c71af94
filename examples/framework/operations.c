/* The operations on trees that the plug-in leaves undefined. A read needs no others; those of edits are here
 * too, because the library cannot be loaded without them. */
#include <string.h>

#include "request.h"

#define STATUS_BAD_ARGUMENT ((terrno)1)
#define STATUS_EMPTY ((terrno)2)
#define STATUS_NOT_FOUND ((terrno)3)

static struct request *request_of(yfw_map_ctx ctx) {
    return (struct request *)ctx->framework_private;
}

static struct output *output_of(struct tidl_yfw_datatree *node) {
    return node != NULL ? (struct output *)node->framework_private : NULL;
}

int yfw_map_do_these_match(const char *a, const char *b) {
    return a != NULL && b != NULL && strcmp(a, b) == 0;
}

/* ---- where the plug-in is in the tree that it walks ------------------------------------------------- */

void yfw_map_add_to_node_hierarchy(yfw_map_ctx ctx, const struct tidl_yfw_datatree *node, uint32_t kind) {
    struct request *request = request_of(ctx);
    (void)kind;
    if (request->depth < DEEPEST)
        request->standing[request->depth++] = node;
}

void yfw_map_remove_from_node_hierarchy(yfw_map_ctx ctx, const struct tidl_yfw_datatree *node) {
    struct request *request = request_of(ctx);
    uint32_t i;
    for (i = request->depth; i > 0; i--)
        if (request->standing[i - 1] == node) {
            request->depth = i - 1;
            return;
        }
}

/* Goes down along the entries in which the plug-in stands, as long as they are on the path. */
terrno yfw_map_get_node_info(yfw_map_ctx ctx, const char *path, const char *leaf, const char **value) {
    const struct request *request = request_of(ctx);
    const struct tidl_yfw_datatree *at = NULL;
    uint32_t depth = 0;
    const char *word;
    size_t length;
    *value = NULL;
    while (next_word(&path, &word, &length)) {
        const struct tidl_yfw_datatree *standing = depth < request->depth ? request->standing[depth] : NULL;
        const int along = at == NULL || (depth > 0 && at == request->standing[depth - 1]);
        if (along && standing != NULL && strlen(standing->name) == length &&
            strncmp(standing->name, word, length) == 0) {
            at = standing;
            depth++;
        } else {
            at = at == NULL ? request->walked : child_named(at, word, length);
        }
        if (at == NULL)
            return YMAP_OK;
    }
    at = at != NULL ? child_named(at, leaf, strlen(leaf)) : NULL;
    if (at != NULL)
        *value = at->value;
    return YMAP_OK;
}

terrno yfw_map_tree_xpath_operations(yfw_map_ctx ctx, struct yfw_map_xpath_query *query) {
    const struct tidl_yfw_datatree *at = query->start;
    const char *path = query->xpath;
    const char *word;
    size_t length;
    (void)ctx;
    while (at != NULL && next_word(&path, &word, &length))
        at = child_named(at, word, length);
    if (at == NULL || at == query->start || !yfw_map_do_these_match(at->ns, query->ns))
        return STATUS_NOT_FOUND;
    query->value = at->value;
    return YMAP_OK;
}

/* ---- what the plug-in adds ------------------------------------------------------------------------- */

static void note_wanted(struct request *request, const char *ns) {
    struct wanted *noted = (struct wanted *)allocate(1, sizeof *noted);
    noted->ns = copy_of(ns, strlen(ns));
    noted->next = request->wanted;
    request->wanted = noted;
}

terrno yfw_map_datatree_add_path_flagged(yfw_map_ctx ctx, struct tidl_yfw_datatree *parent, const char *path,
                                         const char *ns, const char *value,
                                         const struct tidl_yfw_datatree *source,
                                         struct tidl_yfw_datatree **slot, uint32_t list_entry, uint32_t flags) {
    struct output *to = output_of(parent);
    const char *name;
    (void)source;
    (void)flags;
    if (to == NULL || path == NULL)
        return STATUS_BAD_ARGUMENT;
    if (to == request_of(ctx)->wanted_output) {
        note_wanted(request_of(ctx), ns);
        if (slot != NULL)
            *slot = NULL;
        return YMAP_OK;
    }
    name = strrchr(path, '/') != NULL ? strrchr(path, '/') + 1 : path;
    if (name > path)
        to = reach(to, path, (size_t)(name - path - 1));
    if (value != NULL)
        to = set_value(to, name, strlen(name), value);
    else if (list_entry != 0)
        to = add_entry(to, name, strlen(name));
    else
        to = reach(to, name, strlen(name));
    if (slot != NULL)
        *slot = &to->seen;
    return YMAP_OK;
}

terrno yfw_map_search_or_add_list(yfw_map_ctx ctx, struct tidl_yfw_datatree *parent,
                                  struct tidl_yfw_datatree **slot, const char *list_path, const char *key_value,
                                  const char *key_name, const char *ns) {
    struct output *to = output_of(parent);
    (void)ctx;
    (void)ns;
    if (to == NULL || list_path == NULL || key_value == NULL || key_name == NULL)
        return STATUS_BAD_ARGUMENT;
    to = entry_with_key(to, list_path, strlen(list_path), key_name, key_value);
    if (slot != NULL)
        *slot = &to->seen;
    return YMAP_OK;
}

/* The value of a key is not quoted: it ends where the rest of the plain path goes on, and may contain brackets
 * and slashes. */
terrno yfw_map_stitch_list_to_list(yfw_map_ctx ctx, struct yfw_map_stitch *record) {
    const char *keyed = record->keyed_path;
    size_t plain = 0; /* how much of list_path has been passed */
    (void)ctx;
    if (output_of(record->parent) == NULL)
        return STATUS_BAD_ARGUMENT;
    while (*keyed != '\0') {
        const char *open = strchr(keyed, '[');
        const char *equals = open != NULL ? strchr(open, '=') : NULL;
        const char *rest;
        const char *end;
        if (equals == NULL)
            return STATUS_BAD_ARGUMENT;
        plain += (size_t)(open - keyed);
        rest = record->list_path + plain;
        for (end = strchr(equals, ']'); end != NULL; end = strchr(end + 1, ']'))
            if (*rest != '\0' ? strncmp(end + 1, rest, strlen(rest)) == 0 : strchr(end + 1, ']') == NULL)
                break;
        if (end == NULL)
            return STATUS_BAD_ARGUMENT;
        entry_with_key(output_of(record->parent), record->list_path, plain,
                       copy_of(open + 1, (size_t)(equals - open - 1)),
                       copy_of(equals + 1, (size_t)(end - equals - 1)));
        keyed = *rest != '\0' ? end + 1 : "";
    }
    return YMAP_OK;
}

terrno yfw_map_update_current_list_node(yfw_map_ctx ctx, const char *list_path) {
    (void)ctx;
    (void)list_path;
    return YMAP_OK;
}

/* An entry is listed for as long as it is walked; the one that was in hand before comes back afterwards. */
terrno yfw_add_to_output_list_ctx(yfw_map_ctx ctx, const struct tidl_yfw_datatree *node,
                                  struct tidl_yfw_datatree *output) {
    struct yfw_output_list_ctx *list = &request_of(ctx)->details.output_list;
    (void)node;
    (void)output;
    if (list->depth == DEEPEST)
        return STATUS_BAD_ARGUMENT;
    request_of(ctx)->saved[list->depth++] = output_of(list->current_list_node);
    return YMAP_OK;
}

terrno yfw_remove_from_output_list_ctx(yfw_map_ctx ctx, const struct tidl_yfw_datatree *node,
                                       struct tidl_yfw_datatree *output) {
    struct yfw_output_list_ctx *list = &request_of(ctx)->details.output_list;
    struct output *saved;
    (void)node;
    (void)output;
    if (list->depth == 0)
        return STATUS_EMPTY;
    saved = request_of(ctx)->saved[--list->depth];
    list->current_list_node = saved != NULL ? &saved->seen : NULL;
    return YMAP_OK;
}

/* ---- the stack of list entries --------------------------------------------------------------------- */

terrno yfw_map_util_itree_stack_push(yfw_map_ctx ctx, struct tidl_yfw_datatree *entries, uint32_t count,
                                     yfw_map_callback callback) {
    struct request *request = request_of(ctx);
    struct yfw_map_itree_item *item = &request->entries[request->entry_depth];
    if (request->entry_depth == DEEPEST)
        return STATUS_BAD_ARGUMENT;
    item->entries = entries;
    item->count = count;
    item->callback = callback;
    request->entry_depth++;
    return YMAP_OK;
}

terrno yfw_map_util_itree_stack_pop(yfw_map_ctx ctx) {
    if (request_of(ctx)->entry_depth == 0)
        return STATUS_EMPTY;
    request_of(ctx)->entry_depth--;
    return YMAP_OK;
}

terrno yfw_map_util_itree_stack_peak(yfw_map_ctx ctx, struct yfw_map_itree_item *item) {
    const struct request *request = request_of(ctx);
    if (request->entry_depth == 0)
        return STATUS_EMPTY;
    *item = request->entries[request->entry_depth - 1];
    return YMAP_OK;
}

uint32_t yfw_map_util_itree_stack_size(yfw_map_ctx ctx) {
    return request_of(ctx)->entry_depth;
}

/* ---- edits ----------------------------------------------------------------------------------------- */

int yfw_map_is_request_delete(const struct tidl_yfw_datatree *node) {
    return node != NULL && (node->operation == YFW_OP_DELETE || node->operation == YFW_OP_REMOVE);
}

int yfw_map_is_request_add(yfw_map_ctx ctx, const struct tidl_yfw_datatree *node) {
    const uint32_t kind = request_of(ctx)->descriptor.req_type;
    return node != NULL && kind != YMAP_REQ_GET && kind != YMAP_REQ_GET_CONFIG &&
           !yfw_map_is_request_delete(node);
}

terrno yfw_map_check_oc_leafref(yfw_map_ctx ctx, const char *list_path, const char *container,
                                const char *key_name, const struct tidl_yfw_datatree *list_node) {
    const struct tidl_yfw_datatree *key = child_named(list_node, key_name, strlen(key_name));
    const struct tidl_yfw_datatree *below = child_named(list_node, container, strlen(container));
    const struct tidl_yfw_datatree *target =
        below != NULL ? child_named(below, key_name, strlen(key_name)) : NULL;
    (void)ctx;
    (void)list_path;
    if (key == NULL || key->value == NULL || target == NULL || target->value == NULL)
        return YMAP_OK;
    return strcmp(key->value, target->value) == 0 ? YMAP_OK : STATUS_NOT_FOUND;
}

terrno yfw_map_copy_trim_path_list_ctx(yfw_map_ctx ctx, const char *path) {
    (void)ctx;
    (void)path;
    return YMAP_OK;
}

void yfw_oc_error_path(yfw_map_ctx ctx) {
    const struct request *request = request_of(ctx);
    uint32_t i;
    for (i = 0; i < request->depth; i++)
        fprintf(stderr, "/%s", request->standing[i]->name);
    fprintf(stderr, ": error\n");
}

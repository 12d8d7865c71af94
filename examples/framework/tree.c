/* Output trees, and what all trees need. */
#include "tree.h"

#include <stdlib.h>
#include <string.h>

void *allocate(size_t count, size_t size) {
    void *memory = calloc(count, size);
    if (memory == NULL)
        abort();
    return memory;
}

char *copy_of(const char *text, size_t length) {
    char *copy = (char *)allocate(length + 1, 1);
    memcpy(copy, text, length);
    return copy;
}

int next_word(const char **path, const char **word, size_t *length) {
    *path += strspn(*path, "/");
    *word = *path;
    *length = strcspn(*path, "/");
    *path += *length;
    return *length > 0;
}

static int is_named(const struct tidl_yfw_datatree *node, const char *name, size_t length) {
    return node->name != NULL && strlen(node->name) == length && strncmp(node->name, name, length) == 0;
}

const struct tidl_yfw_datatree *child_named(const struct tidl_yfw_datatree *node, const char *name,
                                            size_t length) {
    uint32_t i;
    if ((node->node_flags & YFW_NODE_CHILDREN_VALID) != 0)
        for (i = 0; i < node->child_count; i++)
            if (is_named(&node->children[i], name, length))
                return &node->children[i];
    return NULL;
}

struct output *make_output(void) {
    struct output *made = (struct output *)allocate(1, sizeof *made);
    made->seen.framework_private = made;
    return made;
}

static struct output *append(struct output *parent, const char *name, size_t length) {
    struct output *added = make_output();
    struct output **at = &parent->first;
    while (*at != NULL)
        at = &(*at)->next;
    *at = added;
    added->parent = parent;
    added->seen.name = copy_of(name, length);
    return added;
}

/* A container, or the current entry of a list. */
static struct output *current_child(struct output *parent, const char *name, size_t length) {
    struct output *at;
    for (at = parent->first; at != NULL; at = at->next)
        if (at->is_current && is_named(&at->seen, name, length))
            return at;
    at = append(parent, name, length);
    at->is_current = 1;
    return at;
}

static void make_current(struct output *entry) {
    struct output *at;
    for (at = entry->parent->first; at != NULL; at = at->next)
        if (strcmp(at->seen.name, entry->seen.name) == 0)
            at->is_current = 0;
    entry->is_current = 1;
}

/* The rest of the path, if `node` is on it; otherwise NULL. */
static const char *rest_of_path(const struct output *node, const char *path) {
    const char *word;
    size_t length;
    if (node->parent == NULL)
        return path;
    path = rest_of_path(node->parent, path);
    if (path == NULL || !next_word(&path, &word, &length) || !is_named(&node->seen, word, length))
        return NULL;
    return path;
}

/* An absolute path that does not lead past `from` starts at the root. */
struct output *reach(struct output *from, const char *path, size_t length) {
    const char *whole = copy_of(path, length);
    const char *rest = *whole == '/' ? rest_of_path(from, whole) : whole;
    const char *word;
    while (rest == NULL && from->parent != NULL)
        from = from->parent;
    rest = rest != NULL ? rest : whole;
    while (next_word(&rest, &word, &length))
        from = current_child(from, word, length);
    return from;
}

struct output *add_entry(struct output *parent, const char *name, size_t length) {
    struct output *added = append(parent, name, length);
    make_current(added);
    return added;
}

static struct output *leaf_named(struct output *parent, const char *name) {
    struct output *at;
    for (at = parent->first; at != NULL; at = at->next)
        if (strcmp(at->seen.name, name) == 0)
            return at;
    return NULL;
}

struct output *entry_with_key(struct output *from, const char *list_path, size_t length, const char *key_name,
                              const char *key_value) {
    const char *whole = copy_of(list_path, length);
    const char *name = strrchr(whole, '/') != NULL ? strrchr(whole, '/') + 1 : whole;
    struct output *parent = name > whole + 1 ? reach(from, whole, (size_t)(name - whole - 1)) : from;
    struct output *at;
    struct output *key;
    for (at = parent->first; at != NULL; at = at->next) {
        key = is_named(&at->seen, name, strlen(name)) ? leaf_named(at, key_name) : NULL;
        if (key != NULL && strcmp(key->seen.value, key_value) == 0)
            break;
    }
    if (at == NULL) {
        at = append(parent, name, strlen(name));
        set_value(at, key_name, strlen(key_name), key_value);
    }
    make_current(at);
    return at;
}

/* A framework with a schema knows what a leaf-list is; this one knows the only one. */
static int is_leaf_list(const char *name, size_t length) {
    static const char only[] = "suppress-tlv-advertisement";
    return length == sizeof only - 1 && strncmp(name, only, length) == 0;
}

struct output *set_value(struct output *parent, const char *name, size_t length, const char *value) {
    struct output *at;
    for (at = parent->first; at != NULL; at = at->next)
        if (is_named(&at->seen, name, length) &&
            (!is_leaf_list(name, length) || strcmp(at->seen.value, value) == 0))
            break;
    if (at == NULL)
        at = append(parent, name, length);
    at->seen.value = copy_of(value, strlen(value));
    return at;
}

static void print_text(const char *text, FILE *to) {
    for (; *text != '\0'; text++)
        if (*text == '&')
            fputs("&amp;", to);
        else if (*text == '<')
            fputs("&lt;", to);
        else
            putc(*text, to);
}

static int has_content(const struct output *node) {
    const struct output *at;
    for (at = node->first; at != NULL; at = at->next)
        if (has_content(at))
            return 1;
    return node->seen.value != NULL;
}

void print_output(const struct output *node, int depth, FILE *to) {
    const struct output *at;
    for (at = node->first; at != NULL; at = at->next) {
        if (!has_content(at))
            continue;
        fprintf(to, "%*s<%s>", 2 * depth, "", at->seen.name);
        if (at->seen.value != NULL) {
            print_text(at->seen.value, to);
        } else {
            putc('\n', to);
            print_output(at, depth + 1, to);
            fprintf(to, "%*s", 2 * depth, "");
        }
        fprintf(to, "</%s>\n", at->seen.name);
    }
}

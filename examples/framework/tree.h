/* Trees of the example framework: native data, which is read from a file, and output, which the plug-in builds.
 *
 * Both are made of nodes whose first member is what the plug-in sees. Nothing is freed before the process ends,
 * except what the contract says is the plug-in's. */
#ifndef EXAMPLE_TREE_H
#define EXAMPLE_TREE_H

#include <stdio.h>

#include <yfw_map.h>

/* A node of an output tree. */
struct output {
    struct tidl_yfw_datatree seen; /* its framework_private is this node */
    struct output *parent;
    struct output *first;
    struct output *next;
    int is_current; /* of the entries of a list, the one to which adds below the list go */
};

/* Zeroed memory, or the end of the process. */
void *allocate(size_t count, size_t size);

/* A copy of the first `length` characters. */
char *copy_of(const char *text, size_t length);

/* Takes the next word of a path; 0 at its end. *path is moved on, *word is not terminated. */
int next_word(const char **path, const char **word, size_t *length);

/* NULL when `node` has no such child. */
const struct tidl_yfw_datatree *child_named(const struct tidl_yfw_datatree *node, const char *name,
                                            size_t length);

/* Reads XML with default namespaces only. Returns a node whose children are the file's top elements; NULL when
 * the file cannot be read or is no such XML. */
struct tidl_yfw_datatree *read_native_data(const char *file);

/* An empty output tree. */
struct output *make_output(void);

/* Finds or creates the container, or a list's current entry, at `path`: absolute, or a child's name. */
struct output *reach(struct output *from, const char *path, size_t length);

/* Creates an entry of the list `name` below `parent`, and makes it the current one. */
struct output *add_entry(struct output *parent, const char *name, size_t length);

/* The entry with this key, which becomes the current one; a new one if there is none. */
struct output *entry_with_key(struct output *from, const char *list_path, size_t length, const char *key_name,
                              const char *key_value);

/* Sets a leaf, or adds a value to a leaf-list. */
struct output *set_value(struct output *parent, const char *name, size_t length, const char *value);

/* Prints what is below `node`, as XML. */
void print_output(const struct output *node, int depth, FILE *to);

#endif

/* Reads native data: just as much XML as the recorded devices of the package yfw need. */
#define _GNU_SOURCE 1 /* open_memstream */
#include <ctype.h>
#include <stdlib.h>
#include <string.h>

#include "tree.h"

struct input {
    const char *at;
    int failed;
};

static struct tidl_yfw_datatree read_element(struct input *in, const char *outer_ns);

static int starts(const struct input *in, const char *text) {
    return strncmp(in->at, text, strlen(text)) == 0;
}

/* Moves on to the end of `text`. */
static void skip_past(struct input *in, const char *text) {
    const char *found = strstr(in->at, text);
    in->failed = in->failed || found == NULL;
    in->at = found != NULL ? found + strlen(text) : in->at + strlen(in->at);
}

static void skip_space_and_comments(struct input *in) {
    for (;;) {
        while (isspace((unsigned char)*in->at))
            in->at++;
        if (starts(in, "<!--"))
            skip_past(in, "-->");
        else if (starts(in, "<?"))
            skip_past(in, "?>");
        else
            return;
    }
}

static char unescaped(struct input *in) {
    static const char *const names[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
    static const char characters[] = "&<>\"'";
    size_t i;
    for (i = 0; i < sizeof names / sizeof *names; i++)
        if (starts(in, names[i])) {
            in->at += strlen(names[i]);
            return characters[i];
        }
    in->failed = 1;
    return *in->at++;
}

static char *read_text(struct input *in) {
    char *text = copy_of(in->at, strcspn(in->at, "<")); /* unescaped, it only gets shorter */
    char *to = text;
    while (*in->at != '\0' && *in->at != '<')
        *to++ = *in->at == '&' ? unescaped(in) : *in->at++;
    *to = '\0';
    return text;
}

/* Returns the namespace: the element's own, or else that around it. */
static const char *read_attributes(struct input *in, const char *ns) {
    static const char declaration[] = "xmlns=\"";
    while (*in->at != '\0' && *in->at != '>' && !starts(in, "/>")) {
        if (starts(in, declaration)) {
            in->at += sizeof declaration - 1;
            ns = copy_of(in->at, strcspn(in->at, "\""));
            skip_past(in, "\"");
        } else {
            in->at++;
        }
    }
    return ns;
}

static void append(struct tidl_yfw_datatree *parent, struct tidl_yfw_datatree child) {
    struct tidl_yfw_datatree *grown = (struct tidl_yfw_datatree *)realloc(
        parent->children, (parent->child_count + 1) * sizeof *parent->children);
    if (grown == NULL)
        abort();
    parent->children = grown;
    parent->children[parent->child_count++] = child;
    parent->node_flags |= YFW_NODE_CHILDREN_VALID;
}

static void read_content(struct input *in, struct tidl_yfw_datatree *node) {
    char *text = read_text(in);
    while (!in->failed && *in->at != '\0' && !starts(in, "</")) {
        append(node, read_element(in, node->ns));
        skip_space_and_comments(in);
    }
    if (node->child_count == 0)
        node->value = text;
    skip_past(in, ">");
}

static struct tidl_yfw_datatree read_element(struct input *in, const char *outer_ns) {
    struct tidl_yfw_datatree node;
    size_t length;
    memset(&node, 0, sizeof node);
    skip_space_and_comments(in);
    in->failed = in->failed || *in->at != '<';
    if (in->failed)
        return node;
    in->at++;
    length = strcspn(in->at, " \t\r\n/>");
    node.name = copy_of(in->at, length);
    in->at += length;
    node.ns = read_attributes(in, outer_ns);
    if (starts(in, "/>")) {
        skip_past(in, "/>");
    } else {
        skip_past(in, ">");
        read_content(in, &node);
    }
    return node;
}

static char *whole_file(const char *name) {
    FILE *file = fopen(name, "rb");
    char *text = NULL;
    size_t length = 0;
    int character;
    FILE *copy;
    if (file == NULL)
        return NULL;
    copy = open_memstream(&text, &length);
    if (copy == NULL)
        abort();
    while ((character = getc(file)) != EOF)
        putc(character, copy);
    fclose(file);
    fclose(copy);
    return text;
}

struct tidl_yfw_datatree *read_native_data(const char *file) {
    struct tidl_yfw_datatree *all = (struct tidl_yfw_datatree *)allocate(1, sizeof *all);
    struct input in;
    in.at = whole_file(file);
    in.failed = in.at == NULL;
    if (in.failed)
        return NULL;
    skip_space_and_comments(&in);
    while (!in.failed && *in.at != '\0') {
        append(all, read_element(&in, NULL));
        skip_space_and_comments(&in);
    }
    return in.failed ? NULL : all;
}

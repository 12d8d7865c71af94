/* What the example framework keeps of one request. */
#ifndef EXAMPLE_REQUEST_H
#define EXAMPLE_REQUEST_H

#include "tree.h"

enum { DEEPEST = 64 };

/* The module of a native path that the plug-in wants to read. */
struct wanted {
    const char *ns;
    struct wanted *next;
};

struct request {
    struct yfw_map_context context; /* its framework_private is this request */
    struct yfw_req_ctx details;
    struct yfw_request_descriptor descriptor;
    const struct tidl_yfw_datatree *walked;
    const struct tidl_yfw_datatree *standing[DEEPEST]; /* the current path, outermost first */
    uint32_t depth;
    struct yfw_map_itree_item entries[DEEPEST];
    uint32_t entry_depth;
    struct output *saved[DEEPEST]; /* entries in hand when others were added to the output list */
    struct output *wanted_output;  /* the output tree of the request's walk */
    struct wanted *wanted;
};

#endif

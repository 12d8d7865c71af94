/* A framework for liboclldp.so, as small as it can be: reads a device's native data from files, has the plug-in
 * translate all state in it to OpenConfig, and prints that.
 *
 *   cc -rdynamic $(pkg-config --cflags yfw-plugin) -o framework *.c -ldl
 *   ./framework $(pkg-config --variable=plugindir yfw-plugin)/liboclldp.so FILE ...
 *
 * -rdynamic, because the library calls functions of the program. */
#include <dlfcn.h>
#include <stdlib.h>
#include <string.h>

#include "request.h"

enum { TREES = 3 };

/* Terminates the process with a message when the library lacks the function. */
static yfw_map_register_function registration(void *library, const char *name) {
    yfw_map_register_function function = NULL;
    void *found = dlsym(library, name);
    if (found == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        exit(1);
    }
    memcpy(&function, &found, sizeof function); /* ISO C has no conversion from objects to functions */
    return function;
}

static void load(const char *file, struct yfw_map_registration trees[TREES]) {
    static const char *const names[TREES] = {"yfw_map_reg_oclldp_cfg", "yfw_map_reg_oclldp_oper",
                                             "yfw_map_reg_oclldp_ifmgr"};
    void *library = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    int i;
    if (library == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        exit(1);
    }
    memset(trees, 0, TREES * sizeof *trees);
    for (i = 0; i < TREES; i++)
        registration(library, names[i])(&trees[i]);
}

/* A read of all state. */
static void begin(struct request *request) {
    memset(request, 0, sizeof *request);
    request->context.req_ctx = &request->details;
    request->context.dbg_filter.level_mask = 0; /* 1u << YFW_LOG_ERROR shows the errors that the plug-in logs */
    request->context.framework_private = request;
    request->details.request = &request->descriptor;
    request->descriptor.req_type = YMAP_REQ_GET;
    request->descriptor.req_content = YFW_CONTENT_OPERATIONAL;
    request->descriptor.data_kind = YFW_CONTENT_OPERATIONAL;
    request->descriptor.touches_588 = 1;
}

/* What the plug-in leaves in the context. */
static void end(struct request *request) {
    free(request->details.common_data_ptr);
    qdos_named_free(request->details.err_node_name);
}

static void check(terrno status, const char *what) {
    if (status == YMAP_OK || status == YMAP_STS_NO_MAPPING)
        return;
    fprintf(stderr, "%s: status 0x%08x\n", what, (unsigned)status);
    exit(1);
}

/* Asks the plug-in which native modules a read of the whole OpenConfig tree needs. All trees have the same
 * function. */
static void ask(struct request *request, const struct yfw_map_registration *tree) {
    struct tidl_yfw_datatree top;
    memset(&top, 0, sizeof top);
    top.name = tree->oc_top;
    top.ns = tree->oc_ns;
    request->walked = &top;
    request->wanted_output = make_output();
    check(tree->oc_to_native(&request->context, &top, &request->wanted_output->seen), "the request");
}

static int is_wanted(const struct request *request, const char *ns) {
    const struct wanted *at;
    for (at = request->wanted; at != NULL; at = at->next)
        if (strcmp(at->ns, ns) == 0)
            return 1;
    return 0;
}

/* The plug-in sums the global counters up over the children of /lldp/nodes, which it looks for in the context.
 */
static void offer_nodes(struct request *request, const struct tidl_yfw_datatree *native) {
    const struct tidl_yfw_datatree *nodes = child_named(native, "nodes", strlen("nodes"));
    memset(request->details.subtrees, 0, sizeof request->details.subtrees);
    if (strcmp(native->name, "lldp") == 0 && nodes != NULL) {
        request->details.subtrees[0].path = "/lldp/nodes";
        request->details.subtrees[0].node = nodes;
    }
}

static void translate(struct request *request, const struct yfw_map_registration trees[TREES],
                      const struct tidl_yfw_datatree *native, struct output *answer) {
    int i;
    for (i = 0; i < TREES; i++) {
        const struct yfw_map_registration *tree = &trees[i];
        if (native->ns == NULL || strcmp(tree->native_ns, native->ns) != 0 ||
            strcmp(tree->native_top, native->name) != 0 || !is_wanted(request, native->ns))
            continue;
        request->walked = native;
        request->depth = 0;
        offer_nodes(request, native);
        check(tree->native_to_oc(&request->context, native, &answer->seen), tree->tree_name);
    }
}

int main(int argc, char **argv) {
    struct yfw_map_registration trees[TREES];
    struct request request;
    struct output *answer = make_output();
    int i;
    uint32_t top;
    if (argc < 3) {
        fprintf(stderr, "usage: %s LIBRARY FILE ...\n", argv[0]);
        return 2;
    }
    load(argv[1], trees);
    begin(&request);
    ask(&request, &trees[0]);
    for (i = 2; i < argc; i++) {
        const struct tidl_yfw_datatree *data = read_native_data(argv[i]);
        if (data == NULL) {
            fprintf(stderr, "%s: cannot be read\n", argv[i]);
            return 2;
        }
        for (top = 0; top < data->child_count; top++)
            translate(&request, trees, &data->children[top], answer);
    }
    print_output(answer, 0, stdout);
    end(&request);
    return 0;
}

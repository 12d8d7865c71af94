/* A third mapping for the shipped ones: the hello timer of a device that has none configured. It is built for the tests and
 * knows nothing but the contract. */
#include <string.h>

#include "yfw_map.h"
#include "ymap_status.h"

static const char *const openconfig_ns = "http://openconfig.net/yang/lldp";
static const char *const native_ns = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg";

static int is_read(yfw_map_ctx ctx) {
    return ctx->req_ctx != NULL && ctx->req_ctx->request != NULL && ctx->req_ctx->request->req_type == YMAP_REQ_GET &&
           ctx->req_ctx->request->req_content != YFW_CONTENT_CONFIG;
}

static terrno ask(yfw_map_ctx ctx, const struct tidl_yfw_datatree *request, struct tidl_yfw_datatree *paths) {
    (void)request;
    if (!is_read(ctx))
        return YMAP_OK;
    return yfw_map_datatree_add_path_flagged(ctx, paths, "/lldp/timer", native_ns, NULL, NULL, NULL, 0, 0);
}

static terrno answer(yfw_map_ctx ctx, const struct tidl_yfw_datatree *response, struct tidl_yfw_datatree *answer) {
    for (uint32_t i = 0; i < response->child_count; i++)
        if (strcmp(response->children[i].name, "timer") == 0)
            return YMAP_OK;
    return yfw_map_datatree_add_path_flagged(ctx, answer, "/lldp/state/hello-timer", openconfig_ns, "30", NULL, NULL, 0,
                                             0);
}

static void copy(char *to, const char *text) {
    strncpy(to, text, YFW_REG_TEXT_SIZE - 1);
}

void register_usual_timer(struct yfw_map_registration *record);

void register_usual_timer(struct yfw_map_registration *record) {
    copy(record->tree_name, "usual timer");
    copy(record->native_ns, native_ns);
    copy(record->native_top, "lldp");
    copy(record->oc_ns, openconfig_ns);
    copy(record->oc_top, "lldp");
    record->oc_to_native = ask;
    record->native_to_oc = answer;
}

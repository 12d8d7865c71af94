/* A mapping of one leaf: /beacon/state/color is the native /lamp/shade. It also knows what a bulb is, but does not
 * ask for it. */
#include <string.h>

#include "yfw_map.h"

static const char *const beacon_ns = "urn:test:openconfig-beacon";
static const char *const lamp_ns = "urn:test:lamp-oper";

static terrno beacon_to_lamp(yfw_map_ctx ctx, const struct tidl_yfw_datatree *request,
                             struct tidl_yfw_datatree *paths) {
    (void)request;
    return yfw_map_datatree_add_path_flagged(ctx, paths, "/lamp/shade", lamp_ns, NULL, NULL, NULL, 0, 0);
}

static terrno write(yfw_map_ctx ctx, struct tidl_yfw_datatree *answer, const char *path, const char *value) {
    return yfw_map_datatree_add_path_flagged(ctx, answer, path, beacon_ns, value, NULL, NULL, 0, 0);
}

static terrno lamp_to_beacon(yfw_map_ctx ctx, const struct tidl_yfw_datatree *response,
                             struct tidl_yfw_datatree *answer) {
    terrno status = 0;
    for (uint32_t i = 0; i < response->child_count && status == 0; i++) {
        const struct tidl_yfw_datatree *leaf = &response->children[i];
        if (strcmp(leaf->name, "shade") == 0)
            status = write(ctx, answer, "/beacon/state/color", leaf->value);
        else if (strcmp(leaf->name, "bulb") == 0)
            status = write(ctx, answer, "/beacon/state/power", "as the beacon sees it");
    }
    return status;
}

static void copy(char *to, const char *text) {
    strncpy(to, text, YFW_REG_TEXT_SIZE - 1);
}

void register_beacon(struct yfw_map_registration *record);

void register_beacon(struct yfw_map_registration *record) {
    copy(record->tree_name, "beacon");
    copy(record->native_ns, lamp_ns);
    copy(record->native_top, "lamp");
    copy(record->oc_ns, beacon_ns);
    copy(record->oc_top, "beacon");
    record->oc_to_native = beacon_to_lamp;
    record->native_to_oc = lamp_to_beacon;
}

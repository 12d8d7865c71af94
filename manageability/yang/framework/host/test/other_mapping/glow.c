/* A mapping beside the beacon's: /beacon/state/power is the native /lamp/bulb, or "none". It has an opinion on the color
 * too. An edit becomes an edit of the bulb. */
#include <string.h>

#include "yfw_map.h"

static const char *const beacon_ns = "urn:test:openconfig-beacon";
static const char *const lamp_ns = "urn:test:lamp-oper";

/* Named as a walker of the node, so that an explanation shows it. */
terrno beacon_to_glow_lvla_beacon(yfw_map_ctx ctx, const struct tidl_yfw_datatree *request,
                                  struct tidl_yfw_datatree *paths);

static void trace(yfw_map_ctx ctx, const char *line) {
    if (ctx->trace_enabled != 0)
        _lstrace(ctx->ltrace_handle, YFW_LTRACE_WORD, line);
}

terrno beacon_to_glow_lvla_beacon(yfw_map_ctx ctx, const struct tidl_yfw_datatree *request,
                                  struct tidl_yfw_datatree *paths) {
    (void)request;
    trace(ctx, "#1: TRC: beacon_to_glow_lvla_beacon:1 ctx=0x0,Start");
    trace(ctx, "#2: TRC: bulb:2 ctx=0x0,Start");
    const terrno status =
        yfw_map_datatree_add_path_flagged(ctx, paths, "/lamp/bulb", lamp_ns, NULL, NULL, NULL, 0, 0);
    trace(ctx, "#3: TRC: bulb:3 ctx=0x0,End");
    trace(ctx, "#4: TRC: beacon_to_glow_lvla_beacon:4 ctx=0x0,End");
    return status;
}

static terrno lamp_to_glow(yfw_map_ctx ctx, const struct tidl_yfw_datatree *response,
                           struct tidl_yfw_datatree *answer) {
    const char *power = "none";
    for (uint32_t i = 0; i < response->child_count; i++)
        if (strcmp(response->children[i].name, "bulb") == 0)
            power = response->children[i].value;
    if (strcmp(power, "broken") == 0)
        return YMAP_ERR_MAP_FAILED;
    yfw_map_datatree_add_path_flagged(ctx, answer, "/beacon/state/color", beacon_ns, "of the glow", NULL, NULL, 0, 0);
    return yfw_map_datatree_add_path_flagged(ctx, answer, "/beacon/state/power", beacon_ns, power, NULL, NULL, 0, 0);
}

static void copy(char *to, const char *text) {
    strncpy(to, text, YFW_REG_TEXT_SIZE - 1);
}

void register_glow(struct yfw_map_registration *record);

void register_glow(struct yfw_map_registration *record) {
    copy(record->tree_name, "glow");
    copy(record->native_ns, lamp_ns);
    copy(record->native_top, "lamp");
    copy(record->oc_ns, beacon_ns);
    copy(record->oc_top, "beacon");
    record->oc_to_native = beacon_to_glow_lvla_beacon;
    record->native_to_oc = lamp_to_glow;
}

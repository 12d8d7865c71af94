/* The module state and helper functions that the OpenConfig LLDP mapping exports besides its callbacks.
 * Nothing here is locked: the framework calls the plug-in from one thread at a time. Compiles as C11 and as
 * C++20. */
#ifndef OCLLDP_PLUGIN_H
#define OCLLDP_PLUGIN_H

#include "oclldp_callbacks.h"

#ifdef __cplusplus
extern "C" {
#endif

enum {
    OCLLDP_INTERFACE_NAME_SIZE = 128,
    OCLLDP_COUNTERS = 8,
    OCLLDP_CAPABILITIES = 8,
    OCLLDP_STR_SLOTS = 64,
    OCLLDP_STR_SLOT_SIZE = 256,
    OCLLDP_CAPABILITY_TEXT_SIZE = 100,
    OCLLDP_CHASSIS_TEXT_SIZE = 50
};

/* ---- module state; it outlives requests ----------------------------------------------------------- */

/* The connection bound to "/cfg/gl/lldp/"; 0 when unbound. */
extern YMAP_EXPORT uint64_t oc_lldp_sysdb_conn;
/* The interface that a keyed get names, and 1 while a get is keyed by interface. */
extern YMAP_EXPORT char oclldp_gl_int_name[OCLLDP_INTERFACE_NAME_SIZE];
extern YMAP_EXPORT int32_t oclldp_get_with_int_key;
/* 1 while a get is keyed by neighbor id, and that id (heap text or NULL). */
extern YMAP_EXPORT int32_t is_get_with_key;
extern YMAP_EXPORT char *gl_neigh_dev_id;
/* 1 while the delete of an interface entry is being mapped. */
extern YMAP_EXPORT int32_t delete_interface;
/* 1 once the current neighbor entry is in the output list. */
extern YMAP_EXPORT int32_t oclldp_is_neigh_list_mapped;
/* Running sums of the global counters, the number of nodes in each sum, and the number of nodes in the
 * response. */
extern YMAP_EXPORT uint32_t gl_stats[OCLLDP_COUNTERS];
extern YMAP_EXPORT uint32_t stat_count[OCLLDP_COUNTERS];
extern YMAP_EXPORT int32_t gl_subtree_count;
/* Capability letters by bit number (IEEE 802.1AB clause 8.5.8). */
extern YMAP_EXPORT int32_t num_lldp_caps;
extern YMAP_EXPORT const char *lldp_cap_codes[OCLLDP_CAPABILITIES];
/* The ring of conversion results, and the index of the next slot. */
extern YMAP_EXPORT char oc_lldp_str_buf[OCLLDP_STR_SLOTS * OCLLDP_STR_SLOT_SIZE];
extern YMAP_EXPORT int32_t oc_lldp_str_buf_index;

/* ---- registration --------------------------------------------------------------------------------- */

/* Each fills the framework's record of one mapping tree. */
YMAP_EXPORT void yfw_map_reg_oclldp_cfg(struct yfw_map_registration *record);
YMAP_EXPORT void yfw_map_reg_oclldp_oper(struct yfw_map_registration *record);
YMAP_EXPORT void yfw_map_reg_oclldp_ifmgr(struct yfw_map_registration *record);
/* Returns 1. */
YMAP_EXPORT uint32_t yfw_map_lldp_disable_cabability_cb(void);

/* ---- system database ------------------------------------------------------------------------------ */

/* Binds oc_lldp_sysdb_conn to "/cfg/gl/lldp/"; YMAP_ERR_SYSDB_UNAVAILABLE without the library. */
YMAP_EXPORT terrno ymap_bind_lldp_gl_sysdb(void);
/* Unbinds and clears oc_lldp_sysdb_conn, if set. */
YMAP_EXPORT void ymap_free_lldp_gl_sysdb_bind(void);
/* 0 when LLDP is globally on or the connection is already bound, 1 when it is off, else a status. */
YMAP_EXPORT terrno ymap_check_global_lldp_status(void);
/* 1 when LLDP is on or the request turns it on, else 0. */
YMAP_EXPORT uint32_t ymap_get_ocllp_lldp_enable(yfw_map_ctx ctx);

/* ---- conversions ---------------------------------------------------------------------------------- */

/* Hands out the next slot of the ring. It stays valid for the next 63 requests and is never freed. */
YMAP_EXPORT terrno oc_lldp_string_buffer_get(char **slot);
/* Converts a native enumeration text to OpenConfig spelling ("mac-address" to "MAC_ADDRESS"). Returns a ring
 * slot, or NULL on failure. */
YMAP_EXPORT char *qd2oc_lldp_str(yfw_map_ctx ctx, const struct tidl_yfw_datatree *node,
                                 struct tidl_yfw_datatree *out);
/* The reverse; also returns NULL for a text that is not made of capitals and underscores. */
YMAP_EXPORT char *oc2qd_lldp_str(yfw_map_ctx ctx, const struct tidl_yfw_datatree *node,
                                 struct tidl_yfw_datatree *out);
/* The time `seconds` ago (0: the start-up time) as RFC 3339 text in the local time zone. Returns a ring
 * slot, or NULL on failure. */
YMAP_EXPORT char *oclldp_convert_seconds_to_timestamp(uint32_t seconds);

/* Writes the identity name of a chassis id subtype (IEEE 802.1AB clause 8.5.2.2) to `name`, which holds
 * OCLLDP_CHASSIS_TEXT_SIZE bytes. */
YMAP_EXPORT terrno ymap_chassis_id_subtype_mapping_util(yfw_map_ctx ctx, const struct tidl_yfw_datatree *leaf,
                                                        char *name);
/* Appends the identity name of bit `index` to `name` (OCLLDP_CAPABILITY_TEXT_SIZE bytes) if the bit is set
 * in `capabilities`. */
YMAP_EXPORT terrno oclldp_get_ne_cap_name(yfw_map_ctx ctx, uint32_t capabilities, char *name, int32_t index);
/* Adds one node's counter to the global running sum and writes the sum to the OpenConfig `path`. */
YMAP_EXPORT terrno ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util(yfw_map_ctx ctx,
                                                                        const struct tidl_yfw_datatree *in,
                                                                        struct tidl_yfw_datatree *out,
                                                                        const char *path, int32_t index);
/* 1 when the interface manager knows the interface or does not answer, else 0. */
YMAP_EXPORT int yfw_oclldp_util_is_ifhandle_exist(char *ifname, yfw_map_ctx ctx);

#ifdef __cplusplus
}
#endif

#endif

/* The platform's part of what the plug-in leaves undefined: strings, logs, clocks, interfaces. There is no
 * system database: the plug-in does without it where /pkg/lib/libsysdb.so cannot be read. */
#define _GNU_SOURCE 1 /* strdup, strnlen, CLOCK_BOOTTIME */
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include <yfw_map.h>

#define STATUS_CUT ((terrno)1)
#define STATUS_BAD_ARGUMENT ((terrno)2)

/* ---- bounded strings ------------------------------------------------------------------------------- */

terrno yfw_strncpy_s(const char *caller, char *destination, size_t size, const char *source, size_t count) {
    const size_t room = count < size ? count : size - 1;
    size_t length;
    (void)caller;
    if (destination == NULL || size == 0 || source == NULL)
        return STATUS_BAD_ARGUMENT;
    length = strnlen(source, room + 1);
    memmove(destination, source, length < room ? length : room);
    destination[length < room ? length : room] = '\0';
    return length > room ? STATUS_CUT : YMAP_OK;
}

terrno yfw_strcpy_s(const char *caller, char *destination, size_t size, const char *source) {
    return yfw_strncpy_s(caller, destination, size, source, SIZE_MAX);
}

terrno yfw_strcat_s(const char *caller, char *destination, size_t size, const char *source) {
    const size_t used = destination != NULL ? strnlen(destination, size) : size;
    return used < size ? yfw_strcpy_s(caller, destination + used, size - used, source) : STATUS_BAD_ARGUMENT;
}

terrno yfw_strcmp_s(const char *caller, const char *a, size_t maximum, const char *b, int *result) {
    (void)caller;
    *result = 1;
    if (a == NULL || b == NULL)
        return STATUS_BAD_ARGUMENT;
    *result = strncmp(a, b, maximum);
    *result = (*result > 0) - (*result < 0);
    return YMAP_OK;
}

char *yfw_strdup(const char *text, const char *owner) {
    (void)owner;
    return text != NULL ? strdup(text) : NULL;
}

void qdos_named_free(void *memory) {
    free(memory);
}

/* ---- logs ------------------------------------------------------------------------------------------ */

int yfw_debug_should_log(const struct yfw_debug_filter *filter, int level) {
    return (filter->level_mask & (1u << level)) != 0;
}

void _qdos_dt_log_filter_adv(void *handle, uint64_t zero_a, uint64_t zero_b, uint64_t zero_c, uint64_t zero_d,
                             uint64_t zero_e, int32_t *slot, const char *format, ...) {
    va_list arguments;
    (void)handle, (void)zero_a, (void)zero_b, (void)zero_c, (void)zero_d, (void)zero_e, (void)slot;
    va_start(arguments, format);
    vfprintf(stderr, format, arguments);
    va_end(arguments);
}

uint32_t ret_nc_yfw_trace_index_incr(void) {
    static uint32_t lines;
    return lines++;
}

void _lstrace(void *handle, uint64_t word, const char *line) {
    (void)handle, (void)word;
    fprintf(stderr, "%s\n", line);
}

const char *terr_strerror(terrno status) {
    return status == YMAP_OK ? "success" : "failure";
}

/* ---- system database: absent ----------------------------------------------------------------------- */

terrno _sysdb_bind(uint64_t *connection, const char *path, uint32_t flags) {
    (void)path, (void)flags;
    *connection = 0;
    return YMAP_ERR_SYSDB_UNAVAILABLE;
}

terrno _sysdb_unbind(uint64_t connection) {
    (void)connection;
    return YMAP_ERR_SYSDB_UNAVAILABLE;
}

terrno sysdb_item_get(uint64_t connection, const char *item, const void **data, uint32_t *count) {
    (void)connection, (void)item;
    *data = NULL;
    *count = 0;
    return YMAP_ERR_SYSDB_UNAVAILABLE;
}

terrno sysdb_find(uint64_t connection, const char *pattern, const char *second_pattern, uint32_t mode,
                  int32_t *count, void **list) {
    (void)connection, (void)pattern, (void)second_pattern, (void)mode;
    *count = 0;
    *list = NULL;
    return YMAP_ERR_SYSDB_UNAVAILABLE;
}

terrno sysdb_list_next(void *list, const char **path) {
    (void)list;
    *path = NULL;
    return YMAP_ERR_SYSDB_UNAVAILABLE;
}

void sysdb_list_free(void *list) {
    (void)list;
}

/* ---- interfaces and clocks ------------------------------------------------------------------------- */

void *yfw_ocifmgr_im_conn = NULL;

/* Whether an interface exists is asked by edits only. */
terrno imc_interface_find(void *connection, uint32_t count, struct imc_find_request *request, uint32_t flags,
                          uint32_t *answered) {
    uint32_t i;
    (void)connection, (void)flags;
    for (i = 0; i < count; i++)
        *request[i].status = IMC_STATUS_NO_SUCH_INTERFACE;
    *answered = count;
    return YMAP_OK;
}

terrno imc_display_namestring(const char *name, char *display, size_t size) {
    return yfw_strcpy_s(__func__, display, size, name);
}

terrno convert_ifname_ifentry(char *out, const char *ifname) {
    return yfw_strcpy_s(__func__, out, IMC_IFENTRY_SIZE, ifname);
}

int platform_get_router_type(void) {
    return 0;
}

int platform_supports_lldp_over_mgmt(void) {
    return 1;
}

uint64_t fts_get_stamp_fast(void) {
    struct timespec now = {0, 0};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return (uint64_t)now.tv_sec * UINT64_C(1000000000) + (uint64_t)now.tv_nsec;
}

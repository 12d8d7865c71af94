/* Status values of the OpenConfig LLDP mapping. A terrno of 0 is success; every other value travels up
 * to the framework unchanged. Compiles as C11 and as C++20. */
#ifndef YMAP_STATUS_H
#define YMAP_STATUS_H

#include <stdint.h>

/* The platform's 32-bit status; 0 is success. */
typedef uint32_t terrno;

#define YMAP_OK ((terrno)0)
/* A callback received a NULL input or output node, or a key leaf of the wrong kind. */
#define YMAP_ERR_INVALID_ARGS ((terrno)0xaaf2a000u)
/* The tree could not be mapped. */
#define YMAP_ERR_MAP_FAILED ((terrno)0xaaf29e00u)
/* The callback handled the whole subtree itself, or a native list entry is to be skipped. The calling walker
 * turns it into YMAP_OK. */
#define YMAP_STS_SUBTREE_DONE ((terrno)0xaaf2f600u)
/* An edit names a child of the OpenConfig LLDP namespace that the walker does not handle. */
#define YMAP_ERR_UNSUPPORTED_TAG ((terrno)0xaaf2ee00u)
/* A parse-augments hook was called for a node that the request creates. */
#define YMAP_ERR_UNSUPPORTED_AUGMENT ((terrno)0xaaf2f800u)
/* The mapping does not support the leaf's value. */
#define YMAP_ERR_INVALID_VALUE ((terrno)0xaaf2fe00u)
/* Per-request scratch memory could not be allocated. */
#define YMAP_ERR_NO_MEMORY ((terrno)0xaaf2a400u)
/* A list entry has no usable key. */
#define YMAP_ERR_EMPTY_LIST_KEY ((terrno)0xaaf2f000u)
/* A list key leaf carries a delete operation. */
#define YMAP_ERR_KEY_DELETE ((terrno)0xaaf2f200u)
/* The system database library is not present. */
#define YMAP_ERR_SYSDB_UNAVAILABLE ((terrno)0x8081c200u)
/* Returned by the do-nothing OpenConfig leaf callback: nothing is mapped for this leaf. Not a failure. */
#define YMAP_STS_NO_MAPPING ((terrno)55u)

/* The interface manager's per-entry status for an interface that it does not know. */
#define IMC_STATUS_NO_SUCH_INTERFACE ((terrno)0x409a0600u)

#endif

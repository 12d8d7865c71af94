// Writes below a neighbor's OpenConfig entry, which exists only once it has been stitched.
#ifndef OCLLDP_NEIGHBOR_COPY_H
#define OCLLDP_NEIGHBOR_COPY_H

#include "oc_copy.h"

namespace oclldp {

inline bool is_stitched() {
    return oclldp_is_neigh_list_mapped == 1;
}

// Copies a native leaf of the neighbor; adds nothing for a neighbor without an entry.
inline terrno copy_if_stitched(frame &f, const node *in, node *out, const char *path) {
    return is_stitched() ? copy(f, in, out, path) : YMAP_OK;
}

} // namespace oclldp

#endif

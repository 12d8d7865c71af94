// Reads an lldpd's state through its library into plain structures.
#ifndef YFW_SOURCES_LLDPD_READER_H
#define YFW_SOURCES_LLDPD_READER_H

#include <functional>
#include <string>

#include "sources/lldpd/connection.h"
#include "sources/lldpd/lldpd_state.h"

namespace yfw::sources::lldpd {

// Everything that lldpd knows at this moment. Omits a port that vanishes meanwhile. Throws Error.
State read_state(const Connection &connection);

DaemonSettings read_settings(const Connection &connection);

// Calls `visit` with the name and the atom of each local port, except for ports whose name no YANG string can
// hold.
void for_each_port(const Connection &connection,
                   const std::function<void(const std::string &, lldpctl_atom_t *)> &visit);

PortStatus read_status(lldpctl_atom_t *port);
// Its age is the time since its last update: see Discoveries.
Neighbor read_neighbor(lldpctl_atom_t *remote_port);
// Whether the neighbor was heard by LLDP rather than by another protocol.
bool speaks_lldp(lldpctl_atom_t *remote_port);

// The library's value for a port status; throws Error for a status that it does not have.
long status_value(const Connection &connection, const PortStatus &status);

} // namespace yfw::sources::lldpd

#endif

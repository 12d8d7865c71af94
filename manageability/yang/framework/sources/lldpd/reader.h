// Reads an lldpd through its library into plain structures.
#ifndef YFW_SOURCES_LLDPD_READER_H
#define YFW_SOURCES_LLDPD_READER_H

#include <functional>
#include <string>

#include "sources/lldpd/connection.h"
#include "sources/lldpd/lldpd_state.h"

namespace yfw::sources::lldpd {

// All that lldpd knows at this moment. A port that vanishes meanwhile is left out. Throws Error.
State read_state(const Connection &connection);

DaemonSettings read_settings(const Connection &connection);

// Calls `visit` with the name and the atom of each local port.
void for_each_port(const Connection &connection,
                   const std::function<void(const std::string &, lldpctl_atom_t *)> &visit);

PortStatus read_status(lldpctl_atom_t *port);
Neighbor read_neighbor(lldpctl_atom_t *remote_port);
// Whether it was heard by LLDP and not by another protocol.
bool speaks_lldp(lldpctl_atom_t *remote_port);

// What lldpd's library calls a status of a port; throws Error for one that it does not have.
long status_value(const Connection &connection, const PortStatus &status);

} // namespace yfw::sources::lldpd

#endif

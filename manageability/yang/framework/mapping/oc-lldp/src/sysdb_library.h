// Whether the platform has a system database at all.
#ifndef OCLLDP_SYSDB_LIBRARY_H
#define OCLLDP_SYSDB_LIBRARY_H

namespace oclldp {

// True once the system database's library file has been found readable.
bool sysdb_library_present();

} // namespace oclldp

#endif

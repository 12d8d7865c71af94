// Tells the runs of an lldpd apart.
#ifndef YFW_SOURCES_LLDPD_DAEMON_RUN_H
#define YFW_SOURCES_LLDPD_DAEMON_RUN_H

#include <optional>
#include <string>

namespace yfw::sources::lldpd {

// Identifies the present run of the daemon behind this control socket, for all processes of the machine alike;
// nothing when no daemon listens there, or this process may not connect. Does not wait for the daemon.
std::optional<std::string> daemon_run(const std::string &socket);

} // namespace yfw::sources::lldpd

#endif

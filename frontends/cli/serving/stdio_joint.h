// Standard input and output joined to a Unix socket.
#ifndef YFW_FRONTENDS_CLI_SERVING_STDIO_JOINT_H
#define YFW_FRONTENDS_CLI_SERVING_STDIO_JOINT_H

#include <string>

namespace yfw::cli {

// Returns when the socket's other end has closed it. The end of standard input is handed on. Throws Error
// when the socket cannot be connected to.
void join_standard_streams(const std::string &socket);

} // namespace yfw::cli

#endif

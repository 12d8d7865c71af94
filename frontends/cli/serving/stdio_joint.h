// Connects standard input and output to a Unix socket.
#ifndef YFW_FRONTENDS_CLI_SERVING_STDIO_JOINT_H
#define YFW_FRONTENDS_CLI_SERVING_STDIO_JOINT_H

#include <string>

namespace yfw::cli {

// Returns when the peer has closed the socket. Passes on the end of standard input. Throws Error when it cannot
// connect.
void join_standard_streams(const std::string &socket);

} // namespace yfw::cli

#endif

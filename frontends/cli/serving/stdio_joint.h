// Connects standard input and output to a Unix socket.
#ifndef YFW_FRONTENDS_CLI_SERVING_STDIO_JOINT_H
#define YFW_FRONTENDS_CLI_SERVING_STDIO_JOINT_H

#include <string>

namespace yfw::cli {

// Copies bytes in both directions until the peer closes the socket. The end of standard input is passed on.
// Throws Error when it cannot connect.
void join_standard_streams(const std::string &socket);

} // namespace yfw::cli

#endif

// The program that serves gNMI: gRPC takes longer to load than most commands take to run.
#ifndef YFW_FRONTENDS_CLI_SERVING_GNMI_PROGRAM_H
#define YFW_FRONTENDS_CLI_SERVING_GNMI_PROGRAM_H

namespace yfw::cli {

// Replaces this program with yfw-gnmi, which does the same with the same arguments and serves gNMI, too. Call
// it before anything is opened. Throws Error where it cannot be run, as in a build without gNMI.
[[noreturn]] void continue_with_gnmi();

} // namespace yfw::cli

#endif

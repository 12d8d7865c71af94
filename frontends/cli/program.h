// The program yfw: OpenConfig LLDP from the command line.
#ifndef YFW_CLI_PROGRAM_H
#define YFW_CLI_PROGRAM_H

namespace yfw::cli {

class GnmiDoors;

// What main() does: runs the command in the arguments, prints to standard output, reports errors on standard
// error, and returns the exit status: 0; 1: the mapping or the output failed; 2: the request, a file or its
// data is wrong. `gnmi` may be NULL: then a command that serves gNMI becomes the program that can. Leaves the
// process's environment, working directory and signal handlers as the command needs them.
int run_program(int argc, char **argv, const GnmiDoors *gnmi = nullptr);

} // namespace yfw::cli

#endif

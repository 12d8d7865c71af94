#include <csignal>

#include "frontends/cli/gnmi/gnmi_doors.h"
#include "frontends/cli/program.h"

int main(int argc, char **argv) {
    std::signal(SIGPIPE, SIG_IGN); // a reader that is gone shows as a write error instead, like a full disk
    const yfw::cli::TlsDoors gnmi;
    return yfw::cli::run_program(argc, argv, &gnmi);
}

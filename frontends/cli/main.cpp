#include "frontends/cli/program.h"

int main(int argc, char **argv) {
    return yfw::cli::run_program(argc, argv);
}

#include "frontends/cli/program.h"
#include "support/child_process.h"

namespace {

[[maybe_unused]] const bool in_this_process = [] {
    yfw::test::run_yfw_in_this_process([](int argc, char **argv) { return yfw::cli::run_program(argc, argv); });
    return true;
}();

} // namespace

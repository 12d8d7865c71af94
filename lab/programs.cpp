#include "lab/programs.h"

#include "base/run_program.h"

namespace yfw::lab {
namespace {

constexpr const char *user = "the laboratory";

} // namespace

std::string lldpd_program() {
    return find_program("lldpd", "lldpd", user);
}

std::string lldpcli_program() {
    return find_program("lldpcli", "lldpd", user);
}

std::string ip_program() {
    return find_program("ip", "iproute2", user);
}

} // namespace yfw::lab

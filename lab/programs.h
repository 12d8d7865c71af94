// The programs that the laboratory runs.
#ifndef YFW_LAB_PROGRAMS_H
#define YFW_LAB_PROGRAMS_H

#include <string>

namespace yfw::lab {

// Their paths. Throw Error naming the package to install.
std::string lldpd_program();
std::string lldpcli_program();
std::string ip_program();

} // namespace yfw::lab

#endif

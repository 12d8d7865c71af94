// The system's text for a failed call.
#ifndef YFW_BASE_SYSTEM_ERROR_H
#define YFW_BASE_SYSTEM_ERROR_H

#include <cerrno>
#include <string>

namespace yfw {

// The text of an errno: "No such file or directory".
std::string system_error_text(int error = errno);

} // namespace yfw

#endif

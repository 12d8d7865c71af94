#include "base/system_error.h"

#include <cstring>

namespace yfw {

std::string system_error_text(int error) {
    return std::strerror(error);
}

} // namespace yfw

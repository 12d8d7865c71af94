#include "base/wakeup.h"

#include <cerrno>
#include <system_error>

#include <sys/eventfd.h>

namespace yfw {

Wakeup::Wakeup() : counter_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!counter_.is_open())
        throw std::system_error(errno, std::generic_category(), "eventfd");
}

// Failures do not matter: a counter that is full is readable, and one that is empty is clear.
void Wakeup::wake() const {
    ::eventfd_write(counter_.get(), 1);
}

void Wakeup::clear() const {
    eventfd_t count = 0;
    ::eventfd_read(counter_.get(), &count);
}

} // namespace yfw

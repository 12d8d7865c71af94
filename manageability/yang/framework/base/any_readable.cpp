#include "base/any_readable.h"

#include <cerrno>
#include <system_error>

#include <sys/epoll.h>

namespace yfw {

AnyReadable::AnyReadable(std::initializer_list<int> descriptors) : all_(epoll_create1(EPOLL_CLOEXEC)) {
    if (!all_.is_open())
        throw std::system_error(errno, std::generic_category(), "epoll_create1");
    for (const int descriptor : descriptors) {
        epoll_event readable{};
        readable.events = EPOLLIN;
        if (descriptor >= 0 && epoll_ctl(all_.get(), EPOLL_CTL_ADD, descriptor, &readable) != 0)
            throw std::system_error(errno, std::generic_category(), "epoll_ctl");
    }
}

} // namespace yfw

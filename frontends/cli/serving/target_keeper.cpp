#include "frontends/cli/serving/target_keeper.h"

#include <cerrno>
#include <iostream>
#include <system_error>

#include <sys/eventfd.h>
#include <unistd.h>

#include "base/error.h"

namespace yfw::cli {
namespace {

constexpr int milliseconds_between_attempts = 1000;

} // namespace

TargetKeeper::TargetKeeper(Session &session, std::function<void(sources::NeighborEvent)> on_neighbor)
    : session_(session), on_neighbor_(std::move(on_neighbor)), stop_(eventfd(0, EFD_CLOEXEC)) {
    if (stop_ < 0)
        throw std::system_error(errno, std::generic_category(), "eventfd");
    if (session_.device.watch != nullptr)
        thread_ = std::thread([this] { keep(); });
}

TargetKeeper::~TargetKeeper() {
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t told = write(stop_, &one, sizeof one);
    if (thread_.joinable())
        thread_.join();
    close(stop_);
}

void TargetKeeper::restore() {
    try {
        session_.source.restore_target();
        std::cerr << "yfw: the device is back and has its configuration again" << std::endl;
    } catch (const Error &error) {
        std::cerr << "yfw: the device is back, but not at its configuration: " << error.what() << std::endl;
    }
}

void TargetKeeper::pass_on(sources::NeighborEvent event) {
    try {
        on_neighbor_(std::move(event));
    } catch (const Error &error) {
        std::cerr << "yfw: warning: a change of a neighbor cannot be told: " << error.what() << std::endl;
    }
}

// A device that is not there when this begins is waited for in the same way.
void TargetKeeper::keep() {
    bool was_away = false;
    do {
        try {
            if (was_away)
                session_.source.restore_target(); // throws for as long as it is away
            was_away = false;
            session_.device.watch->run(session_.schemas.context(), stop_,
                                       {[this](sources::NeighborEvent event) { pass_on(std::move(event)); },
                                        [](const std::string &reason) {
                                            std::cerr << "yfw: warning: " << reason << "; waiting for it"
                                                      << std::endl;
                                        },
                                        [this] { restore(); }});
            return;
        } catch (const Error &) {
            was_away = true;
        }
    } while (!sources::stops_within(stop_, milliseconds_between_attempts));
}

} // namespace yfw::cli

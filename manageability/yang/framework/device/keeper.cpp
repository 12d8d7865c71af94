#include "device/keeper.h"

#include <utility>

#include "base/error.h"

namespace yfw::device {
namespace {

constexpr int milliseconds_between_attempts = 1000;

} // namespace

Keeper::Keeper(ManagedDevice &device, std::function<void(sources::NeighborEvent)> on_neighbor,
               std::function<void(const std::string &)> say, std::function<void()> on_back)
    : device_(device), on_neighbor_(std::move(on_neighbor)), say_(std::move(say)),
      on_back_(std::move(on_back)) {
    if (device_.tells_changes())
        thread_ = std::thread([this] { keep(); });
}

Keeper::~Keeper() {
    stop_.wake();
    if (thread_.joinable())
        thread_.join();
}

void Keeper::restore() {
    try {
        say_(device_.restore_after_restart() ? "the device is back and has its configuration again"
                                             : "the device is back");
    } catch (const Error &error) {
        say_(std::string("the device is back, but its configuration cannot be restored: ") + error.what());
    }
    on_back_();
}

void Keeper::pass_on(sources::NeighborEvent event) {
    try {
        on_neighbor_(std::move(event));
    } catch (const Error &error) {
        say_(std::string("warning: cannot report a change of a neighbor: ") + error.what());
    }
}

// Also waits for a device that is absent at the start.
void Keeper::keep() {
    const sources::NeighborWatch::Listener listener{
        [this](sources::NeighborEvent event) { pass_on(std::move(event)); },
        [this](const std::string &reason) { say_("warning: " + reason + "; waiting for it"); },
        [this] { restore(); }};
    bool was_away = false;
    do {
        try {
            if (was_away)
                device_.restore_after_restart(); // throws while the device is away
            if (std::exchange(was_away, false))
                on_back_();
            device_.watch(stop_.descriptor(), listener);
            return;
        } catch (const Error &) {
            was_away = true;
        }
    } while (!sources::stops_within(stop_.descriptor(), milliseconds_between_attempts));
}

} // namespace yfw::device

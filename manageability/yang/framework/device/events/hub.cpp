#include "device/events/hub.h"

#include <algorithm>

namespace yfw::events {

void Hub::add(Observer &observer) {
    const std::lock_guard<std::mutex> guard(mutex_);
    observers_.push_back(&observer);
}

void Hub::remove(Observer &observer) {
    const std::lock_guard<std::mutex> guard(mutex_);
    observers_.erase(std::remove(observers_.begin(), observers_.end(), &observer), observers_.end());
}

} // namespace yfw::events

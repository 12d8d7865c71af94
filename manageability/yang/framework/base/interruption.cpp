#include "base/interruption.h"

#include <utility>

namespace yfw {
namespace {

thread_local const Interruptible *innermost = nullptr;

} // namespace

Interruptible::Interruptible(std::function<bool()> is_unwanted)
    : is_unwanted_(std::move(is_unwanted)), around_(std::exchange(innermost, this)) {}

Interruptible::~Interruptible() {
    innermost = around_;
}

void end_if_interrupted() {
    if (innermost != nullptr && innermost->is_unwanted_())
        throw Interrupted();
}

} // namespace yfw

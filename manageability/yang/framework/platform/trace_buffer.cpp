#include "platform/trace_buffer.h"

#include <atomic>

#include "platform/status.h"
#include "yfw_map.h"

namespace yfw::platform {

void TraceBuffer::append(std::string_view line) {
    const std::scoped_lock lock(mutex_);
    if (lines_.size() < capacity_) {
        lines_.emplace_back(line);
    } else if (capacity_ != 0) {
        lines_[written_ % capacity_].assign(line);
    }
    ++written_;
}

std::vector<std::string> TraceBuffer::snapshot() const {
    const std::scoped_lock lock(mutex_);
    std::vector<std::string> ordered;
    ordered.reserve(lines_.size());
    for (std::uint64_t number = written_ - lines_.size(); number != written_; ++number) {
        ordered.push_back(lines_[number % capacity_]);
    }
    return ordered;
}

void TraceBuffer::clear() {
    const std::scoped_lock lock(mutex_);
    lines_.clear();
    written_ = 0;
}

std::uint64_t TraceBuffer::written() const {
    const std::scoped_lock lock(mutex_);
    return written_;
}

} // namespace yfw::platform

extern "C" {

uint32_t ret_nc_yfw_trace_index_incr(void) {
    static std::atomic<std::uint32_t> last{0};
    return ++last;
}

// A line is lost when memory runs out: tracing never makes a request fail. The word is the same in every line
// and carries no information.
void _lstrace(void *handle, uint64_t /*word*/, const char *line) {
    if (handle == nullptr || line == nullptr) {
        return;
    }
    yfw::platform::guarded([&] {
        static_cast<yfw::platform::TraceBuffer *>(handle)->append(line);
        return yfw::platform::status_ok;
    });
}

} // extern "C"

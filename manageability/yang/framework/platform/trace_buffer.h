// The numbered trace: a bounded ring that keeps the newest lines.
#ifndef PLATFORM_TRACE_BUFFER_H
#define PLATFORM_TRACE_BUFFER_H

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace yfw::platform {

// The `ltrace_handle` of a context is the address of a TraceBuffer. Thread-safe.
class TraceBuffer {
public:
    // Keeps the last `capacity` lines; 0 keeps none.
    explicit TraceBuffer(std::size_t capacity) : capacity_(capacity) {}

    void append(std::string_view line);

    // The lines kept, oldest first.
    std::vector<std::string> snapshot() const;

    // Discards all lines and resets `written`.
    void clear();

    std::size_t capacity() const { return capacity_; }

    // The number of lines appended so far, including those since overwritten.
    std::uint64_t written() const;

private:
    const std::size_t capacity_;
    mutable std::mutex mutex_;
    std::vector<std::string> lines_; // grows to the capacity; then line n is at n modulo the capacity
    std::uint64_t written_ = 0;
};

} // namespace yfw::platform

#endif

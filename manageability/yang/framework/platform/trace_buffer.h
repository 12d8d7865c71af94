// The numbered trace: a bounded ring of lines, the newest ones kept.
#ifndef PLATFORM_TRACE_BUFFER_H
#define PLATFORM_TRACE_BUFFER_H

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace yfw::platform {

// The `ltrace_handle` of a context is the address of one of these. Safe from several threads.
class TraceBuffer {
public:
    // Keeps the last `capacity` lines; with a capacity of 0, none.
    explicit TraceBuffer(std::size_t capacity) : capacity_(capacity) {}

    void append(std::string_view line);

    // The lines that are kept, oldest first.
    std::vector<std::string> snapshot() const;

    // Forgets all lines, the count of `written` too.
    void clear();

    std::size_t capacity() const { return capacity_; }

    // How many lines were appended, those included that others have replaced since.
    std::uint64_t written() const;

private:
    const std::size_t capacity_;
    mutable std::mutex mutex_;
    std::vector<std::string> lines_; // grows to the capacity, then line n lies at n modulo the capacity
    std::uint64_t written_ = 0;
};

} // namespace yfw::platform

#endif

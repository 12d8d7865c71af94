// The debug log: where lines from _qdos_dt_log_filter_adv go.
#ifndef PLATFORM_DEBUG_LOG_H
#define PLATFORM_DEBUG_LOG_H

#include <cstdint>
#include <functional>
#include <string_view>

namespace yfw::platform {

enum class LogChannel { error, trace };

// The `err_log_handle` and `trc_log_handle` of a context. A line on any other handle is a trace line.
void *error_log_handle() noexcept;
void *trace_log_handle() noexcept;

// Receives each line, uncut, including the newline at the end of some texts. The line is borrowed for the call.
// Exceptions are dropped: logging never makes a request fail.
using LogSink = std::function<void(LogChannel, std::string_view line)>;

// Sets the sink for the process and returns the previous one, empty for the default. An empty sink selects the
// default, which writes the line to standard error, ending in exactly one newline. A line being logged by
// another thread may still reach the previous sink.
LogSink set_log_sink(LogSink sink);

// The number of call sites that have logged so far. Each has its own number in its slot, counting from 0.
std::int32_t registered_log_sites();

} // namespace yfw::platform

#endif

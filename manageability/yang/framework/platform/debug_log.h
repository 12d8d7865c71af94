// The debug log: where the lines of _qdos_dt_log_filter_adv go.
#ifndef PLATFORM_DEBUG_LOG_H
#define PLATFORM_DEBUG_LOG_H

#include <cstdint>
#include <functional>
#include <string_view>

namespace yfw::platform {

enum class LogChannel { error, trace };

// The `err_log_handle` and the `trc_log_handle` of a context. A line on any other handle is a trace line.
void *error_log_handle() noexcept;
void *trace_log_handle() noexcept;

// Receives each line, as long as it is and with the newline that some texts end in. The line is borrowed
// for the call. What it throws is dropped: logging never makes a request fail.
using LogSink = std::function<void(LogChannel, std::string_view line)>;

// Sets the sink of the process; an empty one means the default, which writes the line, ended by exactly
// one newline, to standard error. Returns the sink until then, empty for the default. A line under way in
// another thread may still reach that one.
LogSink set_log_sink(LogSink sink);

// How many call sites have logged so far. Each has a number of its own in its slot, counted from 0.
std::int32_t registered_log_sites();

} // namespace yfw::platform

#endif

// The plug-in's log output during a request: the last error for the error reply, and everything when tracing.
#ifndef YFW_HOST_MAPPING_LOG_H
#define YFW_HOST_MAPPING_LOG_H

#include <string>

#include "platform/debug_log.h"

namespace yfw::host {

// Receives the debug log for as long as it lives.
class MappingLog {
public:
    // With `print`, lines are also passed to the previous sink; otherwise they are swallowed.
    explicit MappingLog(bool print);
    ~MappingLog();
    MappingLog(const MappingLog &) = delete;
    MappingLog &operator=(const MappingLog &) = delete;

    // The message of the last error line, without its prefix; empty when there was none.
    const std::string &last_error() const { return last_error_; }

    // Forgets the last error; call when another walk begins.
    void begin_walk() { last_error_.clear(); }

private:
    platform::LogSink before_;
    std::string last_error_;
};

} // namespace yfw::host

#endif

#include "host/mapping_log.h"

#include <iostream>
#include <string_view>

#include "base/printable.h"

namespace yfw::host {
namespace {

// "ERR: YFW: ctx=0x7ffe0000,message"
std::string message_of(std::string_view line) {
    const size_t comma = line.find(',');
    std::string_view message = comma != std::string_view::npos ? line.substr(comma + 1) : line;
    while (!message.empty() && message.back() == '\n')
        message.remove_suffix(1);
    return std::string(message);
}

void print_line(std::string_view line) {
    while (!line.empty() && line.back() == '\n')
        line.remove_suffix(1);
    std::cerr << printable(line) + '\n';
}

} // namespace

MappingLog::MappingLog(bool print) {
    before_ = platform::set_log_sink([this, print](platform::LogChannel channel, std::string_view line) {
        if (channel == platform::LogChannel::error)
            last_error_ = message_of(line);
        if (print && before_)
            before_(channel, line);
        else if (print)
            print_line(line);
    });
}

MappingLog::~MappingLog() {
    platform::set_log_sink(before_);
}

} // namespace yfw::host

#include "platform/debug_log.h"

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include <spdlog/logger.h>
#include <spdlog/sinks/stdout_sinks.h>

#include "platform/status.h"
#include "yfw_map.h"

namespace yfw::platform {

namespace {

LogChannel error_channel = LogChannel::error;
LogChannel trace_channel = LogChannel::trace;

constinit std::mutex site_mutex;
constinit std::int32_t site_count = 0;

// Gives a call site its number when it first logs.
void register_site(std::int32_t *slot) {
    if (slot == nullptr) {
        return;
    }
    const std::atomic_ref<std::int32_t> number(*slot);
    if (number.load(std::memory_order_relaxed) != -1) {
        return;
    }
    const std::scoped_lock lock(site_mutex);
    if (number.load(std::memory_order_relaxed) == -1) { // no other thread was faster
        number.store(site_count++, std::memory_order_relaxed);
    }
}

void write_to_standard_error(LogChannel channel, std::string_view line) {
    static const std::shared_ptr<spdlog::logger> logger = [] {
        auto made = std::make_shared<spdlog::logger>("yfw", std::make_shared<spdlog::sinks::stderr_sink_mt>());
        made->set_pattern("%v");
        made->set_level(spdlog::level::trace);
        return made;
    }();
    if (line.ends_with('\n')) {
        line.remove_suffix(1);
    }
    logger->log(channel == LogChannel::error ? spdlog::level::err : spdlog::level::trace,
                spdlog::string_view_t(line.data(), line.size()));
}

struct SinkHolder {
    std::mutex mutex;
    std::shared_ptr<const LogSink> sink; // null for the default
};

SinkHolder &sink_holder() {
    static SinkHolder holder;
    return holder;
}

void deliver(LogChannel channel, std::string_view line) {
    std::shared_ptr<const LogSink> sink;
    {
        SinkHolder &holder = sink_holder();
        const std::scoped_lock lock(holder.mutex);
        sink = holder.sink;
    }
    // Outside the lock, so that a sink may log or replace itself.
    if (sink) {
        (*sink)(channel, line);
    } else {
        write_to_standard_error(channel, line);
    }
}

// Formats a line of any length and delivers it. If formatting fails, delivers the format string.
void deliver_formatted(LogChannel channel, const char *format, std::va_list arguments) {
    std::array<char, 512> buffer;
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    std::string longer;
    std::string_view line = format;
    if (length >= 0 && static_cast<std::size_t>(length) < buffer.size()) {
        line = {buffer.data(), static_cast<std::size_t>(length)};
    } else if (length >= 0) {
        longer.resize(static_cast<std::size_t>(length));
        std::vsnprintf(longer.data(), longer.size() + 1, format, again);
        line = longer;
    }
    va_end(again);
    deliver(channel, line);
}

} // namespace

void *error_log_handle() noexcept {
    return &error_channel;
}

void *trace_log_handle() noexcept {
    return &trace_channel;
}

LogSink set_log_sink(LogSink sink) {
    auto next = sink ? std::make_shared<const LogSink>(std::move(sink)) : nullptr;
    SinkHolder &holder = sink_holder();
    const std::scoped_lock lock(holder.mutex);
    holder.sink.swap(next);
    return next ? *next : LogSink{};
}

std::int32_t registered_log_sites() {
    const std::scoped_lock lock(site_mutex);
    return site_count;
}

} // namespace yfw::platform

namespace platform = yfw::platform;

extern "C" {

int yfw_debug_should_log(const struct yfw_debug_filter *filter, int level) {
    if (filter == nullptr || level < 0 || level > 31) {
        return 0;
    }
    return ((filter->level_mask >> level) & 1U) != 0 ? 1 : 0;
}

void _qdos_dt_log_filter_adv(void *handle, uint64_t /*zero_a*/, uint64_t /*zero_b*/, uint64_t /*zero_c*/,
                             uint64_t /*zero_d*/, uint64_t /*zero_e*/, int32_t *slot, const char *format, ...) {
    if (format == nullptr) {
        return;
    }
    const auto channel =
        handle == platform::error_log_handle() ? platform::LogChannel::error : platform::LogChannel::trace;
    std::va_list arguments;
    va_start(arguments, format);
    platform::guarded([&] {
        platform::register_site(slot);
        platform::deliver_formatted(channel, format, arguments);
        return platform::status_ok;
    });
    va_end(arguments);
}

} // extern "C"

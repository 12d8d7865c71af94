#include "sources/file/kept_file_source.h"

namespace yfw::sources {

Snapshot KeptFileSource::snapshot(const ly_ctx *context) {
    const std::lock_guard<std::mutex> guard(mutex_);
    std::optional<std::vector<FileState>> now = source_.settled_states();
    if (!now.has_value() || now != states_ || context != context_) {
        states_.reset(); // in case reading fails
        data_ = source_.snapshot(context).data;
        states_ = std::move(now);
        context_ = context;
    }
    return {data_};
}

} // namespace yfw::sources

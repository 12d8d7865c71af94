// A recorded device whose files are read again only when they have changed.
#ifndef YFW_SOURCES_FILE_KEPT_FILE_SOURCE_H
#define YFW_SOURCES_FILE_KEPT_FILE_SOURCE_H

#include <mutex>
#include <optional>
#include <vector>

#include "sources/file/file_source.h"

namespace yfw::sources {

// For a process that reads the device more than once: keeps the data in memory. Thread-safe.
class KeptFileSource final : public NativeSource {
public:
    explicit KeptFileSource(FileSource source) : source_(std::move(source)) {}

    yang::DataTree read(const ly_ctx *context) override { return source_.read(context); }
    Snapshot snapshot(const ly_ctx *context) override;
    yang::DataTree configuration(const ly_ctx *context) override { return source_.configuration(context); }

private:
    FileSource source_;
    std::mutex mutex_;
    std::optional<std::vector<FileState>> states_; // of the files that data_ was read from
    const ly_ctx *context_ = nullptr;              // the context in which data_ was made
    yang::SharedForest data_;
};

} // namespace yfw::sources

#endif

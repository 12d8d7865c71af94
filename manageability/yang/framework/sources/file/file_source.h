// A recorded device: instance data of the native modules in files.
#ifndef YFW_SOURCES_FILE_FILE_SOURCE_H
#define YFW_SOURCES_FILE_FILE_SOURCE_H

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "sources/file/plain_reader.h"
#include "sources/native_source.h"

namespace yfw::sources {

// Tells whether a file is still the one that was read.
struct FileState {
    uint64_t number = 0; // the inode
    uint64_t size = 0;
    int64_t modified = 0; // nanoseconds
    int64_t changed = 0;

    bool operator==(const FileState &) const = default;
};

class FileSource final : public NativeSource {
public:
    // XML or JSON instance data, distinguished by the first character of each file. The data of several files
    // is merged.
    explicit FileSource(std::vector<std::filesystem::path> files) : files_(std::move(files)) {}

    // All *.xml and *.json files in a device's directory, in order of name. Throws Error when there are none.
    static FileSource of_device(const std::filesystem::path &directory);

    yang::DataTree read(const ly_ctx *context) override;
    Snapshot snapshot(const ly_ctx *context) override;
    yang::DataTree configuration(const ly_ctx *context) override;

    // The states of all files; nothing when a file is missing, or was changed so recently that another change
    // might have the same timestamp.
    std::optional<std::vector<FileState>> settled_states() const;

private:
    std::filesystem::path place() const;
    bool read_plainly(PlainReader &reader, const ly_ctx *context, yang::DataTree &configuration) const;

    std::vector<std::filesystem::path> files_;
};

} // namespace yfw::sources

#endif

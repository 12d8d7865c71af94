// A recorded device: instance data of the native modules in files.
#ifndef YFW_SOURCES_FILE_FILE_SOURCE_H
#define YFW_SOURCES_FILE_FILE_SOURCE_H

#include <filesystem>
#include <vector>

#include "sources/native_source.h"

namespace yfw::sources {

class FileSource final : public NativeSource {
public:
    // Files of XML or JSON instance data, told apart by their first character. Data of several files is merged.
    explicit FileSource(std::vector<std::filesystem::path> files) : files_(std::move(files)) {}

    // All *.xml and *.json files of a device's directory, in the order of their names. Throws host::Error when
    // the directory has none.
    static FileSource of_device(const std::filesystem::path &directory);

    host::DataTree read(const ly_ctx *context) override;

private:
    std::vector<std::filesystem::path> files_;
};

} // namespace yfw::sources

#endif

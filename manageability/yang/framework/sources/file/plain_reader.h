// Native data from plain XML files, without libyang's tree.
#ifndef YFW_SOURCES_FILE_PLAIN_READER_H
#define YFW_SOURCES_FILE_PLAIN_READER_H

#include <filesystem>
#include <memory>
#include <string>

#include <libyang/libyang.h>

#include "yang/instance_tree.h"

namespace yfw::sources {

// Reads the files of a device one after another.
class PlainReader {
public:
    // Borrows the context.
    explicit PlainReader(const ly_ctx *context);
    ~PlainReader();
    PlainReader(const PlainReader &) = delete;
    PlainReader &operator=(const PlainReader &) = delete;

    // Returns false for a file that is not as plain as data usually is, whether right or wrong: not XML in
    // UTF-8, attributes, several trees of one node, values with prefixes, anything that the models do not
    // allow. Libyang has to read the device then, or say what is wrong with it, and the reader is of no more
    // use.
    bool read(const std::filesystem::path &file);

    // The configuration of the files, as XML.
    const std::string &configuration() const;
    // Their state; the configuration may be added to it.
    yang::InstanceForestBuilder &state();

private:
    class Handler;
    std::unique_ptr<Handler> handler_;
};

} // namespace yfw::sources

#endif

#include "sources/file/file_source.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include <sys/stat.h>
#include <time.h>

#include "base/bounded_text.h"
#include "base/error.h"
#include "sources/file/instance_text.h"
#include "yang/forest.h"
#include "yang/node_kind.h"
#include "yang/schemas.h"
#include "yang/tree_text.h"
#include "yang/yang_text.h"

namespace yfw::sources {
namespace {

using yang::DataTree;

[[noreturn]] void fail(const std::filesystem::path &file, const std::string &message) {
    throw Error(ErrorTag::invalid_value, file.string(), message).by_device();
}

// Keeps the order of the file, since the mapping processes data in the order given.
constexpr uint32_t parse_options = LYD_PARSE_ONLY | LYD_PARSE_STRICT | LYD_PARSE_ORDERED;

constexpr uint64_t largest_file = 1024 * mebibyte; // data of about a million neighbors

InstanceText text_of(const std::filesystem::path &file) {
    try {
        return instance_text(bounded_file_text(file, largest_file));
    } catch (const Error &error) {
        fail(file, error.what());
    }
}

// Attributes ask for something to be done with data, such as NETCONF's operation. That of RFC 6243 becomes a
// flag.
void check_attributes(const lyd_node *node, const std::filesystem::path &file) {
    if (node->meta != nullptr)
        fail(file, yang::path_of(node) + " has an unknown attribute: " + node->meta->name);
    if (yang::is_term(node->schema) && (node->flags & LYD_DEFAULT) != 0 && !lyd_is_default(node))
        fail(file, yang::path_of(node) + " is marked as the default value but differs from it");
}

// libyang does not check characters that are written as they are, and then cannot read what it prints.
void check_texts(const lyd_node *data, const std::filesystem::path &file) {
    for (; data != nullptr; data = data->next) {
        check_attributes(data, file);
        const char *value = lyd_get_value(data);
        if (value != nullptr && !yang::is_yang_text(value))
            fail(file,
                 yang::path_of(data) + " contains bytes or characters that are not allowed in a YANG string");
        check_texts(lyd_child(data), file);
    }
}

// libyang quotes a value whole; the place follows it in parentheses.
std::string brief_error(const ly_ctx *context) {
    constexpr size_t longest_reason = 300;
    const std::string error = yang::take_yang_error(context);
    const size_t place = std::min(error.rfind(" ("), error.size());
    return yang::shortened(error.substr(0, place), longest_reason) + error.substr(place);
}

DataTree parse(const ly_ctx *context, const std::filesystem::path &file) {
    const InstanceText instance = text_of(file);
    const LYD_FORMAT format = instance.format == InstanceFormat::xml ? LYD_XML : LYD_JSON;
    lyd_node *data = nullptr;
    const LY_ERR status = lyd_parse_data_mem(context, instance.text.c_str(), format, parse_options, 0, &data);
    DataTree tree(data);
    if (status != LY_SUCCESS)
        fail(file, brief_error(context));
    for (const lyd_node *top = data; top != nullptr; top = top->next)
        if (std::string_view(top->schema->module->name).starts_with("openconfig-"))
            fail(file, std::string("contains data of ") + top->schema->module->name + "; expected native data");
    check_texts(data, file);
    return tree;
}

void merge(DataTree &into, DataTree from, const std::filesystem::path &file, const ly_ctx *context) {
    if (yang::merge(into, std::move(from)) != LY_SUCCESS)
        fail(file, "cannot be merged with the preceding files: " + yang::take_yang_error(context));
}

bool holds_configuration(const lyd_node *top) {
    return top->schema != nullptr && (top->schema->flags & LYS_CONFIG_W) != 0;
}

// Configuration must satisfy all constraints of its models, operational state only its types: a device may
// report state that violates constraints (RFC 8342 section 5.3).
void validate_configuration(DataTree &data, const std::filesystem::path &place) {
    std::vector<const lys_module *> modules;
    for (const lyd_node *top = data.get(); top != nullptr; top = top->next)
        if (holds_configuration(top))
            modules.push_back(top->schema->module);
    for (const lys_module *module : modules) {
        const LY_ERR status = yang::change_first(
            data, [module](lyd_node *&first) { return lyd_validate_module(&first, module, 0, nullptr); });
        if (status != LY_SUCCESS)
            fail(place, yang::take_yang_error(module->ctx));
    }
}

constexpr int64_t settling_time = 3000000000; // coarser than the timestamps of any file system we know

int64_t nanoseconds(const timespec &time) {
    return int64_t{time.tv_sec} * 1000000000 + time.tv_nsec;
}

} // namespace

FileSource FileSource::of_device(const std::filesystem::path &directory) {
    std::error_code error;
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(directory, error))
        if (entry.path().extension() == ".xml" || entry.path().extension() == ".json")
            files.push_back(entry.path());
    if (error)
        fail(directory, "cannot be read as a device's directory: " + error.message());
    if (files.empty())
        fail(directory, "contains no *.xml or *.json file of native data");
    std::sort(files.begin(), files.end());
    return FileSource(std::move(files));
}

std::optional<std::vector<FileState>> FileSource::settled_states() const {
    std::vector<FileState> states;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    for (const auto &file : files_) {
        struct stat status {};
        if (stat(file.c_str(), &status) != 0)
            return std::nullopt;
        states.push_back({status.st_ino, static_cast<uint64_t>(status.st_size), nanoseconds(status.st_mtim),
                          nanoseconds(status.st_ctim)});
        if (std::max(states.back().modified, states.back().changed) > nanoseconds(now) - settling_time)
            return std::nullopt;
    }
    return states;
}

DataTree FileSource::read(const ly_ctx *context) {
    DataTree data;
    for (const auto &file : files_)
        merge(data, parse(context, file), file, context);
    if (data)
        validate_configuration(data, place());
    return data;
}

std::filesystem::path FileSource::place() const {
    return files_.size() == 1 ? files_.front() : files_.front().parent_path();
}

// Reads all files, or none: false where libyang has to read them, or to say what is wrong.
bool FileSource::read_plainly(PlainReader &reader, const ly_ctx *context, DataTree &configuration) const {
    try {
        for (const auto &file : files_) {
            require_bounded_file(file, largest_file);
            if (!reader.read(file))
                return false;
        }
        configuration = yang::parse_data(context, reader.configuration(), LYD_XML, parse_options);
        validate_configuration(configuration, place());
    } catch (const Error &) {
        return false;
    }
    return true;
}

Snapshot FileSource::snapshot(const ly_ctx *context) {
    PlainReader reader(context);
    DataTree plain;
    if (!read_plainly(reader, context, plain))
        return NativeSource::snapshot(context);
    for (const lyd_node *top = plain.get(); top != nullptr; top = top->next)
        reader.state().add(top);
    return {reader.state().take()};
}

DataTree FileSource::configuration(const ly_ctx *context) {
    PlainReader reader(context);
    DataTree plain;
    return read_plainly(reader, context, plain) ? std::move(plain) : NativeSource::configuration(context);
}

} // namespace yfw::sources

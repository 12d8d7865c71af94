#include "sources/opened_source.h"

#include <optional>
#include <set>
#include <string_view>
#include <system_error>

#include "sources/file/kept_file_source.h"
#include "sources/lldpd/lldpd_source.h"
#include "sources/lldpd/lldpd_watch.h"

namespace yfw::sources {
namespace {

constexpr std::string_view daemon_prefix = "lldpd:";
constexpr std::string_view files_prefix = "files:";

std::string real_path(const std::filesystem::path &path) {
    std::error_code error;
    return std::filesystem::weakly_canonical(path, error).string();
}

std::string identity_of_files(const std::vector<std::filesystem::path> &files) {
    std::set<std::string> paths;
    for (const std::filesystem::path &file : files)
        paths.insert(real_path(file));
    std::string identity;
    for (const std::string &path : paths)
        identity += (identity.empty() ? std::string(files_prefix) : ", ") + path;
    return identity;
}

std::optional<std::string> daemon_socket(const std::string &device) {
    if (!device.starts_with(daemon_prefix))
        return std::nullopt;
    const std::string socket = device.substr(daemon_prefix.size());
    return socket.empty() ? lldpd::LldpdSource::default_socket() : socket;
}

OpenedSource open_files(FileSource files, Use use) {
    if (use == Use::serving)
        return {.source = std::make_unique<KeptFileSource>(std::move(files))};
    return {.source = std::make_unique<FileSource>(std::move(files))};
}

OpenedSource open_daemon(const std::string &socket) {
    const auto discoveries = std::make_shared<lldpd::Discoveries>();
    auto daemon = std::make_unique<lldpd::LldpdSource>(socket, discoveries);
    NativeTarget *target = daemon.get();
    return {std::move(daemon), target, std::make_unique<lldpd::LldpdWatch>(socket, discoveries)};
}

} // namespace

std::string identity_of(const DeviceAddress &address) {
    if (!address.files.empty())
        return identity_of_files(address.files);
    const auto socket = daemon_socket(address.device);
    std::string path = real_path(socket.value_or(address.device));
    while (!path.empty() && (path.front() == '/' || path.back() == '/'))
        path.erase(path.front() == '/' ? 0 : path.size() - 1, 1);
    return (socket.has_value() ? std::string(daemon_prefix) : "") + path;
}

OpenedSource open_source(const DeviceAddress &address, Use use) {
    if (!address.files.empty())
        return open_files(FileSource(address.files), use);
    if (const auto socket = daemon_socket(address.device))
        return open_daemon(*socket);
    return open_files(FileSource::of_device(address.device), use);
}

} // namespace yfw::sources

#include "frontends/cli/options/session.h"

#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "sources/file/kept_file_source.h"
#include "sources/lldpd/lldpd_source.h"
#include "sources/lldpd/lldpd_watch.h"

namespace yfw::cli {
namespace {

constexpr std::string_view daemon_prefix = "lldpd:";

// "lldpd:SOCKET" names a daemon; nothing after the colon, the one of this machine.
std::optional<std::string> daemon_socket(const std::string &device) {
    if (device.rfind(daemon_prefix, 0) != 0)
        return std::nullopt;
    const std::string socket = device.substr(daemon_prefix.size());
    return socket.empty() ? sources::lldpd::LldpdSource::default_socket() : socket;
}

std::unique_ptr<sources::NativeSource> open_files(sources::FileSource files, Use use) {
    if (use == Use::serving)
        return std::make_unique<sources::KeptFileSource>(std::move(files));
    return std::make_unique<sources::FileSource>(std::move(files));
}

OpenedDevice open_device(const DeviceOptions &options, Use use) {
    if (!options.native_files.empty())
        return {.source = open_files(sources::FileSource(options.native_files), use)};
    if (const auto socket = daemon_socket(options.device)) {
        auto daemon = std::make_unique<sources::lldpd::LldpdSource>(*socket);
        sources::NativeTarget *target = daemon.get();
        return {std::move(daemon), target, std::make_unique<sources::lldpd::LldpdWatch>(*socket)};
    }
    return {.source = open_files(sources::FileSource::of_device(options.device), use)};
}

std::string environment(const char *name) {
    const char *value = std::getenv(name);
    return value != nullptr ? value : "";
}

// XDG base directories.
std::filesystem::path state_directory() {
    const std::string state = environment("XDG_STATE_HOME");
    if (!state.empty())
        return std::filesystem::path(state) / "yfw";
    const std::string home = environment("HOME");
    return std::filesystem::path(home.empty() ? "/var/lib" : home + "/.local/state") / "yfw";
}

} // namespace

std::filesystem::path store_of(const DeviceOptions &options) {
    if (!options.store.empty() || !options.native_files.empty())
        return options.store;
    const auto socket = daemon_socket(options.device);
    std::error_code error;
    std::string name = std::filesystem::weakly_canonical(socket.value_or(options.device), error).string();
    while (!name.empty() && (name.front() == '/' || name.back() == '/'))
        name.erase(name.front() == '/' ? 0 : name.size() - 1, 1);
    for (char &c : name)
        c = c == '/' ? '%' : c;
    return state_directory() / ((socket.has_value() ? std::string(daemon_prefix) : "") + name + ".db");
}

Session::Session(const DeviceOptions &options, Use use)
    : mapping(host::read_mapping(options.plugin)),
      schemas(options.native_models, options.openconfig_models, mapping.modules),
      device(open_device(options, use)), source(schemas, *device.source, store_of(options), device.target),
      engine(schemas, source, mapping) {
    engine.set_trace(options.trace);
    source.restore_target();
}

} // namespace yfw::cli

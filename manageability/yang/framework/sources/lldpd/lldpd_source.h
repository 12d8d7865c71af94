// A machine's lldpd as a device.
#ifndef YFW_SOURCES_LLDPD_LLDPD_SOURCE_H
#define YFW_SOURCES_LLDPD_LLDPD_SOURCE_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sources/lldpd/discoveries.h"
#include "sources/native_source.h"
#include "sources/native_target.h"

namespace yfw::sources::lldpd {

// Connects to the daemon anew for each call, so it may be restarted in between. Every wait is bounded.
class LldpdSource final : public NativeSource, public NativeTarget {
public:
    // `socket`: the daemon's control socket, usually /run/lldpd.socket. `discoveries` may be shared with a
    // watch.
    explicit LldpdSource(std::string socket,
                         std::shared_ptr<Discoveries> discoveries = std::make_shared<Discoveries>())
        : socket_(std::move(socket)), discoveries_(std::move(discoveries)) {}

    // The control socket of this machine's daemon.
    static std::string default_socket();

    yang::DataTree read(const ly_ctx *context) override;

    void check(const lyd_node *before, const lyd_node *after) override;
    void apply(const lyd_node *before, const lyd_node *after) override;
    void restore(const lyd_node *configuration) override;
    std::vector<PendingSetting> pending(const lyd_node *configuration) override;
    std::optional<yang::DataTree> as_read(const ly_ctx *context, const lyd_node *configuration) override;
    std::optional<std::string> instance() override;

private:
    std::string socket_;
    std::shared_ptr<Discoveries> discoveries_;
};

} // namespace yfw::sources::lldpd

#endif

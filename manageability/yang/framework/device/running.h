// The configuration that a change is based on, of which no more is read than the change needs.
#ifndef YFW_DEVICE_RUNNING_H
#define YFW_DEVICE_RUNNING_H

#include <cstdint>
#include <optional>

#include "device/configuration.h"
#include "device/configurations.h"
#include "device/independent_entries.h"

namespace yfw::device {

// Every function throws Error.
class Running {
public:
    // That of a commit. Borrows the configurations.
    Running(Configurations &configurations, int64_t commit)
        : configurations_(&configurations), commit_(commit) {}
    // That of no commit.
    explicit Running(Configuration whole) : whole_(std::move(whole)) {}

    const Configuration &whole() {
        if (!whole_.has_value())
            whole_ = configurations_->of(commit_);
        return *whole_;
    }
    // What is outside of independent lists, and these entries of them; nothing when the whole has to be used.
    std::optional<Part> part(const IndependentEntries &entries, const EntryNames &names) {
        return configurations_ != nullptr ? configurations_->part(commit_, entries, names) : std::nullopt;
    }

private:
    Configurations *configurations_ = nullptr;
    int64_t commit_ = -1;
    std::optional<Configuration> whole_;
};

} // namespace yfw::device

#endif

#include "device/committed_configuration.h"

#include <utility>

namespace yfw::device {
namespace {

using Guard = std::lock_guard<std::mutex>;

} // namespace

void CommittedConfiguration::clear() {
    const Guard guard(mutex_);
    kept_.reset();
}

std::optional<yang::SharedData> CommittedConfiguration::native(int64_t number) const {
    const Guard guard(mutex_);
    return has(number) ? std::optional(kept_->native.lend()) : std::nullopt;
}

std::optional<yang::SharedForest> CommittedConfiguration::forest(int64_t number) {
    const Guard guard(mutex_);
    return has(number) ? std::optional(kept_->native.forest()) : std::nullopt;
}

std::optional<Configuration> CommittedConfiguration::both(int64_t number) const {
    const Guard guard(mutex_);
    if (!has(number) || !kept_->openconfig.has_value())
        return std::nullopt;
    return Configuration{kept_->openconfig->lend(), kept_->native.lend()};
}

std::optional<Part> CommittedConfiguration::part(int64_t number, const IndependentEntries &entries,
                                                 const EntryNames &names) {
    const Guard guard(mutex_);
    if (!has(number) || !kept_->size.has_value())
        return std::nullopt;
    KeptTree &openconfig = *kept_->openconfig;
    KeptTree &native = kept_->native;
    return Part{names,
                {openconfig.part(entries, names), native.part(entries, names)},
                {openconfig.containers(entries), native.containers(entries)},
                *kept_->size};
}

std::optional<StoredSize> CommittedConfiguration::size(int64_t number) const {
    const Guard guard(mutex_);
    return has(number) ? kept_->size : std::nullopt;
}

std::optional<Configuration> CommittedConfiguration::keep(int64_t number, StoredConfiguration configuration) {
    Kept kept{number, KeptTree(std::move(configuration.native)), std::nullopt, std::nullopt};
    std::optional<Configuration> both;
    if (configuration.openconfig.has_value()) {
        kept.openconfig.emplace(std::move(*configuration.openconfig));
        kept.size = configuration.size;
        both = Configuration{kept.openconfig->lend(), kept.native.lend()};
    }
    const Guard guard(mutex_);
    kept_ = std::move(kept);
    return both;
}

Configuration CommittedConfiguration::keep_translated(int64_t number, StoredConfiguration configuration,
                                                      yang::DataTree openconfig) {
    Kept kept{number, KeptTree(std::move(configuration.native)), KeptTree(std::move(openconfig)), std::nullopt};
    Configuration both{kept.openconfig->lend(), kept.native.lend()};
    const Guard guard(mutex_);
    kept_ = std::move(kept);
    return both;
}

// On a failure, it is read anew from the store.
void CommittedConfiguration::advance(int64_t number, const PartChange &change, const StoredSize &size,
                                     const IndependentEntries &entries) {
    const Guard guard(mutex_);
    if (!has(number) || !kept_->openconfig.has_value())
        return;
    Kept next = std::move(*kept_);
    kept_.reset();
    next.number++;
    next.size = size;
    next.native.apply(change.native.change.get(), change.native.after.get(), entries, change.names);
    next.openconfig->apply(change.openconfig.change.get(), change.openconfig.after.get(), entries,
                           change.names);
    kept_ = std::move(next);
}

} // namespace yfw::device

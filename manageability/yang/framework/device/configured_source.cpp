#include "device/configured_source.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "device/store_errors.h"
#include "device/stored_configuration.h"
#include "yang/configuration_text.h"
#include "yang/forest.h"

namespace yfw::device {

std::optional<ConfiguredSource::StoreIdentity>
ConfiguredSource::identity_of(const std::filesystem::path &store) {
    struct statx status {};
    if (store.empty() || statx(AT_FDCWD, store.c_str(), 0, STATX_INO | STATX_BTIME, &status) != 0)
        return std::nullopt;
    return StoreIdentity{status.stx_ino, status.stx_btime.tv_sec * 1000000000 + status.stx_btime.tv_nsec};
}

// Other processes may create it, commit to it and replace it.
std::shared_ptr<commits::CommitLog> ConfiguredSource::log(bool create) const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return in_store([&] {
        std::optional<StoreIdentity> identity = identity_of(store_);
        if (identity == identity_ && (log_ != nullptr || !create))
            return log_;
        kept_.clear();
        log_.reset();
        identity_.reset(); // in case opening fails
        if (identity.has_value() || create)
            log_ = std::make_shared<commits::CommitLog>(store_, create, owner_);
        identity_ = identity_of(store_);
        return log_;
    });
}

std::optional<commits::Commit> ConfiguredSource::find_commit(int64_t number) const {
    const std::shared_ptr<commits::CommitLog> store = log(false);
    return in_store([&] { return store != nullptr ? store->find(number) : std::nullopt; });
}

std::vector<commits::Commit> ConfiguredSource::history() const {
    const std::shared_ptr<commits::CommitLog> store = log(false);
    return in_store([&] { return store != nullptr ? store->history() : std::vector<commits::Commit>(); });
}

std::optional<int64_t> ConfiguredSource::last_number() const {
    const std::shared_ptr<commits::CommitLog> store = log(false);
    return in_store([&] { return store != nullptr ? store->last_number() : std::nullopt; });
}

std::optional<StoredConfiguration> ConfiguredSource::read_configuration(int64_t number) const {
    const std::shared_ptr<commits::CommitLog> store = log(false);
    return in_store([&] {
        return store != nullptr ? read_stored(schemas_, *store, number, store_.string()) : std::nullopt;
    });
}

std::optional<int64_t> ConfiguredSource::keep_last() {
    const std::optional<int64_t> number = last_number();
    if (!number.has_value() || kept_.native(*number).has_value())
        return number;
    std::optional<StoredConfiguration> stored = read_configuration(*number);
    if (!stored.has_value())
        return std::nullopt;
    kept_.keep(*number, std::move(*stored));
    return number;
}

// Another commit may be kept in its place meanwhile.
template <class Get> auto ConfiguredSource::of_last(Get &&get) -> decltype(get(int64_t())) {
    while (const std::optional<int64_t> number = keep_last())
        if (auto found = get(*number))
            return found;
    return std::nullopt;
}

std::optional<yang::SharedData> ConfiguredSource::committed_configuration() {
    return of_last([&](int64_t number) { return kept_.native(number); });
}

std::optional<yang::SharedForest> ConfiguredSource::committed_forest() {
    return of_last([&](int64_t number) { return kept_.forest(number); });
}

yang::DataTree ConfiguredSource::read(const ly_ctx *context) {
    yang::DataTree data = source_.read(context);
    if (in_force_ == InForce::its_own)
        return data;
    const std::optional<yang::SharedData> committed = committed_configuration();
    if (!committed.has_value())
        return data;
    yang::take_configuration(data); // the commit replaces the recorded configuration
    yang::join(data, yang::copy_configuration(committed->get()));
    return data;
}

sources::Snapshot ConfiguredSource::snapshot(const ly_ctx *context) {
    sources::Snapshot native = source_.snapshot(context);
    if (in_force_ == InForce::its_own)
        return native;
    if (std::optional<yang::SharedForest> committed = committed_forest())
        native.configuration = std::move(committed); // the commit replaces the recorded configuration
    return native;
}

yang::SharedData ConfiguredSource::running_configuration() {
    const std::optional<yang::SharedData> committed = committed_configuration();
    return committed.has_value() ? *committed : yang::SharedData(recorded_configuration());
}

yang::DataTree ConfiguredSource::recorded_configuration() {
    return source_.configuration(schemas_.context());
}

} // namespace yfw::device

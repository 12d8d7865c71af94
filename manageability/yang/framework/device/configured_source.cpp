#include "device/configured_source.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "device/store_errors.h"
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
        kept_.reset();
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

std::optional<yang::SharedData> ConfiguredSource::kept_configuration(int64_t number) const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return kept_.has_value() && kept_->number == number ? std::optional(kept_->configuration) : std::nullopt;
}

yang::SharedData ConfiguredSource::configuration_of(const commits::Commit &commit) {
    const std::lock_guard<std::mutex> guard(mutex_);
    if (!kept_.has_value() || kept_->number != commit.number)
        kept_ = Kept{commit.number, yang::parse_configuration(schemas_, commit.configuration, store_.string()),
                     nullptr};
    return kept_->configuration;
}

std::optional<yang::SharedData> ConfiguredSource::committed_configuration() {
    const std::optional<int64_t> number = last_number();
    if (!number.has_value())
        return std::nullopt;
    if (std::optional<yang::SharedData> kept = kept_configuration(*number))
        return kept;
    const std::optional<commits::Commit> commit = find_commit(*number);
    return commit.has_value() ? std::optional(configuration_of(*commit)) : std::nullopt;
}

std::optional<yang::SharedForest> ConfiguredSource::committed_forest() {
    const std::optional<yang::SharedData> committed = committed_configuration();
    if (!committed.has_value())
        return std::nullopt;
    const std::lock_guard<std::mutex> guard(mutex_);
    if (!kept_.has_value() || kept_->configuration != *committed) // another thread has read another commit
        return yang::instance_forest(committed->get());
    if (kept_->forest == nullptr)
        kept_->forest = yang::instance_forest(committed->get());
    return kept_->forest;
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

#include "device/configured_source.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "device/store_errors.h"
#include "yang/configuration_text.h"

namespace yfw::device {
namespace {

void join(yang::DataTree &into, yang::DataTree more) {
    lyd_node *first = into.release();
    lyd_node *next = nullptr;
    for (lyd_node *top = more.release(); top != nullptr; top = next) {
        next = top->next;
        lyd_unlink_tree(top);
        lyd_insert_sibling(first, top, &first);
    }
    into.reset(first);
}

} // namespace

std::optional<ConfiguredSource::StoreIdentity>
ConfiguredSource::identity_of(const std::filesystem::path &store) {
    struct statx status {};
    if (store.empty() || statx(AT_FDCWD, store.c_str(), 0, STATX_INO | STATX_BTIME, &status) != 0)
        return std::nullopt;
    return StoreIdentity{status.stx_ino, status.stx_btime.tv_sec * 1000000000 + status.stx_btime.tv_nsec};
}

// NULL when there is none. Other processes may make it, commit to it and replace it. To be called with the
// mutex.
commits::CommitLog *ConfiguredSource::opened_store() const {
    const std::optional<StoreIdentity> identity = identity_of(store_);
    if (identity != identity_) {
        kept_.reset();
        opened_.reset();
        identity_.reset(); // should opening fail
        if (identity.has_value())
            opened_ = std::make_unique<commits::CommitLog>(store_, false);
        identity_ = identity;
    }
    return opened_.get();
}

void ConfiguredSource::hold_store() const {
    const std::lock_guard<std::mutex> guard(store_mutex_);
    in_store([this] { return opened_store(); });
}

std::optional<commits::Commit> ConfiguredSource::last_commit() const {
    const std::lock_guard<std::mutex> guard(store_mutex_);
    return in_store([this] {
        const commits::CommitLog *store = opened_store();
        return store != nullptr ? store->last() : std::nullopt;
    });
}

yang::DataTree ConfiguredSource::read(const ly_ctx *context) {
    yang::DataTree data = source_.read(context);
    const std::optional<commits::Commit> last = last_commit();
    if (!last.has_value())
        return data;
    yang::take_configuration(data); // what was recorded has been replaced
    join(data, yang::parse_configuration(schemas_, last->configuration, store_.string()));
    return data;
}

sources::Snapshot ConfiguredSource::snapshot(const ly_ctx *context) {
    sources::Snapshot native = source_.snapshot(context);
    if (std::optional<yang::SharedData> committed = committed_configuration())
        native.configuration = std::move(committed); // what was recorded has been replaced
    return native;
}

std::optional<yang::SharedData> ConfiguredSource::committed_configuration() {
    const std::lock_guard<std::mutex> guard(store_mutex_);
    return in_store([this]() -> std::optional<yang::SharedData> {
        const commits::CommitLog *store = opened_store();
        const std::optional<int64_t> number = store != nullptr ? store->last_number() : std::nullopt;
        if (!number.has_value())
            return std::nullopt;
        if (!kept_.has_value() || kept_->number != *number)
            kept_ = Kept{*number, yang::parse_configuration(schemas_, store->find(*number)->configuration,
                                                            store_.string())};
        return kept_->configuration;
    });
}

yang::DataTree ConfiguredSource::running_configuration() {
    const std::optional<commits::Commit> last = last_commit();
    return last.has_value() ? yang::parse_configuration(schemas_, last->configuration, store_.string())
                            : recorded_configuration();
}

int64_t ConfiguredSource::last_commit_number() const {
    const std::optional<commits::Commit> last = last_commit();
    return last.has_value() ? last->number : -1;
}

void ConfiguredSource::restore_target() {
    const std::optional<commits::Commit> last = target_ != nullptr ? last_commit() : std::nullopt;
    if (last.has_value())
        target_->restore(yang::parse_configuration(schemas_, last->configuration, store_.string()).get());
}

yang::DataTree ConfiguredSource::recorded_configuration() {
    yang::DataTree data = source_.read(schemas_.context());
    return yang::take_configuration(data);
}

} // namespace yfw::device

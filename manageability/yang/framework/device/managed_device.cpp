#include "device/managed_device.h"

#include <set>

#include "base/error.h"
#include "device/native_edits.h"
#include "device/untold_drift.h"
#include "host/whole_request.h"
#include "yang/configuration_text.h"
#include "yang/edit_apply.h"
#include "yang/forest.h"

namespace yfw::device {
namespace {

// Without what is held back.
std::set<std::string> paths_in_force(const std::vector<Drift> &drift) {
    std::set<std::string> paths;
    for (const Drift &one : drift)
        if (one.reason.empty())
            paths.insert(one.path);
    return paths;
}

} // namespace

ManagedDevice::ManagedDevice(const yang::Schemas &schemas, sources::OpenedSource &&opened,
                             sources::NativeSource &source, sources::NativeTarget *target,
                             std::filesystem::path store, host::MappingDescription mapping,
                             std::optional<std::string> owner)
    : schemas_(schemas), mapping_(std::move(mapping)), opened_(std::move(opened)), target_(target),
      source_(schemas, source, std::move(store), std::move(owner),
              target != nullptr ? InForce::its_own : InForce::committed),
      engine_(schemas, source_, mapping_), mapper_(schemas, engine_, mapping_), entries_(schemas, mapping_),
      configurations_(source_, mapper_), lock_(source_.store()),
      editor_(schemas, source_, configurations_, mapper_, entries_, target, lock_) {}

ManagedDevice::ManagedDevice(const yang::Schemas &schemas, sources::OpenedSource opened,
                             std::filesystem::path store, host::MappingDescription mapping,
                             std::optional<std::string> owner)
    : ManagedDevice(schemas, std::move(opened), *opened.source, opened.target, std::move(store),
                    std::move(mapping), std::move(owner)) {}

ManagedDevice::ManagedDevice(const yang::Schemas &schemas, sources::NativeSource &source,
                             std::filesystem::path store, host::MappingDescription mapping,
                             sources::NativeTarget *target)
    : ManagedDevice(schemas, sources::OpenedSource{}, source, target, std::move(store), std::move(mapping),
                    std::nullopt) {}

host::SettledAnswer ManagedDevice::answer(const host::ReadRequest &request) {
    if (request.content == host::Content::state)
        return engine_.answer(request);
    const std::optional<Configuration> committed = configurations_.committed();
    return committed.has_value() ? engine_.answer_with(committed->openconfig.get(), request)
                                 : answer_applied(request);
}

// Where there can be no commits, a read is what the mapping makes of the native data, and nothing else.
host::SettledAnswer ManagedDevice::answer_applied(const host::ReadRequest &request) {
    if (request.content == host::Content::state || store().empty())
        return engine_.answer(request);
    return answer_translated(request, source_.snapshot(schemas_.context()));
}

host::SettledAnswer ManagedDevice::answer_translated(const host::ReadRequest &request,
                                                     sources::Snapshot native) {
    const yang::DataTree hidden = mapper_.hidden_values(native);
    host::SettledAnswer answer = engine_.answer(request, std::move(native));
    if (hidden == nullptr)
        return answer;
    host::ReadRequest of_configuration = request;
    of_configuration.content = host::Content::config;
    yang::DataTree values = engine_.answer_with(hidden.get(), of_configuration).take_data();
    if (values == nullptr)
        return answer;
    std::vector<std::string> warnings = answer.warnings();
    yang::DataTree data = answer.take_data();
    yang::merge(data, std::move(values));
    return {std::move(data), std::move(warnings)};
}

host::Answer ManagedDevice::read(const host::ReadRequest &request) {
    return host::data_of(answer(request));
}

void ManagedDevice::validate(const Configuration &configuration) {
    yang::validate_openconfig(schemas_, configuration.openconfig.get());
    yang::DataTree copy = yang::copy_configuration(configuration.native.get());
    validate_configuration(schemas_, copy);
    check_with_device(configuration);
}

void ManagedDevice::require_store() const {
    if (store().empty())
        throw Error(ErrorTag::missing_element, "--store",
                    "a device given with --native needs a file for its commits");
}

std::optional<commits::Commit> ManagedDevice::edit(const yang::EditNode &edit, const CommitNote &note,
                                                   const ChangeGuard &guard) {
    require_store();
    return editor_.edit(edit, note, guard);
}

std::optional<commits::Commit> ManagedDevice::edit(const EditMaker &make, const CommitNote &note,
                                                   const ChangeGuard &guard) {
    require_store();
    return editor_.edit(make, note, guard);
}

std::optional<commits::Commit> ManagedDevice::commit(const Configuration &configuration,
                                                     const std::string &edit, const CommitNote &note,
                                                     const ChangeGuard &guard) {
    require_store();
    return editor_.commit_configuration(configuration, edit, note, guard);
}

std::optional<commits::Commit> ManagedDevice::rollback(int64_t number, const CommitNote &note) {
    return editor_.rollback(number, note);
}

void ManagedDevice::serve() {
    lock_.serve();
    editor_.take_back_left_behind();
}

std::vector<Drift> ManagedDevice::drift() {
    const std::optional<Configuration> committed = configurations_.committed();
    if (!committed.has_value())
        return {};
    const host::ReadRequest whole = host::whole_request(schemas_);
    const host::Answer applied = read_applied(whole);
    const lyd_node *openconfig = committed->openconfig.get();
    const Suspensions suspended(schemas_, mapping_, openconfig);
    if (target_ == nullptr) { // what is committed is in force, so nothing else can be
        std::vector<Drift> found = find_drift(openconfig, applied.data.get(), applied.data.get(), suspended);
        const std::set<std::string> held = mapper_.held(*committed, paths_in_force(found));
        std::erase_if(found, [&](const Drift &one) { return held.contains(one.path); });
        return found;
    }
    return drift_of_target(*committed, applied.data.get(), suspended);
}

// What no read tells is asked of the target.
std::vector<Drift> ManagedDevice::drift_of_target(const Configuration &committed, const lyd_node *applied,
                                                  const Suspensions &suspended) {
    const lyd_node *openconfig = committed.openconfig.get();
    const lyd_node *native = committed.native.get();
    const std::optional<yang::DataTree> as_read = target_->as_read(schemas_.context(), native);
    const host::ReadRequest whole = host::whole_request(schemas_);
    const lyd_node *told = as_read.has_value() ? as_read->get() : native;
    const yang::DataTree expected = answer_translated(whole, {yang::instance_forest(told)}).take_data();
    std::vector<Drift> found = find_drift(openconfig, applied, expected.get(), suspended);
    const std::vector<sources::PendingSetting> pending = target_->pending(native);
    if (pending.empty())
        return found;
    const std::set<std::string> paths = paths_in_force(found);
    std::vector<host::NativePath> explained = mapper_.edits_of(openconfig, paths, native);
    const std::vector<host::NativePath> told_by_device = mapper_.edits_of(applied, paths, native);
    explained.insert(explained.end(), told_by_device.begin(), told_by_device.end());
    const std::vector<Drift> untold = untold_drift(pending, paths, explained);
    found.insert(found.end(), untold.begin(), untold.end());
    return found;
}

void ManagedDevice::apply_last_commit() {
    if (target_ == nullptr)
        throw Error(ErrorTag::operation_not_supported, "",
                    "a recorded device has nothing that a configuration could be applied to");
    if (last_commit_number() < 0)
        throw Error(ErrorTag::data_missing, store().string(), "there are no commits yet");
    editor_.restore();
}

bool ManagedDevice::restore_after_restart() {
    if (target_ == nullptr || last_commit_number() < 0 || !editor_.needs_restoring())
        return false;
    editor_.restore();
    return true;
}

void ManagedDevice::watch(int stop, const sources::NeighborWatch::Listener &listener) {
    opened_.watch->run(schemas_.context(), stop, listener);
}

} // namespace yfw::device

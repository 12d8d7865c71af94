#include "host/configured_device.h"

#include "host/configuration_text.h"
#include "host/error.h"
#include "host/native_edits.h"

namespace yfw::host {
namespace {

DataTree copy(const lyd_node *data) {
    lyd_node *duplicate = nullptr;
    if (data != nullptr)
        lyd_dup_siblings(data, nullptr, LYD_DUP_RECURSIVE | LYD_DUP_WITH_FLAGS, &duplicate);
    return DataTree(duplicate);
}

void join(DataTree &into, DataTree more) {
    lyd_node *first = into.release();
    lyd_node *next = nullptr;
    for (lyd_node *top = more.release(); top != nullptr; top = next) {
        next = top->next;
        lyd_unlink_tree(top);
        lyd_insert_sibling(first, top, &first);
    }
    into.reset(first);
}

// Runs what may fail in the store, so that its failure reaches the user like any other.
template <class Work> auto in_store(Work &&work) {
    try {
        return work();
    } catch (const datastore::StoreError &error) {
        throw Error(ErrorTag::operation_failed, "", error.what());
    }
}

} // namespace

DataTree ConfiguredSource::read(const ly_ctx *context) {
    DataTree data = source_.read(context);
    std::error_code error;
    if (store_.empty() || !std::filesystem::exists(store_, error))
        return data;
    const std::optional<datastore::Commit> last =
        in_store([&] { return datastore::Datastore(store_, false).last(); });
    if (!last.has_value())
        return data;
    take_configuration(data); // what was recorded has been replaced
    join(data, parse_configuration(schemas_, last->configuration, store_.string()));
    return data;
}

DataTree ConfiguredSource::recorded_configuration() {
    DataTree data = source_.read(schemas_.context());
    return take_configuration(data);
}

DataTree Editor::changed(const EditNode &edit, const lyd_node *running) {
    EditNode whole = edit;
    drop_deleted_content(whole);
    const Answer shown = engine_.read({Content::config, {{{schemas_.openconfig_root(), {}}}}});
    check_existence(whole, shown.data.get());
    const std::vector<NativePath> edits = engine_.map_edit(whole, copy(running));
    DataTree configuration = copy(running);
    apply_native_edits(schemas_, edits, configuration);
    validate_configuration(schemas_, configuration);
    return configuration;
}

std::string Editor::try_edit(const EditNode &edit) {
    DataTree data = source_.read(schemas_.context());
    const DataTree running = take_configuration(data);
    return configuration_difference(running.get(), changed(edit, running.get()).get());
}

void Editor::ensure_first_commit(datastore::Datastore &store) {
    if (store.last().has_value())
        return;
    const DataTree recorded = source_.recorded_configuration();
    store.commit([&](const std::optional<datastore::Commit> &last) -> std::optional<datastore::Commit> {
        if (last.has_value())
            return std::nullopt; // another process was first
        datastore::Commit first;
        first.comment = "the configuration before the first commit";
        first.configuration = print_configuration(recorded.get());
        return first;
    });
}

std::optional<datastore::Commit> Editor::edit(const EditNode &edit, const CommitNote &note) {
    return in_store([&] {
        datastore::Datastore store(source_.store(), true);
        ensure_first_commit(store);
        store.on_step(observer_);
        return store.commit(
            [&](const std::optional<datastore::Commit> &last) -> std::optional<datastore::Commit> {
                const DataTree running =
                    parse_configuration(schemas_, last->configuration, source_.store().string());
                const DataTree after = changed(edit, running.get());
                datastore::Commit made;
                made.difference = configuration_difference(running.get(), after.get());
                if (made.difference.empty())
                    return std::nullopt;
                made.who = note.who;
                made.comment = note.comment;
                made.edit = print_edit(edit);
                made.configuration = print_configuration(after.get());
                return made;
            });
    });
}

std::optional<datastore::Commit> Editor::rollback(int64_t number, const CommitNote &note) {
    return in_store([&] {
        datastore::Datastore store(source_.store(), true);
        const std::optional<datastore::Commit> target = store.find(number);
        if (!target.has_value())
            throw Error(ErrorTag::data_missing, source_.store().string(),
                        "there is no commit " + std::to_string(number));
        store.on_step(observer_);
        return store.commit(
            [&](const std::optional<datastore::Commit> &last) -> std::optional<datastore::Commit> {
                if (last->configuration == target->configuration)
                    return std::nullopt;
                const DataTree before =
                    parse_configuration(schemas_, last->configuration, source_.store().string());
                const DataTree after =
                    parse_configuration(schemas_, target->configuration, source_.store().string());
                datastore::Commit made;
                made.who = note.who;
                made.comment = note.comment.empty() ? "rollback to " + std::to_string(number) : note.comment;
                made.difference = configuration_difference(before.get(), after.get());
                made.configuration = target->configuration;
                return made;
            });
    });
}

} // namespace yfw::host

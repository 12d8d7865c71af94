#include "device/stored_configuration.h"

#include "base/error.h"
#include "yang/configuration_text.h"
#include "yang/tree_change.h"

namespace yfw::device {
namespace {

StoredConfiguration parse_whole(const yang::Schemas &schemas, const commits::Commit &commit,
                                const std::string &place) {
    StoredConfiguration stored;
    stored.native = yang::parse_configuration(schemas, commit.configuration, place);
    if (commit.openconfig.has_value())
        stored.openconfig = yang::parse_configuration(schemas, *commit.openconfig, place);
    stored.size.whole = commit.configuration.size() + commit.openconfig.value_or("").size();
    return stored;
}

void apply(const yang::Schemas &schemas, const std::string &change, const std::string &place,
           yang::DataTree &configuration) {
    try {
        yang::apply_change(configuration, yang::parse_change(schemas, change, place).get());
    } catch (const Error &error) {
        throw Error(error.tag(), place, std::string("is damaged: ") + error.what());
    }
}

} // namespace

std::optional<StoredConfiguration> read_stored(const yang::Schemas &schemas, const commits::CommitLog &store,
                                               int64_t number, const std::string &place) {
    std::optional<StoredConfiguration> stored;
    for (const commits::Commit &commit : store.since_whole(number)) {
        if (!commit.change.has_value()) {
            stored = parse_whole(schemas, commit, place);
            continue;
        }
        apply(schemas, commit.change->native, place, stored->native);
        if (stored->openconfig.has_value())
            apply(schemas, commit.change->openconfig, place, *stored->openconfig);
        stored->size.changes += commit.change->native.size() + commit.change->openconfig.size();
        stored->size.number_of_changes++;
    }
    return stored;
}

commits::Commit with_texts(const yang::Schemas &schemas, const commits::CommitLog &store,
                           commits::Commit commit, const std::string &place) {
    if (!commit.change.has_value())
        return commit;
    const std::optional<StoredConfiguration> stored = read_stored(schemas, store, commit.number, place);
    if (!stored.has_value())
        return commit;
    commit.configuration = yang::print_configuration(stored->native.get());
    if (stored->openconfig.has_value())
        commit.openconfig = yang::print_configuration(stored->openconfig->get());
    commit.change.reset();
    return commit;
}

CommitAndPrevious with_previous(const yang::Schemas &schemas, const commits::CommitLog &store,
                                const commits::Commit &commit, const std::string &place) {
    CommitAndPrevious both{with_texts(schemas, store, commit, place), store.find(commit.number - 1)};
    if (both.previous.has_value())
        both.previous = with_texts(schemas, store, std::move(*both.previous), place);
    return both;
}

} // namespace yfw::device

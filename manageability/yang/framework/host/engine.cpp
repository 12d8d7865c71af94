#include "host/engine.h"

#include <algorithm>

#include "base/error.h"
#include "host/device_snapshot.h"
#include "host/named_entries.h"
#include "host/settle.h"
#include "yang/forest.h"
#include "yang/path_values.h"

namespace yfw::host {
namespace {

constexpr size_t trace_lines_kept = 100000;

// Releases what a request leaves open in the platform.
class RequestEnd {
public:
    explicit RequestEnd(platform::Platform &platform) : platform_(platform) {}
    ~RequestEnd() {
        platform_.system_database().end_request();
        platform_.settings().device = nullptr;
    }
    RequestEnd(const RequestEnd &) = delete;
    RequestEnd &operator=(const RequestEnd &) = delete;

private:
    platform::Platform &platform_;
};

} // namespace

Answer data_of(SettledAnswer settled) {
    return {settled.take_data(), settled.warnings()};
}

// The reads without keys that a request has needed, by what they select: each is made once, however many
// entries are named.
class Engine::WholeReads {
public:
    template <class Map> std::shared_ptr<AnswerTree> of(const Selection &selection, Map &&map) {
        for (const auto &[known, answer] : made_)
            if (known == selection)
                return answer;
        return made_.emplace_back(selection, map()).second;
    }

private:
    std::vector<std::pair<Selection, std::shared_ptr<AnswerTree>>> made_;
};

Engine::Engine(const yang::Schemas &schemas, sources::NativeSource &source, const MappingDescription &mapping)
    : schemas_(schemas), source_(source), answer_schema_(schemas.openconfig_root()),
      questions_(device_questions(mapping, schemas)), trace_buffer_(trace_lines_kept) {
    mappings_.push_back(std::make_unique<Mapping>(schemas_, answer_schema_, mapping));
    for (const MappingDescription &beside : mapping.beside)
        mappings_.push_back(std::make_unique<Mapping>(schemas_, answer_schema_, beside));
}

Answer Engine::read(const ReadRequest &request) {
    return data_of(answer(request));
}

Answer Engine::read(const ReadRequest &request, sources::Snapshot native) {
    return data_of(answer(request, std::move(native)));
}

SettledAnswer Engine::answer(const ReadRequest &request, sources::Snapshot native) {
    const std::lock_guard<std::mutex> serialised(one_request_);
    return answer_from(request, std::move(native));
}

SettledAnswer Engine::answer(const ReadRequest &request) {
    const std::lock_guard<std::mutex> serialised(one_request_);
    return answer_from(request, source_.snapshot(schemas_.context()));
}

SettledAnswer Engine::answer_from(const ReadRequest &request, sources::Snapshot native) {
    std::vector<Selection> passes = split_by_list_entry(selection_of(request));
    return settled(map_passes(passes, request.content, std::move(native)), passes, request);
}

SettledAnswer Engine::answer_with(const lyd_node *configuration, const ReadRequest &request) {
    const std::lock_guard<std::mutex> serialised(one_request_);
    std::vector<Selection> passes;
    std::vector<Selection> others;
    for (Selection &pass : split_by_list_entry(selection_of(request)))
        (request.content != Content::config && selects_state(pass) ? passes : others)
            .push_back(std::move(pass));
    std::vector<std::shared_ptr<AnswerTree>> written;
    if (!passes.empty())
        written = map_passes(passes, Content::state, source_.snapshot(schemas_.context()));
    for (Selection &other : others) {
        written.push_back(std::make_shared<AnswerTree>(answer_schema_));
        passes.push_back(std::move(other));
    }
    for (size_t i = 0; i < passes.size(); i++) {
        make_own(written[i], passes[i]);
        written[i]->replace_configuration(configuration, passes[i]);
    }
    return settled(std::move(written), passes, request);
}

// Several passes may share the answer to one read.
void Engine::make_own(std::shared_ptr<AnswerTree> &tree, const Selection &pass) const {
    if (tree.use_count() == 1)
        return;
    auto own = std::make_shared<AnswerTree>(answer_schema_);
    own->copy(*tree, pass);
    tree = std::move(own);
}

SettledAnswer Engine::settled(std::vector<std::shared_ptr<AnswerTree>> written,
                              const std::vector<Selection> &passes, const ReadRequest &request) const {
    std::vector<std::string> warnings;
    for (size_t i = 0; i < passes.size(); i++) {
        make_own(written[i], passes[i]);
        std::vector<std::string> added;
        settle(*written[i], passes[i], request.content, added);
        for (std::string &warning : added) // passes may share what they warn of
            if (std::find(warnings.begin(), warnings.end(), warning) == warnings.end())
                warnings.push_back(std::move(warning));
    }
    if (passes.size() == 1 && !yang::names_values(request.paths))
        return {std::move(written.front()), std::move(warnings)};
    yang::DataTree data;
    for (std::shared_ptr<AnswerTree> &one : written)
        yang::merge(data, SettledAnswer(std::move(one), {}).take_data());
    yang::keep_named_values(data, request.paths);
    return {std::move(data), std::move(warnings)};
}

// Frees native data that nobody else holds before libyang's answer tree is built, so that both never occupy
// memory at once.
std::vector<std::shared_ptr<AnswerTree>> Engine::map_passes(const std::vector<Selection> &passes,
                                                            Content content, sources::Snapshot native) {
    std::shared_ptr<DeviceIndex> index = index_.of(native);
    const DeviceSnapshot device(questions_, std::move(native), std::move(index));
    platform_.settings().device = &device;
    const platform::Platform::Scope in_use(platform_);
    const RequestEnd end_of_request(platform_);
    WholeReads whole_reads;
    std::vector<std::shared_ptr<AnswerTree>> written;
    for (const Selection &selection : passes)
        written.push_back(names_entries(selection, content) ? map_named(selection, content, device, whole_reads)
                                                            : map_pass(selection, content, device));
    return written;
}

// Each mapping writes a tree of its own, from the native data that it asked for itself: no mapping's answer
// depends on what stands beside it.
std::shared_ptr<AnswerTree> Engine::map_pass(const Selection &selection, Content content,
                                             const DeviceSnapshot &device) {
    std::unique_ptr<AnswerTree> answer = main_mapping().read(selection, content, device, tracing());
    for (size_t i = 1; i < mappings_.size(); i++)
        answer->join(*mappings_[i]->read(selection, content, device, tracing()),
                     mappings_[i]->extended_lists());
    return answer;
}

// Where a mapping that was given keys may not have found what it shows without them, everything is read, and
// the entries are picked from it.
std::shared_ptr<AnswerTree> Engine::map_named(const Selection &selection, Content content,
                                              const DeviceSnapshot &device, WholeReads &whole_reads) {
    NamedAnswer named = main_mapping().read_named(selection, content, device, tracing());
    for (size_t i = 1; i < mappings_.size(); i++) {
        const NamedAnswer beside = mappings_[i]->read_named(selection, content, device, tracing());
        named.answer->join(*beside.answer, mappings_[i]->extended_lists());
        named.finding = std::max(named.finding, beside.finding);
    }
    if (named.finding == NamedAnswer::Finding::confirmed)
        return std::move(named.answer);
    const Selection all = without_keys(selection);
    try {
        return whole_reads.of(all, [&] { return map_pass(all, content, device); });
    } catch (const Error &error) {
        if (named.finding == NamedAnswer::Finding::doubtful || error.status() == 0)
            throw;
        return std::move(named.answer); // another entry fails; this one does not exist
    }
}

Explanation Engine::explain(const ReadRequest &request) {
    const std::lock_guard<std::mutex> serialised(one_request_);
    const std::vector<Selection> passes = split_by_list_entry(selection_of(request));
    Explanation explanation;
    for (const std::unique_ptr<Mapping> &mapping : mappings_)
        add_explanation(*mapping, mapping->explain_read(passes, request.content, tracing()), explanation);
    return explanation;
}

std::vector<WrittenNode> Engine::explain_answer(sources::Snapshot native) {
    const std::lock_guard<std::mutex> serialised(one_request_);
    std::shared_ptr<DeviceIndex> index = index_.of(native);
    const DeviceSnapshot device(questions_, std::move(native), std::move(index));
    platform_.settings().device = &device;
    const platform::Platform::Scope in_use(platform_);
    const RequestEnd end_of_request(platform_);
    const Selection all{schemas_.openconfig_root(), std::nullopt, {}, false};
    std::vector<WrittenNode> nodes;
    for (const std::unique_ptr<Mapping> &mapping : mappings_)
        for (WrittenNode &node : mapping->explain_answer(all, device, tracing())) {
            if (mapping != mappings_.front())
                node.callback.insert(0, mapping->description().library.filename().string() + ":");
            nodes.push_back(std::move(node));
        }
    return nodes;
}

void Engine::add_explanation(const Mapping &mapping, Explanation added, Explanation &to) const {
    if (&mapping == &main_mapping())
        to = std::move(added);
    else
        append_beside(to, std::move(added), mapping.description().library.filename().string());
}

// An edit's native data is the running configuration, from which the platform answers.
template <class Visit> void Engine::for_each_that_edits(yang::SharedData running, Visit &&visit) {
    const DeviceSnapshot device(questions_, {yang::instance_forest(running.get())});
    platform_.settings().device = &device;
    const platform::Platform::Scope in_use(platform_);
    const RequestEnd end_of_request(platform_);
    bool none = true;
    for (const std::unique_ptr<Mapping> &mapping : mappings_) {
        if (!mapping->description().edits)
            continue;
        none = false;
        visit(*mapping);
    }
    if (none)
        throw Error(ErrorTag::operation_not_supported, main_mapping().description().file.string(),
                    "the mapping maps no edits");
}

std::vector<NativePath> Engine::map_edit(const yang::EditNode &edit, yang::SharedData running) {
    const std::lock_guard<std::mutex> serialised(one_request_);
    std::vector<NativePath> edits;
    for_each_that_edits(std::move(running), [&](Mapping &mapping) {
        std::vector<NativePath> added = mapping.map_edit(edit, tracing());
        std::move(added.begin(), added.end(), std::back_inserter(edits));
    });
    return edits;
}

bool Engine::is_enabled(const lyd_node *native) const {
    if (!questions_.enabled.has_value())
        return false;
    const lyd_node *leaf = yang::instance_of(questions_.enabled->leaf, native);
    return leaf != nullptr && questions_.enabled->on == lyd_get_value(leaf);
}

Explanation Engine::explain(const yang::EditNode &edit, yang::SharedData running) {
    const std::lock_guard<std::mutex> serialised(one_request_);
    Explanation explanation;
    for_each_that_edits(std::move(running), [&](Mapping &mapping) {
        add_explanation(mapping, mapping.explain_edit(edit, tracing()), explanation);
    });
    return explanation;
}

} // namespace yfw::host

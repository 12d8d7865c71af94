#include "host/engine.h"

#include <algorithm>
#include <cstring>
#include <deque>

#include "base/error.h"
#include "host/answer_data.h"
#include "host/answer_tree.h"
#include "host/device_snapshot.h"
#include "host/host_status.h"
#include "host/mapping_log.h"
#include "host/native_response.h"
#include "host/native_selection.h"
#include "host/request_context.h"
#include "host/request_tree.h"
#include "platform/debug_log.h"
#include "yang/forest.h"
#include "yang/path_words.h"

namespace yfw::host {
namespace {

constexpr size_t trace_lines_kept = 100000;

// `state`: the state nodes whose selection the plug-in must know about.
RequestTraits traits_of(const Selection &selection, Content content, bool trace,
                        const std::vector<const lysc_node *> &state) {
    RequestTraits traits;
    traits.kind = content == Content::config ? YMAP_REQ_GET_CONFIG : YMAP_REQ_GET;
    traits.content = content == Content::config  ? YFW_CONTENT_CONFIG
                     : content == Content::state ? YFW_CONTENT_OPERATIONAL
                                                 : YFW_CONTENT_ALL;
    traits.selects_state = content != Content::config && selects_state(selection, state);
    traits.trace = trace;
    return traits;
}

ErrorTag tag_of(terrno status) {
    switch (status) {
    case YMAP_ERR_INVALID_ARGS:
    case YMAP_ERR_INVALID_VALUE:
    case status_leafref_mismatch:
        return ErrorTag::invalid_value;
    case YMAP_ERR_UNSUPPORTED_TAG:
    case YMAP_ERR_UNSUPPORTED_AUGMENT:
        return ErrorTag::unknown_element;
    case YMAP_ERR_EMPTY_LIST_KEY:
        return ErrorTag::missing_element;
    case YMAP_ERR_KEY_DELETE:
        return ErrorTag::bad_element;
    case YMAP_ERR_NO_MEMORY:
        return ErrorTag::resource_denied;
    default:
        return ErrorTag::operation_failed;
    }
}

// Whether a subtree with list entries is deleted or replaced.
bool takes_lists_away(const yang::EditNode &edit) {
    const bool whole = yang::takes_away(edit.operation) || edit.operation == yang::Operation::replace;
    if (whole && edit.node->nodetype == LYS_CONTAINER)
        for (const lysc_node *child = lysc_node_child(edit.node); child != nullptr; child = child->next)
            if ((child->nodetype & (LYS_LIST | LYS_CONTAINER)) != 0)
                return true;
    return std::any_of(edit.children.begin(), edit.children.end(), takes_lists_away);
}

bool is_failure(terrno status) {
    return status != YMAP_OK && status != YMAP_STS_NO_MAPPING;
}

// The trees share their OpenConfig side; call each root once.
std::vector<yfw_map_callback> request_roots(const Plugin &plugin) {
    std::vector<yfw_map_callback> roots;
    for (const yfw_map_registration &tree : plugin.trees())
        if (std::find(roots.begin(), roots.end(), tree.oc_to_native) == roots.end())
            roots.push_back(tree.oc_to_native);
    return roots;
}

std::vector<const lysc_node *> state_nodes(const MappingDescription &mapping, const yang::Schemas &schemas) {
    std::vector<const lysc_node *> nodes;
    for (const std::string &path : mapping.state) {
        nodes.push_back(schemas.find(mapping.modules.openconfig.front(), path));
        if (nodes.back() == nullptr)
            throw Error(ErrorTag::invalid_value, mapping.file.string(),
                        "member \"openconfig.state\" names " + path + ", which module " +
                            mapping.modules.openconfig.front() + " does not have");
    }
    return nodes;
}

// The node of a native tree at a path from its root; NULL when it does not exist.
const tidl_yfw_datatree *node_at(const tidl_yfw_datatree &root, std::string_view path) {
    yang::PathWords words(path);
    std::string_view word;
    const tidl_yfw_datatree *node = words.next(word) && word == root.name ? &root : nullptr;
    while (node != nullptr && words.next(word))
        node = find_child(*node, word);
    return node;
}

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

// The part of a request that has one key per list.
struct Engine::Pass {
    RequestContext context;
    MappingLog log;
    std::deque<RequestTree> requests; // kept because errors refer to their nodes

    Pass(const RequestTraits &traits, platform::TraceBuffer &buffer)
        : context(traits, platform::error_log_handle(), platform::trace_log_handle(), &buffer),
          log(traits.trace) {}

    void check(terrno status) {
        if (!is_failure(status))
            return;
        std::string reason = context.error_text();
        if (reason.empty())
            reason = log.last_error();
        throw Error(tag_of(status), context.error_path(), reason.empty() ? terr_strerror(status) : reason,
                    status);
    }

    // The plug-in reports success for a deletion even when it could not find all entries; the paths it emitted
    // are then only half of the edit.
    void refuse_reported_errors() {
        if (!log.last_error().empty())
            throw Error(ErrorTag::operation_failed, context.error_path(), log.last_error());
    }
};

Engine::Engine(const yang::Schemas &schemas, sources::NativeSource &source, MappingDescription mapping)
    : schemas_(schemas), source_(source), answer_schema_(schemas.openconfig_root()),
      mapping_(std::move(mapping)), names_(mapping_.walker_prefix, schemas.openconfig_root()),
      questions_(device_questions(mapping_, schemas)), state_(state_nodes(mapping_, schemas)),
      plugin_(std::make_unique<Plugin>(mapping_)), trace_buffer_(trace_lines_kept) {}

Answer Engine::read(const ReadRequest &request) {
    return read_from(request, [&] { return source_.snapshot(schemas_.context()); });
}

Answer Engine::read(const ReadRequest &request, sources::Snapshot native) {
    return read_from(request, [&] { return std::move(native); });
}

Answer Engine::read_from(const ReadRequest &request, const std::function<sources::Snapshot()> &native) {
    const std::lock_guard<std::mutex> serialised(one_request_);
    const std::vector<Selection> passes = split_by_list_entry(selection_of(request));
    const std::vector<std::unique_ptr<AnswerTree>> written = map_passes(passes, request.content, native());
    Answer answer;
    for (size_t i = 0; i < passes.size(); i++)
        yang::merge(answer.data, make_answer(*written[i], passes[i], request.content, answer.warnings));
    return answer;
}

std::unique_ptr<AnswerTree> Engine::empty_answer() const {
    return std::make_unique<AnswerTree>(answer_schema_);
}

Answer Engine::read_with(const lyd_node *configuration, const ReadRequest &request) {
    const std::lock_guard<std::mutex> serialised(one_request_);
    std::vector<Selection> with_state;
    std::vector<Selection> others;
    for (Selection &pass : split_by_list_entry(selection_of(request)))
        (request.content != Content::config && selects_state(pass) ? with_state : others)
            .push_back(std::move(pass));
    std::vector<std::unique_ptr<AnswerTree>> written;
    if (!with_state.empty())
        written = map_passes(with_state, Content::state, source_.snapshot(schemas_.context()));
    for (size_t i = 0; i < others.size(); i++)
        written.push_back(empty_answer());
    std::move(others.begin(), others.end(), std::back_inserter(with_state));
    Answer answer;
    for (size_t i = 0; i < written.size(); i++) {
        written[i]->replace_configuration(configuration, with_state[i]);
        yang::merge(answer.data, make_answer(*written[i], with_state[i], request.content, answer.warnings));
    }
    return answer;
}

// Frees native data that nobody else holds before libyang's answer tree is built, so that both never occupy
// memory at once.
std::vector<std::unique_ptr<AnswerTree>> Engine::map_passes(const std::vector<Selection> &passes,
                                                            Content content, sources::Snapshot native) {
    const DeviceSnapshot device(questions_, std::move(native));
    platform_.settings().device = &device;
    const platform::Platform::Scope in_use(platform_);
    const RequestEnd end_of_request(platform_);
    std::vector<std::unique_ptr<AnswerTree>> written;
    for (const Selection &selection : passes)
        written.push_back(map_pass(selection, content, device));
    return written;
}

std::unique_ptr<AnswerTree> Engine::map_pass(const Selection &selection, Content content,
                                             const DeviceSnapshot &device) {
    if (sums_may_be_left_)
        start_plugin_anew();
    Pass pass(traits_of(selection, content, trace_, state_), trace_buffer_);
    NativePaths paths;
    walk_request(pass, selection, paths);
    std::unique_ptr<AnswerTree> answer = empty_answer();
    walk_responses(pass, paths, device, *answer);
    answer->qualify_identities(schemas_.context());
    return answer;
}

// A counter missing on some nodes, or a truncated response, leaves a partial sum in the plug-in's globals, to
// which the next response would add. Only unloading clears it.
void Engine::start_plugin_anew() {
    plugin_.reset();
    plugin_ = std::make_unique<Plugin>(mapping_);
    sums_may_be_left_ = false;
}

// A walk that ends with "no mapping" may have stopped early: walk each selected node separately, so that
// nothing is lost.
void Engine::walk_request(Pass &pass, const Selection &selection, NativePaths &paths) {
    const terrno status = walk_once(pass, selection, paths);
    pass.check(status);
    if (status != YMAP_STS_NO_MAPPING)
        return;
    const std::vector<Selection> parts = split_by_selected_node(selection);
    if (parts.size() < 2)
        return;
    for (const Selection &part : parts)
        pass.check(walk_once(pass, part, paths));
}

terrno Engine::walk_once(Pass &pass, const Selection &selection, NativePaths &paths) {
    return walk_tree(pass, pass.requests.emplace_back(selection), paths);
}

terrno Engine::walk_tree(Pass &pass, const RequestTree &request, NativePaths &paths) {
    terrno first = YMAP_OK;
    for (const yfw_map_callback root : request_roots(*plugin_)) {
        pass.context.hierarchy().start(request.root());
        pass.log.begin_walk();
        const terrno status = root(pass.context.handle(), request.root(), paths.root());
        first = first != YMAP_OK ? first : status;
    }
    return first;
}

// An edit's native data is the running configuration, from which the platform answers.
NativePaths Engine::walk_edit(const yang::EditNode &edit, yang::SharedData running, Purpose purpose) {
    const DeviceSnapshot device(questions_, {std::move(running)});
    platform_.settings().device = &device;
    const platform::Platform::Scope in_use(platform_);
    const RequestEnd end_of_request(platform_);
    NativePaths paths;
    if (walk_edit_once(edit, false, purpose, paths))
        walk_edit_once(edit, true, purpose, paths);
    return paths;
}

std::vector<NativePath> Engine::map_edit(const yang::EditNode &edit, yang::SharedData running) {
    const std::lock_guard<std::mutex> serialised(one_request_);
    return walk_edit(edit, std::move(running), Purpose::mapping).paths();
}

Explanation Engine::explain(const ReadRequest &request) {
    const std::lock_guard<std::mutex> serialised(one_request_);
    trace_buffer_.clear();
    NativePaths paths;
    for (const Selection &selection : split_by_list_entry(selection_of(request))) {
        RequestTraits traits = traits_of(selection, request.content, trace_, state_);
        traits.number_trace = true;
        Pass pass(traits, trace_buffer_);
        paths.follow(&pass.context.hierarchy(), &trace_buffer_);
        walk_request(pass, selection, paths);
    }
    return explanation_of(paths);
}

Explanation Engine::explain(const yang::EditNode &edit, yang::SharedData running) {
    const std::lock_guard<std::mutex> serialised(one_request_);
    trace_buffer_.clear();
    return explanation_of(walk_edit(edit, std::move(running), Purpose::explaining));
}

Explanation Engine::explanation_of(const NativePaths &paths) {
    return explain_walk(names_, trace_buffer_.snapshot(), paths.paths());
}

// Returns whether a replace stopped after its delete pass: its content then remains to be merged.
bool Engine::walk_edit_once(const yang::EditNode &edit, bool replace_as_merge, Purpose purpose,
                            NativePaths &paths) {
    RequestTraits traits;
    traits.kind = YMAP_REQ_EDIT_ONE_KEY; // an edit addresses exactly one key of an entry
    traits.trace = trace_;
    traits.number_trace = purpose == Purpose::explaining;
    Pass pass(traits, trace_buffer_);
    paths.follow(&pass.context.hierarchy(), &trace_buffer_);
    pass.check(walk_tree(pass, pass.requests.emplace_back(edit, replace_as_merge), paths));
    if (takes_lists_away(edit))
        pass.refuse_reported_errors();
    return pass.context.replace_unfinished();
}

void Engine::walk_responses(Pass &pass, const NativePaths &paths, const DeviceSnapshot &device,
                            AnswerTree &answer) {
    NativeSelection selection(schemas_);
    for (const NativePath &path : paths.paths())
        selection.add(path);
    for (const yfw_map_registration &tree : plugin_->trees()) {
        const lysc_node *top = schemas_.native_root(tree.native_ns, tree.native_top);
        const SelectedNode *selected = selection.tree(top);
        const lyd_node *data = device.top(top);
        if (selected == nullptr || data == nullptr)
            continue;
        const NativeResponse response(data, *selected);
        pass.log.begin_walk();
        pass.context.hierarchy().start(response.root());
        offer_subtrees(pass, top, *response.root());
        pass.check(tree.native_to_oc(pass.context.handle(), response.root(), answer.root()));
        pass.context.set_subtrees({});
    }
}

void Engine::offer_subtrees(Pass &pass, const lysc_node *top, const tidl_yfw_datatree &root) {
    std::vector<yfw_request_subtree> offered;
    for (const MappedSubtree &subtree : mapping_.subtrees) {
        const tidl_yfw_datatree *node =
            subtree.module == top->module->name ? node_at(root, subtree.path) : nullptr;
        if (node == nullptr)
            continue;
        offered.push_back({subtree.path.c_str(), node});
        sums_may_be_left_ = sums_may_be_left_ || (subtree.sums && node->child_count > 1);
    }
    pass.context.set_subtrees(offered);
}

} // namespace yfw::host

#include "host/mapping.h"

#include <algorithm>
#include <cstring>

#include "base/error.h"
#include "host/named_entries.h"
#include "host/native_responses.h"
#include "host/pass.h"
#include "yang/path_words.h"

namespace yfw::host {
namespace {

// Whether a subtree with list entries is deleted or replaced.
bool takes_lists_away(const yang::EditNode &edit) {
    const bool whole = yang::takes_away(edit.operation) || edit.operation == yang::Operation::replace;
    if (whole && edit.node->nodetype == LYS_CONTAINER)
        for (const lysc_node *child = lysc_node_child(edit.node); child != nullptr; child = child->next)
            if ((child->nodetype & (LYS_LIST | LYS_CONTAINER)) != 0)
                return true;
    return std::any_of(edit.children.begin(), edit.children.end(), takes_lists_away);
}

// The trees share their OpenConfig side; call each root once.
std::vector<yfw_map_callback> request_roots(const Plugin &plugin) {
    std::vector<yfw_map_callback> roots;
    for (const yfw_map_registration &tree : plugin.trees())
        if (std::find(roots.begin(), roots.end(), tree.oc_to_native) == roots.end())
            roots.push_back(tree.oc_to_native);
    return roots;
}

// A node that a member of the description names.
const lysc_node *named_node(const MappingDescription &mapping, const yang::Schemas &schemas, const char *member,
                            const NativeNode &named) {
    const lysc_node *node = schemas.find(named.module, named.path);
    if (node == nullptr)
        throw Error(ErrorTag::invalid_value, mapping.file.string(),
                    "member \"" + std::string(member) + "\" names " + named.path + ", which module " +
                        named.module + " does not have");
    return node;
}

const lysc_node *named_key(const MappingDescription &mapping, const yang::Schemas &schemas,
                           const NativeNode &named) {
    const lysc_node *node = named_node(mapping, schemas, "openconfig.keys", named);
    if (!lysc_is_key(node))
        throw Error(ErrorTag::invalid_value, mapping.file.string(),
                    "member \"openconfig.keys\" names " + named.path + ", which is not a key");
    return node;
}

std::vector<const lysc_node *> lists_extended_by(const MappingDescription &mapping,
                                                 const yang::Schemas &schemas) {
    std::vector<const lysc_node *> lists;
    for (const std::string &path : mapping.extends) {
        lists.push_back(
            named_node(mapping, schemas, "openconfig.extends", {mapping.modules.openconfig.front(), path}));
        if (lists.back()->nodetype != LYS_LIST)
            throw Error(ErrorTag::invalid_value, mapping.file.string(),
                        "member \"openconfig.extends\" names " + path + ", which is not a list");
    }
    return lists;
}

std::vector<const lysc_node *> state_nodes(const MappingDescription &mapping, const yang::Schemas &schemas) {
    std::vector<const lysc_node *> nodes;
    for (const std::string &path : mapping.state)
        nodes.push_back(
            named_node(mapping, schemas, "openconfig.state", {mapping.modules.openconfig.front(), path}));
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

} // namespace

Mapping::Mapping(const yang::Schemas &schemas, const AnswerSchema &answer_schema,
                 MappingDescription description)
    : schemas_(schemas), answer_schema_(answer_schema), description_(std::move(description)),
      names_(description_.walker_prefix, schemas.openconfig_root()),
      extended_lists_(lists_extended_by(description_, schemas)), state_(state_nodes(description_, schemas)),
      plugin_(std::make_unique<Plugin>(description_)) {
    for (const SharedKey &shared : description_.keys) {
        Key &key = keys_.emplace_back();
        key.leaf = named_key(description_, schemas, {description_.modules.openconfig.front(), shared.leaf});
        for (const NativeNode &native : shared.native)
            key.native.push_back(named_key(description_, schemas, native));
    }
}

// ---- reads ----------------------------------------------------------------------------------------------

RequestTraits Mapping::traits_of_read(const Selection &selection, Content content, bool trace) const {
    RequestTraits traits;
    traits.kind = content == Content::config ? YMAP_REQ_GET_CONFIG : YMAP_REQ_GET;
    traits.content = content == Content::config  ? YFW_CONTENT_CONFIG
                     : content == Content::state ? YFW_CONTENT_OPERATIONAL
                                                 : YFW_CONTENT_ALL;
    traits.selects_state = content != Content::config && selects_state(selection, state_);
    traits.trace = trace;
    return traits;
}

std::unique_ptr<AnswerTree> Mapping::read(const Selection &selection, Content content,
                                          const DeviceSnapshot &device, const Tracing &tracing) {
    Pass pass(traits_of_read(selection, content, tracing.on), tracing.buffer);
    NativePaths paths;
    walk_request(pass, selection, paths);
    NativeResponses responses(schemas_, paths, device, description_.offer_absent_tops,
                              NativeResponses::Keep::one);
    return walk_responses(pass, responses);
}

// A counter missing on some nodes, or a truncated response, leaves a partial sum in the plug-in's globals, to
// which the next response would add. Only unloading clears it.
void Mapping::start_plugin_anew() {
    plugin_.reset();
    plugin_ = std::make_unique<Plugin>(description_);
    sums_may_be_left_ = false;
}

// A walk that ends with "no mapping" may have stopped early: walk each selected node separately, so that
// nothing is lost.
void Mapping::walk_request(Pass &pass, const Selection &selection, NativePaths &paths) {
    if (sums_may_be_left_)
        start_plugin_anew();
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

terrno Mapping::walk_once(Pass &pass, const Selection &selection, NativePaths &paths) {
    return walk_tree(pass, pass.requests.emplace_back(selection), paths);
}

terrno Mapping::walk_tree(Pass &pass, const RequestTree &request, NativePaths &paths) {
    terrno first = YMAP_OK;
    for (const yfw_map_callback root : request_roots(*plugin_)) {
        pass.context.hierarchy().start(request.root());
        pass.log.begin_walk();
        const terrno status = root(pass.context.handle(), request.root(), paths.root());
        first = first != YMAP_OK ? first : status;
    }
    return first;
}

std::unique_ptr<AnswerTree> Mapping::walk_responses(Pass &pass, NativeResponses &responses) {
    auto answer = std::make_unique<AnswerTree>(answer_schema_);
    for (const yfw_map_registration &tree : plugin_->trees())
        answer_from(pass, tree, schemas_.native_root(tree.native_ns, tree.native_top), responses, *answer);
    answer->qualify_identities(schemas_.context());
    return answer;
}

void Mapping::answer_from(Pass &pass, const yfw_map_registration &tree, const lysc_node *top,
                          NativeResponses &responses, AnswerTree &answer) {
    const tidl_yfw_datatree *response = responses.of_tree(top);
    if (response == nullptr)
        return;
    offer_subtrees(pass, top, *response);
    walk_response(pass, tree, *response, answer);
    pass.context.set_subtrees({});
}

void Mapping::walk_response(Pass &pass, const yfw_map_registration &tree, const tidl_yfw_datatree &response,
                            AnswerTree &answer) {
    pass.log.begin_walk();
    pass.context.hierarchy().start(&response);
    pass.check(tree.native_to_oc(pass.context.handle(), &response, answer.root()));
}

void Mapping::offer_subtrees(Pass &pass, const lysc_node *top, const tidl_yfw_datatree &root) {
    std::vector<yfw_request_subtree> offered;
    for (const MappedSubtree &subtree : description_.subtrees) {
        const tidl_yfw_datatree *node =
            subtree.module == top->module->name ? node_at(root, subtree.path) : nullptr;
        if (node == nullptr)
            continue;
        offered.push_back({subtree.path.c_str(), node});
        sums_may_be_left_ = sums_may_be_left_ || (subtree.sums && node->child_count > 1);
    }
    pass.context.set_subtrees(offered);
}

// ---- reads by key ---------------------------------------------------------------------------------------

NamedAnswer Mapping::read_named(const Selection &selection, Content content, const DeviceSnapshot &device,
                                const Tracing &tracing) {
    Pass pass(traits_of_read(selection, content, tracing.on), tracing.buffer);
    NativePaths paths;
    walk_request(pass, selection, paths);
    NativeResponses responses(schemas_, paths, device, description_.offer_absent_tops,
                              NativeResponses::Keep::all);
    narrow(responses, selection);
    NamedAnswer read{walk_responses(pass, responses)};
    if (!responses.are_narrowed())
        return read;
    const NamedEntries named(*read.answer, selection, content, extended_lists_);
    if (named.are_missing())
        read.finding = NamedAnswer::Finding::missing;
    else if (!confirm(named, *read.answer, without_keys(selection), content, responses, device, tracing))
        read.finding = NamedAnswer::Finding::doubtful;
    return read;
}

// A mapping may ask for all entries of a list though only one was asked for.
void Mapping::narrow(NativeResponses &responses, const Selection &selection) const {
    for (const Key &key : keys_)
        if (const std::optional<std::string> value = wanted_value(selection, key.leaf))
            for (const lysc_node *native : key.native)
                responses.narrow(native, *value);
}

// Whether the entries that were found show the same native ones as they do in a walk without keys past all
// native entries; of these it is enough to have the keys. Takes over how many native entries have the same
// keys.
bool Mapping::confirm(const NamedEntries &named, AnswerTree &answer, const Selection &all, Content content,
                      const NativeResponses &responses, const DeviceSnapshot &device, const Tracing &tracing) {
    for (const AnswerEntry *entry : named.found()) {
        const yang::InstanceNode *native = responses.data_of(answer.source_of(*entry));
        if (native == nullptr)
            return false;
        const std::unique_ptr<SelectedNode> outlined = responses.outline_selection(native->schema());
        const Outline &outline = device.index().outline({this, content, all, nodes_of(*outlined)}, [&] {
            return map_outline(*outlined, all, content, device, tracing);
        });
        const Outline::Shown *same = outline.find(*entry);
        if (same == nullptr || same->native != native)
            return false;
        answer.set_dropped(*entry, same->dropped);
    }
    return true;
}

// A mapping that needs more than the keys may fail; what it has not reached then is not confirmed.
Outline Mapping::map_outline(const SelectedNode &outlined, const Selection &all, Content content,
                             const DeviceSnapshot &device, const Tracing &tracing) {
    const yang::InstanceNode *data = device.top(outlined.node);
    if (data == nullptr)
        return {};
    const NativeResponse response(data, outlined, device.index().entries());
    const tidl_yfw_datatree &root = *response.root();
    Pass pass(traits_of_read(all, content, tracing.on), tracing.buffer);
    AnswerTree answer(answer_schema_);
    try {
        NativePaths known;
        walk_request(pass, all, known);
        for (const yfw_map_registration &tree : plugin_->trees())
            if (std::strcmp(tree.native_top, root.name) == 0 && std::strcmp(tree.native_ns, root.ns) == 0)
                walk_response(pass, tree, root, answer);
    } catch (const Error &error) {
        if (error.status() == 0)
            throw;
    }
    return Outline(answer, response);
}

Explanation Mapping::explain_read(const std::vector<Selection> &passes, Content content,
                                  const Tracing &tracing) {
    tracing.buffer.clear();
    NativePaths paths;
    for (const Selection &selection : passes) {
        RequestTraits traits = traits_of_read(selection, content, tracing.on);
        traits.number_trace = true;
        Pass pass(traits, tracing.buffer);
        paths.follow(&pass.context.hierarchy(), &tracing.buffer);
        walk_request(pass, selection, paths);
    }
    return explain_walk(names_, tracing.buffer.snapshot(), paths.paths());
}

std::vector<WrittenNode> Mapping::explain_answer(const Selection &all, const DeviceSnapshot &device,
                                                 const Tracing &tracing) {
    tracing.buffer.clear();
    RequestTraits traits = traits_of_read(all, Content::all, tracing.on);
    traits.number_trace = true;
    Pass pass(traits, tracing.buffer);
    NativePaths paths;
    AnswerTree answer(answer_schema_);
    answer.follow(tracing.buffer);
    try {
        walk_request(pass, all, paths);
        NativeResponses responses(schemas_, paths, device, description_.offer_absent_tops,
                                  NativeResponses::Keep::one);
        for (const yfw_map_registration &tree : plugin_->trees())
            if (const lysc_node *top = schemas_.native_root(tree.native_ns, tree.native_top))
                answer_from(pass, tree, top, responses, answer);
    } catch (const Error &error) {
        if (error.status() == 0)
            throw;
    }
    std::vector<WrittenNode> nodes = explain_answer_walk(tracing.buffer.snapshot(), answer.written());
    for (const std::string &path : answer.unknown_paths())
        nodes.push_back({path, "", false});
    return nodes;
}

// ---- edits ----------------------------------------------------------------------------------------------

std::vector<NativePath> Mapping::map_edit(const yang::EditNode &edit, const Tracing &tracing) {
    NativePaths paths;
    walk_edit(edit, Purpose::mapping, tracing, paths);
    return paths.paths();
}

Explanation Mapping::explain_edit(const yang::EditNode &edit, const Tracing &tracing) {
    tracing.buffer.clear();
    NativePaths paths;
    walk_edit(edit, Purpose::explaining, tracing, paths);
    return explain_walk(names_, tracing.buffer.snapshot(), paths.paths());
}

void Mapping::walk_edit(const yang::EditNode &edit, Purpose purpose, const Tracing &tracing,
                        NativePaths &paths) {
    if (walk_edit_once(edit, false, purpose, tracing, paths))
        walk_edit_once(edit, true, purpose, tracing, paths);
}

// Returns whether a replace stopped after its delete pass: its content then remains to be merged.
bool Mapping::walk_edit_once(const yang::EditNode &edit, bool replace_as_merge, Purpose purpose,
                             const Tracing &tracing, NativePaths &paths) {
    RequestTraits traits;
    traits.kind = YMAP_REQ_EDIT_ONE_KEY; // an edit addresses exactly one key of an entry
    traits.trace = tracing.on;
    traits.number_trace = purpose == Purpose::explaining;
    Pass pass(traits, tracing.buffer);
    paths.follow(&pass.context.hierarchy(), &tracing.buffer);
    pass.check(walk_tree(pass, pass.requests.emplace_back(edit, replace_as_merge), paths));
    if (takes_lists_away(edit))
        pass.refuse_reported_errors();
    return pass.context.replace_unfinished();
}

} // namespace yfw::host

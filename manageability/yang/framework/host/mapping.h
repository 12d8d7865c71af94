// One mapping at work.
#ifndef YFW_HOST_MAPPING_H
#define YFW_HOST_MAPPING_H

#include <memory>
#include <string>
#include <vector>

#include "host/answer_tree.h"
#include "host/callback_names.h"
#include "host/device_snapshot.h"
#include "host/explanation.h"
#include "host/mapping_description.h"
#include "host/native_paths.h"
#include "host/outline.h"
#include "host/plugin.h"
#include "host/request.h"
#include "platform/trace_buffer.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::host {

class NamedEntries;
class NativeResponses;
struct Pass;
struct RequestTraits;
class RequestTree;
struct SelectedNode;

// Where the steps of a mapping are written. The buffer is borrowed.
struct Tracing {
    platform::TraceBuffer &buffer;
    bool on; // write every callback's steps to the debug log and to the buffer
};

// What a mapping answered when it was given the keys of entries.
struct NamedAnswer {
    // Whether the answer shows under these keys what one for all entries does. `confirmed`: it does. `missing`:
    // an entry was not found, or not for sure. `doubtful`: one that was found may show another native entry.
    enum class Finding { confirmed, missing, doubtful };

    std::unique_ptr<AnswerTree> answer;
    Finding finding = Finding::confirmed;
};

// A mapping's library, and what its description names. Serves one request at a time, and only while the
// platform is in use for that request; throws Error when the mapping fails.
class Mapping {
public:
    // Loads the library. Borrows the schemas and the answer schema. Throws Error when the library is unusable,
    // or when the description names nodes missing from the schemas.
    Mapping(const yang::Schemas &schemas, const AnswerSchema &answer_schema, MappingDescription description);
    Mapping(const Mapping &) = delete;
    Mapping &operator=(const Mapping &) = delete;

    const MappingDescription &description() const { return description_; }

    // The OpenConfig lists to whose entries it only adds.
    const std::vector<const lysc_node *> &extended_lists() const { return extended_lists_; }

    // Maps one pass of a read on native data.
    std::unique_ptr<AnswerTree> read(const Selection &selection, Content content, const DeviceSnapshot &device,
                                     const Tracing &tracing);
    // The same for a pass that names entries by key. The mapping narrows the native data by the keys, but may
    // translate a key into a native one that fits other entries too, or none.
    NamedAnswer read_named(const Selection &selection, Content content, const DeviceSnapshot &device,
                           const Tracing &tracing);
    // What the library does with a read's request. Clears the trace buffer first.
    Explanation explain_read(const std::vector<Selection> &passes, Content content, const Tracing &tracing);

    // Which leaves it writes in a read of everything on these native data, and what writes them: all that come
    // before a failure. Clears the trace buffer first.
    std::vector<WrittenNode> explain_answer(const Selection &all, const DeviceSnapshot &device,
                                            const Tracing &tracing);

    // The native edits of an OpenConfig edit, in order.
    std::vector<NativePath> map_edit(const yang::EditNode &edit, const Tracing &tracing);
    // What the library does with an edit. Clears the trace buffer first.
    Explanation explain_edit(const yang::EditNode &edit, const Tracing &tracing);

private:
    enum class Purpose { mapping, explaining };

    RequestTraits traits_of_read(const Selection &selection, Content content, bool trace) const;
    void start_plugin_anew();
    void walk_request(Pass &pass, const Selection &selection, NativePaths &paths);
    terrno walk_once(Pass &pass, const Selection &selection, NativePaths &paths);
    terrno walk_tree(Pass &pass, const RequestTree &request, NativePaths &paths);
    void walk_edit(const yang::EditNode &edit, Purpose purpose, const Tracing &tracing, NativePaths &paths);
    bool walk_edit_once(const yang::EditNode &edit, bool replace_as_merge, Purpose purpose,
                        const Tracing &tracing, NativePaths &paths);
    std::unique_ptr<AnswerTree> walk_responses(Pass &pass, NativeResponses &responses);
    void answer_from(Pass &pass, const yfw_map_registration &tree, const lysc_node *top,
                     NativeResponses &responses, AnswerTree &answer);
    void walk_response(Pass &pass, const yfw_map_registration &tree, const tidl_yfw_datatree &response,
                       AnswerTree &answer);
    bool confirm(const NamedEntries &named, AnswerTree &answer, const Selection &all, Content content,
                 const NativeResponses &responses, const DeviceSnapshot &device, const Tracing &tracing);
    Outline map_outline(const SelectedNode &outlined, const Selection &all, Content content,
                        const DeviceSnapshot &device, const Tracing &tracing);
    void narrow(NativeResponses &responses, const Selection &selection) const;
    void offer_subtrees(Pass &pass, const lysc_node *top, const tidl_yfw_datatree &root);

    const yang::Schemas &schemas_;
    const AnswerSchema &answer_schema_;
    MappingDescription description_;
    CallbackNames names_;
    struct Key {
        const lysc_node *leaf;
        std::vector<const lysc_node *> native; // keys with the same value
    };
    std::vector<Key> keys_;
    std::vector<const lysc_node *> extended_lists_;
    std::vector<const lysc_node *> state_; // those whose selection the library must know about
    std::unique_ptr<Plugin> plugin_;
    bool sums_may_be_left_ = false; // in the library, after a response with several nodes
};

} // namespace yfw::host

#endif

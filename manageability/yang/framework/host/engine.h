// The request engine: maps an OpenConfig request to native data through the plug-in, and the native data back
// to an OpenConfig answer.
#ifndef YFW_HOST_ENGINE_H
#define YFW_HOST_ENGINE_H

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "host/answer_schema.h"
#include "host/callback_names.h"
#include "host/device_questions.h"
#include "host/explanation.h"
#include "host/mapping_description.h"
#include "host/native_paths.h"
#include "host/plugin.h"
#include "host/request.h"
#include "platform/platform.h"
#include "platform/trace_buffer.h"
#include "sources/native_source.h"
#include "yang/data_tree.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::host {

class AnswerTree;
class DeviceSnapshot;
class RequestContext;
class RequestTree;

struct Answer {
    yang::DataTree data;               // from the top container down; NULL when nothing was found
    std::vector<std::string> warnings; // what was omitted, one line each
};

// Borrows the schemas, which contain the mapping's modules, and the source. Any thread may make a request; one
// lock serializes them, and is held while the source is read.
class Engine {
public:
    // Loads the mapping's library. Throws Error when it is unusable, or when its description names nodes
    // missing from the schemas.
    Engine(const yang::Schemas &schemas, sources::NativeSource &source, MappingDescription mapping);

    // When tracing, the plug-in's debug log contains every callback's steps, and the trace buffer is filled.
    // Not locked: call before other threads make requests.
    void set_trace(bool on) { trace_ = on; }
    const platform::TraceBuffer &trace_buffer() const { return trace_buffer_; }

    // Throws Error when the device cannot be read or the mapping fails.
    Answer read(const ReadRequest &request);
    // The same, on native data given instead of the device's current data.
    Answer read(const ReadRequest &request, sources::Snapshot native);

    // The same, with this configuration in OpenConfig terms (NULL: an empty one) instead of what the mapping
    // reads as configuration. The device is not read when no state is requested.
    Answer read_with(const lyd_node *configuration, const ReadRequest &request);

    // Maps an OpenConfig edit to native edits, in order, given the device's running configuration. Applies
    // nothing. Throws Error when the mapping rejects the edit.
    std::vector<NativePath> map_edit(const yang::EditNode &edit, yang::SharedData running);

    // What the plug-in does with a read or an edit, without reading or changing a device.
    Explanation explain(const ReadRequest &request);
    Explanation explain(const yang::EditNode &edit, yang::SharedData running);

private:
    struct Pass;

    Answer read_from(const ReadRequest &request, const std::function<sources::Snapshot()> &native);
    std::unique_ptr<AnswerTree> empty_answer() const;
    std::vector<std::unique_ptr<AnswerTree>> map_passes(const std::vector<Selection> &passes, Content content,
                                                        sources::Snapshot native);
    std::unique_ptr<AnswerTree> map_pass(const Selection &selection, Content content,
                                         const DeviceSnapshot &device);
    void start_plugin_anew();
    void walk_request(Pass &pass, const Selection &selection, NativePaths &paths);
    terrno walk_tree(Pass &pass, const RequestTree &request, NativePaths &paths);
    enum class Purpose { mapping, explaining };
    NativePaths walk_edit(const yang::EditNode &edit, yang::SharedData running, Purpose purpose);
    bool walk_edit_once(const yang::EditNode &edit, bool replace_as_merge, Purpose purpose, NativePaths &paths);
    Explanation explanation_of(const NativePaths &paths);
    terrno walk_once(Pass &pass, const Selection &selection, NativePaths &paths);
    void walk_responses(Pass &pass, const NativePaths &paths, const DeviceSnapshot &device, AnswerTree &answer);
    void offer_subtrees(Pass &pass, const lysc_node *top, const tidl_yfw_datatree &root);

    const yang::Schemas &schemas_;
    sources::NativeSource &source_;
    AnswerSchema answer_schema_;
    MappingDescription mapping_;
    CallbackNames names_;
    DeviceQuestions questions_;
    std::vector<const lysc_node *> state_; // those whose selection the plug-in must know about
    std::unique_ptr<Plugin> plugin_;
    bool sums_may_be_left_ = false; // in the plug-in, after a response with several nodes
    platform::Platform platform_;
    platform::TraceBuffer trace_buffer_;
    bool trace_ = false;
    std::mutex one_request_; // the plug-in's globals support only one request at a time
};

} // namespace yfw::host

#endif

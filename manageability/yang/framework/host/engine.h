// The request engine: maps an OpenConfig request to native data through the mappings, and the native data back
// to an OpenConfig answer.
#ifndef YFW_HOST_ENGINE_H
#define YFW_HOST_ENGINE_H

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "host/answer_schema.h"
#include "host/device_index.h"
#include "host/device_questions.h"
#include "host/explanation.h"
#include "host/mapping.h"
#include "host/mapping_description.h"
#include "host/native_paths.h"
#include "host/request.h"
#include "host/settled_answer.h"
#include "platform/platform.h"
#include "platform/trace_buffer.h"
#include "sources/native_source.h"
#include "yang/data_tree.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::host {

struct Answer {
    yang::DataTree data;               // from the top container down; NULL when nothing was found
    std::vector<std::string> warnings; // what was omitted, one line each
};

// The settled answer as libyang's data.
Answer data_of(SettledAnswer settled);

// Borrows the schemas, which contain the modules of all mappings, and the source. Any thread may make a
// request; one lock serializes them, and is held while the source is read.
class Engine {
public:
    // Loads the library of the mapping and of those beside it. Throws Error when one is unusable, or when a
    // description names nodes missing from the schemas.
    Engine(const yang::Schemas &schemas, sources::NativeSource &source, const MappingDescription &mapping);

    // When tracing, the plug-in's debug log contains every callback's steps, and the trace buffer is filled.
    void set_trace(bool on) {
        const std::lock_guard<std::mutex> serialised(one_request_);
        trace_ = on;
    }
    const platform::TraceBuffer &trace_buffer() const { return trace_buffer_; }

    // The functions that read throw Error when the device cannot be read or the mapping fails.
    SettledAnswer answer(const ReadRequest &request);
    // On native data given instead of the device's current data.
    SettledAnswer answer(const ReadRequest &request, sources::Snapshot native);
    // As libyang's data, which takes more time and memory.
    Answer read(const ReadRequest &request);
    // The same, on native data given instead of the device's current data.
    Answer read(const ReadRequest &request, sources::Snapshot native);

    // The same, with this configuration in OpenConfig terms (NULL: an empty one) instead of what the mapping
    // reads as configuration. The device is not read when no state is requested.
    SettledAnswer answer_with(const lyd_node *configuration, const ReadRequest &request);

    // Maps an OpenConfig edit to native edits, in order, given the device's running configuration. Applies
    // nothing. Throws Error when the mapping rejects the edit.
    std::vector<NativePath> map_edit(const yang::EditNode &edit, yang::SharedData running);

    // Whether this native configuration says that the device is on, by the description of the mapping.
    bool is_enabled(const lyd_node *native) const;

    // What the plug-in does with a read or an edit, without reading or changing a device.
    Explanation explain(const ReadRequest &request);
    Explanation explain(const yang::EditNode &edit, yang::SharedData running);

    // Which leaves the mappings write in a read of everything on these native data, and what writes them.
    std::vector<WrittenNode> explain_answer(sources::Snapshot native);

private:
    class WholeReads;

    SettledAnswer answer_from(const ReadRequest &request, sources::Snapshot native);
    void make_own(std::shared_ptr<AnswerTree> &tree, const Selection &pass) const;
    SettledAnswer settled(std::vector<std::shared_ptr<AnswerTree>> written,
                          const std::vector<Selection> &passes, const ReadRequest &request) const;
    std::vector<std::shared_ptr<AnswerTree>> map_passes(const std::vector<Selection> &passes, Content content,
                                                        sources::Snapshot native);
    std::shared_ptr<AnswerTree> map_pass(const Selection &selection, Content content,
                                         const DeviceSnapshot &device);
    std::shared_ptr<AnswerTree> map_named(const Selection &selection, Content content,
                                          const DeviceSnapshot &device, WholeReads &whole_reads);
    template <class Visit> void for_each_that_edits(yang::SharedData running, Visit &&visit);
    void add_explanation(const Mapping &mapping, Explanation added, Explanation &to) const;
    Mapping &main_mapping() const { return *mappings_.front(); }
    Tracing tracing() { return {trace_buffer_, trace_}; }

    const yang::Schemas &schemas_;
    sources::NativeSource &source_;
    AnswerSchema answer_schema_;
    DeviceQuestions questions_;
    std::vector<std::unique_ptr<Mapping>> mappings_; // the main one first
    platform::Platform platform_;
    platform::TraceBuffer trace_buffer_;
    bool trace_ = false;     // guarded by one_request_
    KeptDeviceIndex index_;  // guarded by one_request_
    std::mutex one_request_; // the libraries' globals support only one request at a time
};

} // namespace yfw::host

#endif

// The extensions of a request that this target takes.
#ifndef YFW_FRONTENDS_GNMI_MESSAGES_EXTENSIONS_H
#define YFW_FRONTENDS_GNMI_MESSAGES_EXTENSIONS_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include <gnmi.pb.h>

namespace yfw::gnmi {

using Extensions = google::protobuf::RepeatedPtrField<gnmi_ext::Extension>;

// Those of one request. An extension that a target does not know must not fail a request; one that would make
// the answer wrong when it is ignored does, with UNIMPLEMENTED.
struct TakenExtensions {
    uint32_t depth = 0; // levels below a requested node; 0: all
    std::optional<gnmi_ext::Commit> commit;
};

// Which extensions besides those that are ignored a request may have.
enum class Takes { nothing, depth, commit };

// Throws Refusal.
TakenExtensions read_extensions(const Extensions &extensions, Takes takes);

} // namespace yfw::gnmi

#endif

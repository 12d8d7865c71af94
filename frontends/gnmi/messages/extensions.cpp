#include "frontends/gnmi/messages/extensions.h"

#include "frontends/gnmi/messages/refusal.h"

namespace yfw::gnmi {
namespace {

[[noreturn]] void refuse(const std::string &name) {
    throw Refusal(Code::unimplemented, "the extension " + name + " is not supported for this request");
}

void refuse_second(bool has_one, const std::string &name) {
    if (has_one)
        throw Refusal(Code::invalid_argument, "the extension " + name + " is given twice");
}

} // namespace

TakenExtensions read_extensions(const Extensions &extensions, Takes takes) {
    TakenExtensions taken;
    bool has_depth = false;
    for (const gnmi_ext::Extension &extension : extensions) {
        switch (extension.ext_case()) {
        case gnmi_ext::Extension::kDepth:
            if (takes != Takes::depth)
                refuse("depth");
            refuse_second(has_depth, "depth");
            has_depth = true;
            taken.depth = extension.depth().level();
            break;
        case gnmi_ext::Extension::kCommit:
            if (takes != Takes::commit)
                refuse("commit");
            refuse_second(taken.commit.has_value(), "commit");
            taken.commit = extension.commit();
            break;
        case gnmi_ext::Extension::kHistory:
            refuse("history");
        case gnmi_ext::Extension::kMasterArbitration:
            refuse("master_arbitration");
        case gnmi_ext::Extension::kConfigSubscription:
            refuse("config_subscription");
        case gnmi_ext::Extension::kRegisteredExt:
        case gnmi_ext::Extension::EXT_NOT_SET:
            break;
        }
    }
    return taken;
}

} // namespace yfw::gnmi

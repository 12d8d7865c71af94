#include "frontends/gnmi/operations/capabilities.h"

#include "frontends/gnmi/messages/extensions.h"
#include "frontends/gnmi/values/typed_value.h"

namespace yfw::gnmi {

::gnmi::CapabilityResponse capabilities(const Target &target, const ::gnmi::CapabilityRequest &request) {
    read_extensions(request.extension(), Takes::nothing);
    ::gnmi::CapabilityResponse response;
    for (const ::gnmi::ModelData &model : target.models())
        *response.add_supported_models() = model;
    for (const ::gnmi::Encoding encoding : served_encodings)
        response.add_supported_encodings(encoding);
    const google::protobuf::FileOptions &options = ::gnmi::CapabilityRequest::descriptor()->file()->options();
    response.set_gnmi_version(options.GetExtension(::gnmi::gnmi_service));
    return response;
}

} // namespace yfw::gnmi

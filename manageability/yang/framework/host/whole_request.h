// The request for everything.
#ifndef YFW_HOST_WHOLE_REQUEST_H
#define YFW_HOST_WHOLE_REQUEST_H

#include <optional>

#include "host/request.h"
#include "yang/schemas.h"

namespace yfw::host {

// Everything from the OpenConfig top container down. Borrows the schemas.
inline ReadRequest whole_request(const yang::Schemas &schemas, Content content = Content::all) {
    ReadRequest whole;
    whole.content = content;
    whole.selection = Selection{schemas.openconfig_root(), std::nullopt, {}, false};
    return whole;
}

} // namespace yfw::host

#endif

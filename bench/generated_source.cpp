#include "generated_source.h"

#include <sstream>

#include "base/error.h"

namespace yfw::bench {

GeneratedSource::GeneratedSource(const host::Schemas &schemas, const DeviceSize &size) {
    std::ostringstream xml;
    write_device(xml, size);
    lyd_node *data = nullptr;
    if (lyd_parse_data_mem(schemas.context(), xml.str().c_str(), LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_ORDERED, 0,
                           &data) != LY_SUCCESS)
        throw host::Error(host::ErrorTag::operation_failed, "", host::take_yang_error(schemas.context()));
    data_.reset(data);
}

host::DataTree GeneratedSource::read(const ly_ctx *) {
    lyd_node *copy = nullptr;
    lyd_dup_siblings(data_.get(), nullptr, LYD_DUP_RECURSIVE, &copy);
    return host::DataTree(copy);
}

} // namespace yfw::bench

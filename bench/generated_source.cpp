#include "generated_source.h"

#include <sstream>

#include "base/error.h"

namespace yfw::bench {

std::string generated_device(const DeviceSize &size) {
    std::ostringstream xml;
    write_device(xml, size);
    return xml.str();
}

GeneratedSource::GeneratedSource(const yang::Schemas &schemas, const std::string &xml) {
    lyd_node *data = nullptr;
    if (lyd_parse_data_mem(schemas.context(), xml.c_str(), LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_ORDERED, 0,
                           &data) != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, "", yang::take_yang_error(schemas.context()));
    data_.reset(data);
    forest_ = yang::instance_forest(data);
}

yang::DataTree GeneratedSource::read(const ly_ctx *) {
    lyd_node *copy = nullptr;
    lyd_dup_siblings(data_.get(), nullptr, LYD_DUP_RECURSIVE, &copy);
    return yang::DataTree(copy);
}

} // namespace yfw::bench

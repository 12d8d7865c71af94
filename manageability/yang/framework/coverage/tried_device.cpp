#include "coverage/tried_device.h"

#include "coverage/samples.h"
#include "host/operation_name.h"
#include "host/whole_request.h"
#include "yang/forest.h"

namespace yfw::coverage {
TriedDevice::TriedDevice(const yang::Schemas &used, const host::MappingDescription &mapping)
    : schemas(used), device(used, nothing, {}, mapping), whole(whole_native_data(used, mapping)) {
    yang::DataTree native = native_data_of_on(used, mapping);
    on.openconfig = device.read_applied(host::whole_request(used, host::Content::config), native).data;
    on.native = std::move(native);
}

NativeUse TriedDevice::use_of(const host::NativePath &path, bool is_edit) const {
    const lys_module *module = ly_ctx_get_module_implemented_ns(schemas.context(), path.ns.c_str());
    NativeUse use{path.path, module != nullptr ? module->name : path.ns.substr(path.ns.rfind(':') + 1)};
    use.value = path.value;
    if (is_edit)
        use.operation = host::operation_name(path);
    return use;
}

std::optional<std::string> TriedDevice::value_without_data(const lysc_node *leaf) {
    const host::Answer answer = device.read_applied(host::whole_request(schemas), yang::DataTree());
    const lyd_node *found = yang::instance_of(leaf, answer.data.get());
    return found != nullptr ? std::optional<std::string>(lyd_get_value(found)) : std::nullopt;
}

} // namespace yfw::coverage

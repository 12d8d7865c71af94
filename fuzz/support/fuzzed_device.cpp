#include "fuzz/support/fuzzed_device.h"

namespace yfw::fuzz {

const host::MappingDescription &shipped_mapping() {
    static const host::MappingDescription mapping = host::read_mapping(YFW_PLUGINS);
    return mapping;
}

const yang::Schemas &shipped_schemas() {
    static const yang::Schemas schemas(YFW_MODELS_DIR, YFW_MODELS_DIR, shipped_mapping().modules);
    return schemas;
}

FuzzedDevice::FuzzedDevice()
    : recorded_(sources::FileSource::of_device(YFW_DEVICE_DIR)),
      device_(shipped_schemas(), recorded_, store() / "commits.db", shipped_mapping()) {}

void FuzzedDevice::begin_anew() {
    std::filesystem::remove_all(store());
    std::filesystem::create_directory(store());
}

yang::DataTree FuzzedDevice::read(host::Content content) {
    const yang::Path all{{shipped_schemas().openconfig_root(), {}}};
    return device_.read({content, {all}, std::nullopt}).data;
}

} // namespace yfw::fuzz

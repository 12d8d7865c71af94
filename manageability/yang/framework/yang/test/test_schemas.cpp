#include "test_schemas.h"

#include "host/mapping_description.h"

namespace yfw::yang::test {

const MappedModules &models() {
    static const host::MappingDescription mapping = host::read_mapping(YFW_PLUGINS);
    return mapping.modules;
}

const Schemas &schemas() {
    static const Schemas loaded(YFW_MODELS_DIR, YFW_MODELS_DIR, models());
    return loaded;
}

Path path(std::string_view text) {
    return parse_path(schemas().openconfig_root(), text);
}

} // namespace yfw::yang::test

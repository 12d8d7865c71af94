#include "test_schemas.h"

namespace yfw::yang::test {

const Schemas &schemas() {
    static const Schemas loaded(YFW_MODELS_DIR, YFW_MODELS_DIR);
    return loaded;
}

Path path(std::string_view text) {
    return parse_path(schemas().openconfig_root(), text);
}

} // namespace yfw::yang::test

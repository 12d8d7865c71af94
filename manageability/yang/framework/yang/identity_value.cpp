#include "yang/identity_value.h"

namespace yfw::yang {

std::string qualified_identity(const lysc_type *type, const std::string &value) {
    if (type->basetype != LY_TYPE_IDENT || value.find(':') != std::string::npos)
        return value;
    const auto *identities = reinterpret_cast<const lysc_type_identityref *>(type);
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(identities->bases, i) {
        const lysc_ident *base = identities->bases[i];
        LY_ARRAY_COUNT_TYPE k = 0;
        LY_ARRAY_FOR(base->derived, k) {
            if (value == base->derived[k]->name)
                return std::string(base->derived[k]->module->name) + ":" + value;
        }
    }
    return value;
}

} // namespace yfw::yang

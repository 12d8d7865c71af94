#include "frontends/gnmi/paths/key_value.h"

#include "yang/identity_value.h"
#include "yang/leaf_type.h"
#include "yang/yang_text.h"

namespace yfw::gnmi {

std::optional<std::string> canonical_value(const lysc_node *leaf, const std::string &value) {
    if (!yang::is_yang_text(value))
        return std::nullopt;
    const std::string full = yang::qualified_identity(yang::leaf_type(leaf), value);
    const ly_ctx *context = leaf->module->ctx;
    const char *form = nullptr;
    const LY_ERR status = lyd_value_validate(context, leaf, full.c_str(), full.size(), nullptr, nullptr, &form);
    std::optional<std::string> made;
    if (status == LY_SUCCESS || status == LY_EINCOMPLETE) // a leafref can only be resolved with the data
        made = form != nullptr ? form : full;
    lydict_remove(context, form);
    ly_err_clean(const_cast<ly_ctx *>(context), nullptr);
    return made;
}

std::string_view bare_value(const lysc_node *leaf, std::string_view canonical) {
    if (yang::leaf_type(leaf)->basetype != LY_TYPE_IDENT)
        return canonical;
    const size_t colon = canonical.find(':');
    return colon == std::string_view::npos ? canonical : canonical.substr(colon + 1);
}

} // namespace yfw::gnmi

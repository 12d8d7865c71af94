#include "yang/value_text.h"

#include <cstdlib>
#include <cstring>

#include <libyang/plugins_types.h>

#include "yang/leaf_type.h"

namespace yfw::yang {
namespace {

constexpr size_t most_known = 4096;

// Whether its values may have prefixes, which JSON and XML write differently.
bool has_prefixes(const lysc_type &type) {
    switch (type.basetype) {
    case LY_TYPE_IDENT:
    case LY_TYPE_INST:
    case LY_TYPE_UNION:
        return true;
    case LY_TYPE_STRING: // of paths, too
        return type.plugin->print != lyplg_type_print_simple;
    default:
        return false;
    }
}

// A value that libyang holds in its own form.
class StoredValue {
public:
    StoredValue(const lysc_node *leaf, const char *text) : context_(leaf->module->ctx) {
        const lysc_type *type = leaf_type(leaf);
        ly_err_item *error = nullptr;
        const LY_ERR status = type->plugin->store(context_, type, text, std::strlen(text), 0, LY_VALUE_JSON,
                                                  nullptr, LYD_HINT_DATA, leaf, &value_, nullptr, &error);
        ly_err_free(error);
        is_stored_ = status == LY_SUCCESS || status == LY_EINCOMPLETE;
    }
    ~StoredValue() {
        if (is_stored_)
            value_.realtype->plugin->free(context_, &value_);
    }
    StoredValue(const StoredValue &) = delete;
    StoredValue &operator=(const StoredValue &) = delete;

    explicit operator bool() const { return is_stored_; }

    LY_DATA_TYPE type() const {
        const lyd_value *value = &value_;
        while (value->realtype->basetype == LY_TYPE_UNION)
            value = &value->subvalue->value;
        return value->realtype->basetype;
    }

    std::string text(LY_VALUE_FORMAT format, void *prefixes) const {
        ly_bool is_own = 0;
        const char *printed = static_cast<const char *>(
            value_.realtype->plugin->print(context_, &value_, format, prefixes, &is_own, nullptr));
        std::string text(printed != nullptr ? printed : "");
        if (is_own != 0)
            std::free(const_cast<char *>(printed));
        return text;
    }

private:
    const ly_ctx *context_;
    lyd_value value_{};
    bool is_stored_ = false;
};

} // namespace

LY_DATA_TYPE ValueTexts::plain_type(const lysc_node *leaf) {
    const auto [found, is_new] = types_.try_emplace(leaf, LY_TYPE_UNKNOWN);
    if (is_new && !has_prefixes(*leaf_type(leaf)))
        found->second = leaf_type(leaf)->basetype;
    return found->second;
}

const ValueText &ValueTexts::of(const lysc_node *leaf, const char *value) {
    auto &values = known_[leaf];
    const auto found = values.find(value);
    if (found != values.end())
        return found->second;
    if (++known_count_ > most_known) {
        known_.clear();
        known_count_ = 1;
    }
    return known_[leaf].emplace(value, resolve(leaf, value)).first->second;
}

ValueText ValueTexts::resolve(const lysc_node *leaf, const char *value) const {
    const StoredValue stored(leaf, value);
    if (!stored)
        return {value, "", LY_TYPE_STRING};
    if (format_ != LY_VALUE_XML)
        return {stored.text(format_, const_cast<lys_module *>(leaf->module)), "", stored.type()};
    ly_set modules{}; // those whose prefixes the text has
    ValueText made{stored.text(format_, &modules), "", stored.type()};
    for (uint32_t i = 0; i < modules.count; i++) {
        const auto *module = static_cast<const lys_module *>(modules.objs[i]);
        made.declarations.append(" xmlns:")
            .append(module->prefix)
            .append("=\"")
            .append(module->ns)
            .append("\"");
    }
    ly_set_erase(&modules, nullptr);
    return made;
}

} // namespace yfw::yang

#include "sources/lldpd/native_writer.h"

#include "base/error.h"
#include "yang/forest.h"
#include "yang/schemas.h"

namespace yfw::sources::lldpd {
namespace {

lyd_node *made(LY_ERR status, lyd_node *node, const ly_ctx *context, const char *name) {
    if (status != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, name,
                    "not allowed by the native models: " + yang::take_yang_error(context));
    return node;
}

const lys_module *module_of(const ly_ctx *context, const char *name) {
    const lys_module *module = ly_ctx_get_module_implemented(context, name);
    if (module == nullptr)
        throw Error(ErrorTag::operation_failed, name, "the native models lack this module");
    return module;
}

} // namespace

Inner::Inner(const ly_ctx *context, const char *module, const char *name, yang::DataTree &forest) {
    lyd_node *top = nullptr;
    const LY_ERR status = lyd_new_inner(nullptr, module_of(context, module), name, 0, &top);
    node_ = made(status, top, context, name);
    yang::join(forest, yang::DataTree(top));
}

Inner Inner::inner(const char *name, const char *module) const {
    const ly_ctx *context = node_->schema->module->ctx;
    const lys_module *of = module != nullptr ? module_of(context, module) : node_->schema->module;
    lyd_node *child = nullptr;
    const lysc_node *schema = lys_find_child(node_->schema, of, name, 0, LYS_LIST, 0);
    const LY_ERR status = schema != nullptr ? lyd_new_list(node_, of, name, 0, &child)
                                            : lyd_new_inner(node_, of, name, 0, &child);
    return Inner(made(status, child, context, name));
}

Inner Inner::entry(const char *list, const std::string &key) const {
    lyd_node *child = nullptr;
    const LY_ERR status = lyd_new_list(node_, nullptr, list, 0, &child, key.c_str());
    return Inner(made(status, child, node_->schema->module->ctx, list));
}

Inner Inner::entry(const char *list, const std::string &key, const std::string &second) const {
    lyd_node *child = nullptr;
    const LY_ERR status = lyd_new_list(node_, nullptr, list, 0, &child, key.c_str(), second.c_str());
    return Inner(made(status, child, node_->schema->module->ctx, list));
}

void Inner::leaf(const char *name, const std::string &value) const {
    lyd_node *child = nullptr;
    const LY_ERR status = lyd_new_term(node_, nullptr, name, value.c_str(), 0, &child);
    made(status, child, node_->schema->module->ctx, name);
}

} // namespace yfw::sources::lldpd

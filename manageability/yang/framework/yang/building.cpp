#include "yang/building.h"

#include "base/error.h"
#include "yang/schemas.h"

namespace yfw::yang {
namespace {

void check(LY_ERR status, const ly_ctx *context, const char *name) {
    if (status != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, name, take_yang_error(context));
}

} // namespace

DataTree make_top(const ly_ctx *context, const char *module, const char *name) {
    lyd_node *made = nullptr;
    check(lyd_new_inner(nullptr, ly_ctx_get_module_implemented(context, module), name, 0, &made), context,
          name);
    return DataTree(made);
}

lyd_node &add_container(lyd_node &parent, const char *name) {
    lyd_node *made = nullptr;
    check(lyd_new_inner(&parent, nullptr, name, 0, &made), LYD_CTX(&parent), name);
    return *made;
}

lyd_node &add_entry(lyd_node &parent, const char *name, const std::array<std::string, 3> &keys) {
    lyd_node *made = nullptr;
    check(lyd_new_list(&parent, nullptr, name, 0, &made, keys[0].c_str(), keys[1].c_str(), keys[2].c_str()),
          LYD_CTX(&parent), name);
    return *made;
}

void add_leaf(lyd_node &parent, const char *name, const std::string &value) {
    check(lyd_new_term(&parent, nullptr, name, value.c_str(), 0, nullptr), LYD_CTX(&parent), name);
}

} // namespace yfw::yang

// Edits of the access rules.
#include <algorithm>

#include "base/error.h"
#include "device/access/nacm_rules.h"
#include "yang/edit_apply.h"
#include "yang/schemas.h"
#include "yang/tree_text.h"

namespace yfw::access {
namespace {

bool touches_state(const yang::EditNode &edit) {
    return (edit.node->flags & LYS_CONFIG_R) != 0 ||
           std::any_of(edit.children.begin(), edit.children.end(), touches_state);
}

yang::DataTree parsed(const std::string &text, const ly_ctx *context) {
    lyd_node *data = nullptr;
    constexpr uint32_t as_configured = LYD_PARSE_STRICT | LYD_PARSE_ONLY | LYD_PARSE_NO_STATE;
    const LY_ERR status = lyd_parse_data_mem(context, text.c_str(), LYD_XML, as_configured, 0, &data);
    yang::DataTree owner(data);
    if (status != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, "/nacm", yang::take_yang_error(context));
    return owner;
}

yang::DataTree copy_of(const lyd_node *tree) {
    lyd_node *copy = nullptr;
    if (lyd_dup_single(tree, nullptr, LYD_DUP_RECURSIVE, &copy) != LY_SUCCESS)
        throw std::bad_alloc();
    return yang::DataTree(copy);
}

// Without any rule, an empty <nacm> remains.
yang::DataTree applied(const yang::EditNode &edit, const lyd_node *before) {
    yang::DataTree after = copy_of(before);
    yang::apply_edit(edit, after);
    if (after != nullptr)
        return after;
    lyd_node *empty = nullptr;
    if (lyd_new_inner(nullptr, edit.node->module, edit.node->name, 0, &empty) != LY_SUCCESS)
        throw std::bad_alloc();
    return yang::DataTree(empty);
}

std::string printed(const lyd_node *tree) {
    const yang::LibyangText text =
        yang::printed(tree, LYD_XML, LYD_PRINT_WD_EXPLICIT | LYD_PRINT_KEEPEMPTYCONT);
    return text.c_str();
}

} // namespace

yang::DataTree Nacm::tree(const ly_ctx *context) const {
    return parsed(current().text, context);
}

bool Nacm::edit(const yang::EditNode &edit, const RulesGuard &guard, bool only_test) {
    if (touches_state(edit))
        throw Error(ErrorTag::unknown_element, "/nacm", "its counters are state, which cannot be edited");
    const yang::DataTree before = tree(edit.node->module->ctx);
    yang::EditNode whole = edit;
    yang::drop_deleted_content(whole);
    yang::check_existence(whole, before.get());
    const yang::DataTree after = applied(whole, before.get());
    if (guard)
        guard(before.get(), after.get());
    const std::string text = printed(after.get());
    if (text == printed(before.get()))
        return false;
    Current next;
    try {
        next.rules =
            std::make_shared<const AccessRules>(read_access_rules(text, "/nacm", module_files_, modules_));
    } catch (const Error &error) {
        throw Error(ErrorTag::invalid_value, "/nacm", error.what());
    }
    if (only_test)
        return false;
    replace_rules_text(file_, text);
    next.text = text;
    next.version = current().version + 1;
    const std::lock_guard<std::mutex> lock(*mutex_);
    current_ = std::move(next);
    return true;
}

} // namespace yfw::access

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
    return yang::printed(tree, LYD_XML, LYD_PRINT_WD_EXPLICIT | LYD_PRINT_KEEPEMPTYCONT);
}

} // namespace

yang::DataTree Nacm::tree(const ly_ctx *context) const {
    return parsed(current().text, context);
}

Nacm::Change Nacm::changed_by(const yang::EditNode &edit, const RulesGuard &guard) const {
    if (touches_state(edit))
        throw Error(ErrorTag::unknown_element, "/nacm", "its counters are state, which cannot be edited");
    const yang::DataTree before = tree(edit.node->module->ctx);
    yang::EditNode whole = edit;
    yang::drop_deleted_content(whole);
    yang::check_existence(whole, before.get());
    const yang::DataTree after = applied(whole, before.get());
    if (guard)
        guard(before.get(), after.get());
    Change change;
    change.next_ = current();
    change.has_effect_ = printed(after.get()) != printed(before.get());
    if (!change.has_effect_)
        return change;
    change.next_.text = printed(after.get());
    change.next_.version++;
    try {
        change.next_.rules = std::make_shared<const AccessRules>(
            read_access_rules(change.next_.text, "/nacm", module_files_, modules_));
    } catch (const Error &error) {
        throw Error(ErrorTag::invalid_value, "/nacm", error.what());
    }
    return change;
}

void Nacm::write(Change &change) const {
    change.file_ = std::make_shared<NewRulesFile>(file_, change.next_.text);
}

void Nacm::put_into_force(Change change) {
    change.file_->replace_former();
    const std::lock_guard<std::mutex> lock(*mutex_);
    current_ = std::move(change.next_);
}

} // namespace yfw::access

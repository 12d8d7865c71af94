#include "random_edits.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace yfw::test {
namespace {

const std::string global = "/lldp/config/";
const std::string interface_enabled = "/lldp/interfaces/interface/config/enabled";
const std::string leaf_list = "suppress-tlv-advertisement";

std::string last_word(const std::string &text, char separator) {
    return text.substr(text.rfind(separator) + 1);
}

} // namespace

void PrintTo(const RandomEdit &edit, std::ostream *to) {
    *to << document_of(edit.lldp) << " by default " << edit.default_operation;
}

RandomEdits::RandomEdits(uint32_t seed, std::vector<LegalValue> values, std::vector<std::string> interfaces)
    : random_(seed), values_(std::move(values)), names_(std::move(interfaces)) {
    for (LegalValue &value : values_) {
        const std::string leaf = last_word(value.leaf, '/');
        if (value.leaf.starts_with(global) && (leaves_.empty() || leaves_.back() != leaf))
            leaves_.push_back(leaf);
        if (leaf == leaf_list)
            value.text = last_word(value.text, ':');
    }
}

size_t RandomEdits::choice(size_t below) {
    return random_() % below;
}

const LegalValue &RandomEdits::value_of(const std::string &leaf) {
    const bool may_be_refused = one_in(10);
    for (;;) {
        const LegalValue &value = values_[choice(values_.size())];
        if (value.leaf == leaf && (value.native_holds_it || may_be_refused))
            return value;
    }
}

void RandomEdits::add_leaf(PlainNode &config, const std::string &leaf, bool may_have_operation,
                           RandomEdit &edit) {
    const bool is_global = leaf != "enabled of an interface";
    PlainNode node{.name = is_global ? leaf : "enabled"};
    const LegalValue &value = value_of(is_global ? global + leaf : interface_enabled);
    if (may_have_operation)
        choose_operation(node, 2);
    const bool is_taken_away = node.operation == "delete" || node.operation == "remove";
    if (!is_taken_away || leaf == leaf_list)
        node.value = value.text;
    const bool is_new =
        std::none_of(config.children.begin(), config.children.end(), [&](const PlainNode &each) {
            return each.name == node.name && (leaf != leaf_list || each.value == node.value);
        });
    if (!is_new)
        return;
    edit.can_be_held = edit.can_be_held && (is_taken_away || value.native_holds_it);
    config.children.push_back(node);
}

bool RandomEdits::choose_operation(PlainNode &node, size_t one_in_so_many) {
    static const std::vector<std::string> operations{"merge", "replace", "create", "delete", "remove"};
    if (one_in(one_in_so_many))
        node.operation = operations[choice(operations.size())];
    return node.operation.empty() || node.operation == "merge";
}

PlainNode RandomEdits::config(bool may_have_operation, RandomEdit &edit) {
    PlainNode node{.name = "config"};
    if (may_have_operation)
        may_have_operation = choose_operation(node, 6);
    if (node.operation == "delete" || node.operation == "remove")
        return node;
    for (size_t count = 1 + choice(one_in(4) ? leaves_.size() : 2); count > 0; count--)
        add_leaf(node, leaves_[choice(leaves_.size())], may_have_operation, edit);
    return node;
}

PlainNode RandomEdits::interface(const std::string &name, bool may_have_operation, RandomEdit &edit) {
    PlainNode node{.name = "interface", .value = name};
    if (may_have_operation)
        may_have_operation = choose_operation(node, 4);
    if (node.operation == "delete" || node.operation == "remove" || one_in(8))
        return node;
    PlainNode settings{.name = "config"};
    if (may_have_operation)
        may_have_operation = choose_operation(settings, 8);
    if (settings.operation != "delete" && settings.operation != "remove") {
        if (one_in(2))
            settings.children.push_back({.name = "name", .value = name});
        if (!one_in(8))
            add_leaf(settings, "enabled of an interface", may_have_operation, edit);
    }
    node.children.push_back(settings);
    return node;
}

PlainNode RandomEdits::interfaces(bool may_have_operation, RandomEdit &edit) {
    PlainNode node{.name = "interfaces"};
    if (may_have_operation)
        may_have_operation = choose_operation(node, 16);
    if (node.operation == "delete" || node.operation == "remove")
        return node;
    for (const std::string &name : names_)
        if (one_in(names_.size()))
            node.children.push_back(interface(name, may_have_operation, edit));
    return node;
}

RandomEdit RandomEdits::next() {
    RandomEdit edit{.lldp = {.name = "lldp"}, .default_operation = "merge"};
    if (one_in(12))
        edit.default_operation = one_in(3) ? "replace" : "none";
    const bool may_have_operation = edit.default_operation != "replace" &&
                                    choose_operation(edit.lldp, edit.default_operation == "none" ? 1000 : 30);
    if (edit.lldp.operation == "delete" || edit.lldp.operation == "remove")
        return edit;
    const size_t part = choice(4);
    if (part != 0)
        edit.lldp.children.push_back(config(may_have_operation, edit));
    if (part <= 1)
        edit.lldp.children.push_back(interfaces(may_have_operation, edit));
    return edit;
}

} // namespace yfw::test

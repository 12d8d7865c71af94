// The fuzz target for edit documents. An input consists of
//
//   byte 0    the default operation: the characters '0' to '2' are merge, replace and none
//   the rest  the documents, XML or JSON, separated by lines of "----"
#include <algorithm>
#include <string>
#include <vector>

#include "base/error.h"
#include "fuzz/support/fuzz_target.h"
#include "fuzz/support/fuzzed_device.h"
#include "yang/comparison.h"
#include "yang/edit.h"
#include "yang/edit_instance.h"
#include "yang/node_kind.h"
#include "yang/tree_text.h"

namespace yfw::fuzz {
namespace {

using yang::DataTree;
using yang::EditNode;
using yang::Operation;

std::string text_of(const lyd_node *data) {
    return yang::printed(data, LYD_XML, LYD_PRINT_WITHSIBLINGS).c_str();
}

Operation default_operation(uint8_t byte) {
    constexpr Operation operations[]{Operation::merge, Operation::replace, Operation::none};
    return operations[byte % 3U];
}

// An identity may have been written without the name of its module.
bool has_value(const lyd_node *leaf, const std::string &value) {
    const std::string held = lyd_get_value(leaf);
    return lyd_value_compare(reinterpret_cast<const lyd_node_term *>(leaf), value.c_str(), value.size()) ==
               LY_SUCCESS ||
           held.ends_with(":" + value);
}

bool is_new_content(Operation operation) {
    return operation == Operation::replace || operation == Operation::create;
}

// The edit of this node; NULL when there is none.
const EditNode *edit_of(const lyd_node *data, const std::vector<EditNode> &edits) {
    const auto found = std::find_if(edits.begin(), edits.end(), [&](const EditNode &edit) {
        return edit.node == data->schema &&
               (edit.node->nodetype == LYS_LEAF || edit.node->nodetype == LYS_CONTAINER ||
                yang::find_instance(data, edit) == data);
    });
    return found == edits.end() ? nullptr : &*found;
}

// An edit, and the configuration before and after it.
class AcceptedEdit {
public:
    AcceptedEdit(const EditNode &edit, const DataTree &before, const DataTree &after)
        : edit_(edit), before_(before), after_(after) {}

    void check() const {
        check_read_back(edit_, after_.get());
        check_untouched(before_.get(), {edit_}, after_.get());
    }

private:
    void expect(bool holds, const std::string &what, const std::string &place) const {
        if (!holds)
            require(false, what,
                    place + "\n" + yang::print_edit(edit_) + "\n" + text_of(before_.get()) + "\n" +
                        text_of(after_.get()));
    }

    void check_read_back(const EditNode &edit, const lyd_node *siblings) const {
        const lyd_node *found = siblings != nullptr ? yang::find_instance(siblings, edit) : nullptr;
        if (yang::takes_away(edit.operation)) {
            expect(found == nullptr || yang::repeats_key(found), "A deleted node is still there.",
                   edit.node->name);
            return;
        }
        if (yang::is_term(edit.node) && edit.operation != Operation::none) {
            expect(found != nullptr, "A node that was set is not there.", edit.node->name);
            expect(has_value(found, *edit.value), "A node has another value than the one that was set.",
                   edit.node->name);
        }
        if (is_new_content(edit.operation) && found != nullptr)
            check_nothing_else(lyd_child(found), edit.children);
        for (const EditNode &child : edit.children)
            check_read_back(child, found != nullptr ? lyd_child(found) : nullptr);
    }

    // Below a node with new content there is only what the edit says, and what repeats a key.
    void check_nothing_else(const lyd_node *data, const std::vector<EditNode> &edits) const {
        for (; data != nullptr; data = data->next) {
            const EditNode *edit = edit_of(data, edits);
            const bool is_leaf = yang::is_term(data->schema);
            expect(!is_leaf || edit != nullptr || lysc_is_key(data->schema) || yang::repeats_key(data),
                   "A replaced node has other content than the edit.", yang::path_of(data));
            if (!is_leaf)
                check_nothing_else(lyd_child(data), edit != nullptr ? edit->children : std::vector<EditNode>());
        }
    }

    void check_untouched(const lyd_node *before, const std::vector<EditNode> &edits,
                         const lyd_node *after) const {
        for (; before != nullptr; before = before->next) {
            const EditNode *edit = edit_of(before, edits);
            const lyd_node *now = after != nullptr ? yang::counterpart(before, after) : nullptr;
            if (edit == nullptr)
                expect(now != nullptr &&
                           lyd_compare_single(before, now, LYD_COMPARE_FULL_RECURSION) == LY_SUCCESS,
                       "A node that the edit does not name has changed.", yang::path_of(before));
            else if (edit->operation == Operation::merge || edit->operation == Operation::none)
                check_untouched(lyd_child(before), edit->children, now != nullptr ? lyd_child(now) : nullptr);
        }
    }

    const EditNode &edit_;
    const DataTree &before_;
    const DataTree &after_;
};

// An edit as a whole without an operation has no printed form: an operation that is not written is merge.
void check_printed(const EditNode &edit) {
    if (edit.operation == Operation::none)
        return;
    const std::string printed = yang::print_edit(edit);
    try {
        const EditNode again = yang::parse_edit(shipped_schemas(), printed, Operation::none);
        require(yang::print_edit(again) == printed, "An edit that is printed and parsed is another edit.",
                printed + "\n" + yang::print_edit(again));
    } catch (const Error &error) {
        require(false, "An edit is refused when it is printed and parsed.", printed + "\n" + error.what());
    }
}

class EditedDevice {
public:
    explicit EditedDevice(FuzzedDevice &fuzzed) : fuzzed_(fuzzed) {}

    void take(const EditNode &edit) {
        const DataTree before = fuzzed_.read(host::Content::config);
        const int64_t last = fuzzed_.device().last_commit_number();
        const bool is_accepted = is_done(edit);
        const DataTree after = fuzzed_.read(host::Content::config);
        const bool is_changed = fuzzed_.device().last_commit_number() != last;
        if (is_accepted)
            AcceptedEdit(edit, before, after).check();
        if (!is_accepted || !is_changed)
            require(!is_changed && yang::is_same(before.get(), after.get()),
                    "An edit without a commit has changed the configuration.", yang::print_edit(edit));
        if (is_accepted)
            repeat(edit);
    }

private:
    bool is_done(const EditNode &edit) {
        try {
            fuzzed_.device().edit(edit, {"fuzzer", ""});
            return true;
        } catch (const Error &error) {
            require(*error.what() != '\0', "An edit is refused without a reason.",
                    yang::print_edit(edit) + "\n" + error.what());
            return false;
        }
    }

    // A repeated edit is refused, as it creates or deletes again, or it changes nothing.
    void repeat(const EditNode &edit) {
        const int64_t last = fuzzed_.device().last_commit_number();
        is_done(edit);
        require(fuzzed_.device().last_commit_number() == last, "A repeated edit makes a commit.",
                yang::print_edit(edit));
    }

    FuzzedDevice &fuzzed_;
};

std::vector<std::string> documents_of(std::string_view bytes) {
    constexpr std::string_view separator = "\n----\n";
    constexpr size_t most = 4;
    std::vector<std::string> documents;
    while (documents.size() < most) {
        const size_t end = bytes.find(separator);
        documents.emplace_back(bytes.substr(0, end));
        if (end == std::string_view::npos)
            break;
        bytes.remove_prefix(end + separator.size());
    }
    return documents;
}

} // namespace

void run(std::string_view bytes) {
    static FuzzedDevice fuzzed;
    Input input(bytes);
    const Operation operation = default_operation(input.byte());
    bool is_new = false; // the device, which is reset only when it is needed
    for (const std::string &document : documents_of(input.rest())) {
        try {
            const EditNode edit = yang::parse_edit(shipped_schemas(), document, operation);
            check_printed(edit);
            if (!is_new)
                fuzzed.begin_anew();
            is_new = true;
            EditedDevice(fuzzed).take(edit);
        } catch (const Error &error) {
            require(*error.what() != '\0', "An edit is refused without a reason.",
                    document + "\n" + error.what());
        }
    }
}

} // namespace yfw::fuzz

// The fuzz target for native instance data in files. An input is the content of a file, XML or JSON.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "base/error.h"
#include "base/private_directory.h"
#include "fuzz/support/fuzz_target.h"
#include "fuzz/support/fuzzed_device.h"
#include "sources/file/file_source.h"
#include "yang/comparison.h"
#include "yang/tree_text.h"

namespace yfw::fuzz {
namespace {

bool same_tree(const yang::InstanceNode *a, const yang::InstanceNode *b) {
    if (a->schema() != b->schema())
        return false;
    if (yang::is_term(a->schema()))
        return std::strcmp(a->value(), b->value()) == 0;
    const yang::InstanceNode *one = a->child();
    const yang::InstanceNode *other = b->child();
    for (; one != nullptr && other != nullptr; one = one->next(), other = other->next())
        if (!same_tree(one, other))
            return false;
    return one == nullptr && other == nullptr;
}

yang::DataTree read_back(const std::filesystem::path &file, const std::string &text) {
    write_file(file, text);
    return sources::FileSource({file}).read(shipped_schemas().context());
}

void check_printed(const yang::DataTree &data, LYD_FORMAT format, const std::filesystem::path &file) {
    const std::string text =
        yang::printed(data.get(), format, LYD_PRINT_WITHSIBLINGS | LYD_PRINT_KEEPEMPTYCONT);
    require(!text.empty(), "Accepted data cannot be printed.", "");
    try {
        const yang::DataTree again = read_back(file, text);
        require(yang::is_same(again.get(), data.get()), "Data that is printed and read again differs.", text);
    } catch (const Error &error) {
        require(false, "Accepted data is refused when it is printed and read again.",
                text + "\n" + error.what());
    }
}

// The trees, those of one node in their order.
std::vector<const yang::InstanceNode *> trees_of(const yang::InstanceForest &forest) {
    std::vector<const yang::InstanceNode *> trees;
    for (const yang::InstanceNode *top = forest.first(); top != nullptr; top = top->next())
        trees.push_back(top);
    std::stable_sort(trees.begin(), trees.end(), [](const auto *a, const auto *b) {
        return std::less<const lysc_node *>{}(a->schema(), b->schema());
    });
    return trees;
}

// Both ways to read a device find the same.
void check_snapshot(const yang::DataTree &data, const std::filesystem::path &file, const std::string &text) {
    const sources::Snapshot snapshot = sources::FileSource({file}).snapshot(shipped_schemas().context());
    const yang::SharedForest wanted = yang::instance_forest(data.get());
    const std::vector<const yang::InstanceNode *> trees = trees_of(*snapshot.data);
    const std::vector<const yang::InstanceNode *> others = trees_of(*wanted);
    require(std::equal(trees.begin(), trees.end(), others.begin(), others.end(), same_tree),
            "A snapshot differs from the data.", text);
}

} // namespace

void run(std::string_view bytes) {
    static const PrivateDirectory directory("yfw-fuzz");
    const std::filesystem::path file = directory.path() / "native";
    const std::string text(bytes);
    try {
        const yang::DataTree data = read_back(file, text);
        check_snapshot(data, file, text);
        if (data == nullptr)
            return;
        check_printed(data, LYD_XML, file);
        check_printed(data, LYD_JSON, file);
    } catch (const Error &error) {
        require(error.path() == file.string(), "A refusal does not name the file.", text + "\n" + error.path());
        require(is_one_line(error.what()), "A refusal is not one line.", text + "\n" + error.what());
    }
}

} // namespace yfw::fuzz

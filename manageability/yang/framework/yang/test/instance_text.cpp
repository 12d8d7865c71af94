#include "instance_text.h"

#include <algorithm>
#include <vector>

#include "yang/text_writer.h"

namespace yfw::yang::test {
namespace {

void write(const InstanceNode &node, TreeWriter &to) {
    if (is_term(node.schema()))
        return to.leaf(node.schema(), node.value());
    to.open(node.schema());
    for (const InstanceNode *child = node.child(); child != nullptr; child = child->next())
        write(*child, to);
    to.close();
}

} // namespace

std::string text_of(const InstanceForest &forest) {
    std::vector<std::string> trees;
    for (const InstanceNode *top = forest.first(); top != nullptr; top = top->next()) {
        std::string &text = trees.emplace_back();
        XmlWriter writer([&text](std::string_view piece) { text += piece; }, Layout::compact);
        write(*top, writer);
        writer.finish();
    }
    std::sort(trees.begin(), trees.end());
    std::string text;
    for (const std::string &tree : trees)
        text += tree;
    return text;
}

} // namespace yfw::yang::test

#include "instance_text.h"

#include <algorithm>
#include <vector>

#include "yang/instance_data.h"
#include "yang/text_writer.h"

namespace yfw::yang::test {
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

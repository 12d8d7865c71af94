#include "yang/instance_data.h"

#include <string>

#include "yang/text_writer.h"
#include "yang/tree_text.h"

namespace yfw::yang {

void write(const InstanceNode &tree, TreeWriter &to) {
    if (is_term(tree.schema()))
        return to.leaf(tree.schema(), tree.value());
    to.open(tree.schema());
    for (const InstanceNode *child = tree.child(); child != nullptr; child = child->next())
        write(*child, to);
    to.close();
}

DataTree configuration_in(const InstanceForest &forest) {
    std::string text;
    const ly_ctx *context = nullptr;
    XmlWriter writer([&text](std::string_view piece) { text += piece; }, Layout::compact);
    for (const InstanceNode *top = forest.first(); top != nullptr; top = top->next())
        if ((top->schema()->flags & LYS_CONFIG_W) != 0) {
            context = top->schema()->module->ctx;
            write(*top, writer);
        }
    writer.finish();
    return context != nullptr
               ? parse_data(context, text, LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_STRICT | LYD_PARSE_ORDERED)
               : nullptr;
}

} // namespace yfw::yang

// A settled answer, node by node.
#ifndef YFW_HOST_ANSWER_DATA_H
#define YFW_HOST_ANSWER_DATA_H

#include "host/answer_tree.h"
#include "yang/data_tree.h"
#include "yang/tree_writer.h"

namespace yfw::host {

// The tree, which settle() has reduced, as libyang's data; NULL when nothing is left of it.
yang::DataTree data_of(const AnswerTree &tree);

// Writes it; calls nothing when nothing is left of it.
void write(const AnswerTree &tree, yang::TreeWriter &to);

} // namespace yfw::host

#endif

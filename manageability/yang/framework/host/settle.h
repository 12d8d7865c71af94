// The last step of an answer: it is reduced to what was requested and what the model allows.
#ifndef YFW_HOST_SETTLE_H
#define YFW_HOST_SETTLE_H

#include <string>
#include <vector>

#include "host/answer_tree.h"
#include "host/request.h"

namespace yfw::host {

// Removes from the tree what `selection` and `content` do not select, values that the model does not allow,
// list entries without usable keys or with those of an earlier entry, and containers that this leaves empty.
// What is left has canonical values. One line in `warnings` for whatever was selected and is left out. Nothing
// can be added to the tree afterwards.
void settle(AnswerTree &tree, const Selection &selection, Content content, std::vector<std::string> &warnings);

} // namespace yfw::host

#endif

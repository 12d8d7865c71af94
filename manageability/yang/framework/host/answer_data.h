// The finished answer as libyang data, filtered to the request and with every value checked once.
#ifndef YFW_HOST_ANSWER_DATA_H
#define YFW_HOST_ANSWER_DATA_H

#include <string>
#include <vector>

#include "host/answer_tree.h"
#include "host/request.h"
#include "yang/data_tree.h"

namespace yfw::host {

// Builds the data of `tree` that `selection` and `content` select; NULL when nothing is selected. Omits values
// that the model does not allow, and list entries without usable keys, with one line each in `warnings`.
yang::DataTree make_answer(const AnswerTree &tree, const Selection &selection, Content content,
                           std::vector<std::string> &warnings);

} // namespace yfw::host

#endif

// Reads OpenConfig LLDP answers for the picture of a network.
#ifndef YFW_FRONTENDS_PICTURES_TOPOLOGY_ANSWER_H
#define YFW_FRONTENDS_PICTURES_TOPOLOGY_ANSWER_H

#include <string>

#include "frontends/pictures/topology_model.h"
#include "yang/data_tree.h"

namespace yfw::pictures {

// What an answer to /lldp says about a device and its neighbors. `answer` may be NULL, which gives an empty
// report.
Report read_answer(const std::string &place, const lyd_node *answer);

} // namespace yfw::pictures

#endif

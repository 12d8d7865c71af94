// Neighbors in an answer.
#ifndef HOST_TEST_NEIGHBOR_ANSWERS_H
#define HOST_TEST_NEIGHBOR_ANSWERS_H

#include <set>
#include <string>
#include <vector>

#include "data_texts.h"
#include "neighbor_tables.h"

namespace yfw::host::test {

// The entries of the list of interfaces.
std::vector<const lyd_node *> interfaces_of(const lyd_node *answer);

// The value of the entry's first key.
std::string key_of(const lyd_node *entry);

// All neighbors, as often as they are there.
std::multiset<NeighborKey> neighbors_in(const lyd_node *answer);

// The lines of one interface's entry; of its neighbor `id`, if given. Empty when there is none.
Lines held_for(const lyd_node *answer, const std::string &interface, const Text &id = {});

// What to ask for.
std::string entry_path(const std::string &interface);
std::string neighbor_path(const NeighborKey &key);

} // namespace yfw::host::test

#endif

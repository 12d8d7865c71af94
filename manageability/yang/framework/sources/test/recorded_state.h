// A recorded router in the structures that lldpd's state is read into.
#ifndef YFW_SOURCES_TEST_RECORDED_STATE_H
#define YFW_SOURCES_TEST_RECORDED_STATE_H

#include <filesystem>
#include <string>

#include "sources/lldpd/lldpd_state.h"

namespace yfw::sources::test {

// Reads ROUTER-neighbors.json and the other files that lldpcli wrote. Throws what nlohmann_json throws.
lldpd::State recorded_state(const std::filesystem::path &recordings, const std::string &router);

} // namespace yfw::sources::test

#endif

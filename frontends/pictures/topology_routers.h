// Distinguishes routers by what they and their neighbors report.
#ifndef YFW_FRONTENDS_PICTURES_TOPOLOGY_ROUTERS_H
#define YFW_FRONTENDS_PICTURES_TOPOLOGY_ROUTERS_H

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "frontends/pictures/topology_model.h"

namespace yfw::pictures {

// Routers that can be looked up by name and chassis id.
class RouterIndex {
public:
    void add(const std::string &system_name, const std::string &chassis_id, size_t router);

    // The router with both, else the only one with this name, else the only one with this chassis id. An empty
    // text means unknown and matches nothing by itself.
    std::optional<size_t> find(const std::string &system_name, const std::string &chassis_id) const;

    // The router that was added with exactly this name and chassis id.
    std::optional<size_t> find_exactly(const std::string &system_name, const std::string &chassis_id) const;

private:
    using Index = std::unordered_map<std::string, std::vector<size_t>>;
    static std::optional<size_t> only(const Index &index, const std::string &key);

    Index by_both_;
    Index by_name_;
    Index by_chassis_;
};

// The router behind each report and each neighbor: routers[reports[i]] made report i, and
// routers[neighbors[i][j][k]] is the k-th neighbor on its j-th interface.
struct RouterAssignment {
    std::vector<Router> routers; // not yet sorted
    std::vector<size_t> reports;
    std::vector<std::vector<std::vector<size_t>>> neighbors;
};

RouterAssignment assign_routers(const std::vector<Report> &reports);

} // namespace yfw::pictures

#endif

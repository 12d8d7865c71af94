// Telling routers apart by what they and their neighbors say of them.
#ifndef YFW_FRONTENDS_PICTURES_TOPOLOGY_ROUTERS_H
#define YFW_FRONTENDS_PICTURES_TOPOLOGY_ROUTERS_H

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "frontends/pictures/topology_model.h"

namespace yfw::pictures {

// Routers that can be looked up by their names and chassis ids.
class RouterIndex {
public:
    void add(const std::string &system_name, const std::string &chassis_id, size_t router);

    // The router with both, else the only one with this name, else the only one with this chassis id. An empty
    // text is not known and finds nothing by itself.
    std::optional<size_t> find(const std::string &system_name, const std::string &chassis_id) const;

    // The router that was added with exactly these two.
    std::optional<size_t> find_exactly(const std::string &system_name, const std::string &chassis_id) const;

private:
    using Index = std::unordered_map<std::string, std::vector<size_t>>;
    static std::optional<size_t> only(const Index &index, const std::string &key);

    Index by_both_;
    Index by_name_;
    Index by_chassis_;
};

// Which router each report and each neighbor is: routers[reports[i]] reported, and
// routers[neighbors[i][j][k]] is the k-th neighbor of its j-th interface.
struct RouterAssignment {
    std::vector<Router> routers; // not sorted yet
    std::vector<size_t> reports;
    std::vector<std::vector<std::vector<size_t>>> neighbors;
};

RouterAssignment assign_routers(const std::vector<Report> &reports);

} // namespace yfw::pictures

#endif

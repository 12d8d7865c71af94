#include "frontends/pictures/topology_routers.h"

#include <functional>
#include <unordered_set>

namespace yfw::pictures {
namespace {

constexpr size_t unassigned = static_cast<size_t>(-1);

// A NUL separates the two: no text in an answer contains one.
std::string both(const std::string &system_name, const std::string &chassis_id) {
    return system_name + '\0' + chassis_id;
}

using Visit = std::function<void(const Neighbor &, size_t &router)>;

class Assigner {
public:
    explicit Assigner(const std::vector<Report> &reports) : reports_(reports) {}

    // Assigns the most informative neighbors first, so that the order of the reports does not matter.
    RouterAssignment assign() {
        assign_reports();
        for_each_unassigned([this](const Neighbor &neighbor, size_t &router) {
            router = read_.find(neighbor.system_name, neighbor.chassis_id).value_or(unassigned);
        });
        for_each_unassigned([this](const Neighbor &neighbor, size_t &router) {
            if (!neighbor.system_name.empty() && !neighbor.chassis_id.empty())
                router = unread_router(neighbor);
        });
        for_each_unassigned(
            [this](const Neighbor &neighbor, size_t &router) { router = unread_router(neighbor); });
        make_labels_unique();
        return std::move(assignment_);
    }

private:
    void assign_reports() {
        for (const Report &report : reports_) {
            auto router = read_.find_exactly(report.system_name, report.chassis_id);
            if (!router) {
                const std::string &label = !report.system_name.empty()  ? report.system_name
                                           : !report.chassis_id.empty() ? report.chassis_id
                                                                        : report.place;
                router = add({label, report.system_name, report.chassis_id, true}, read_);
            }
            assignment_.reports.push_back(*router);
            auto &interfaces = assignment_.neighbors.emplace_back();
            for (const Interface &interface : report.interfaces)
                interfaces.emplace_back(interface.neighbors.size(), unassigned);
        }
    }

    void for_each_unassigned(const Visit &visit) {
        for (size_t i = 0; i < reports_.size(); i++) {
            for (size_t j = 0; j < reports_[i].interfaces.size(); j++) {
                const auto &neighbors = reports_[i].interfaces[j].neighbors;
                for (size_t k = 0; k < neighbors.size(); k++)
                    if (size_t &router = assignment_.neighbors[i][j][k]; router == unassigned)
                        visit(neighbors[k], router);
            }
        }
    }

    size_t unread_router(const Neighbor &neighbor) {
        const bool complete = !neighbor.system_name.empty() && !neighbor.chassis_id.empty();
        const auto known = complete ? unread_.find_exactly(neighbor.system_name, neighbor.chassis_id)
                                    : unread_.find(neighbor.system_name, neighbor.chassis_id);
        if (known)
            return *known;
        const std::string &label = !neighbor.system_name.empty()  ? neighbor.system_name
                                   : !neighbor.chassis_id.empty() ? neighbor.chassis_id
                                                                  : neighbor.id;
        return add({label, neighbor.system_name, neighbor.chassis_id, false}, unread_);
    }

    size_t add(Router router, RouterIndex &index) {
        const size_t number = assignment_.routers.size();
        index.add(router.system_name, router.chassis_id, number);
        assignment_.routers.push_back(std::move(router));
        return number;
    }

    // Routers with the same name also show their chassis ids, and a number where that is not enough.
    void make_labels_unique() {
        std::unordered_map<std::string, size_t> uses;
        for (const Router &router : assignment_.routers)
            uses[router.label]++;
        std::unordered_set<std::string> taken;
        for (Router &router : assignment_.routers) {
            if (uses[router.label] > 1 && !router.chassis_id.empty() && router.label != router.chassis_id)
                router.label += " (" + router.chassis_id + ')';
            const std::string label = router.label;
            for (size_t number = 2; !taken.insert(router.label).second; number++)
                router.label = label + " #" + std::to_string(number);
        }
    }

    const std::vector<Report> &reports_;
    RouterAssignment assignment_;
    RouterIndex read_;
    RouterIndex unread_;
};

} // namespace

void RouterIndex::add(const std::string &system_name, const std::string &chassis_id, size_t router) {
    if (system_name.empty() && chassis_id.empty())
        return;
    by_both_[both(system_name, chassis_id)].push_back(router);
    if (!system_name.empty())
        by_name_[system_name].push_back(router);
    if (!chassis_id.empty())
        by_chassis_[chassis_id].push_back(router);
}

std::optional<size_t> RouterIndex::find(const std::string &system_name, const std::string &chassis_id) const {
    if (const auto router = find_exactly(system_name, chassis_id))
        return router;
    if (const auto router = only(by_name_, system_name))
        return router;
    return only(by_chassis_, chassis_id);
}

std::optional<size_t> RouterIndex::find_exactly(const std::string &system_name,
                                                const std::string &chassis_id) const {
    return only(by_both_, both(system_name, chassis_id));
}

std::optional<size_t> RouterIndex::only(const Index &index, const std::string &key) {
    const auto found = index.find(key);
    if (found == index.end() || found->second.size() != 1)
        return std::nullopt;
    return found->second.front();
}

RouterAssignment assign_routers(const std::vector<Report> &reports) {
    return Assigner(reports).assign();
}

} // namespace yfw::pictures

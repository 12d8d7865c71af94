#include "frontends/pictures/topology_model.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <optional>
#include <set>
#include <tuple>

#include "frontends/pictures/topology_routers.h"

namespace yfw::pictures {
namespace {

// Disjoint sets of numbers: things that belong together.
class DisjointSets {
public:
    explicit DisjointSets(size_t count) : parents_(count) {
        std::iota(parents_.begin(), parents_.end(), size_t{0});
    }

    size_t find(size_t item) {
        while (parents_[item] != item) {
            parents_[item] = parents_[parents_[item]];
            item = parents_[item];
        }
        return item;
    }

    void join(size_t a, size_t b) { parents_[find(a)] = find(b); }

private:
    std::vector<size_t> parents_;
};

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

// Takes the number off the start of `text` and returns it without leading zeros.
std::string_view take_number(std::string_view &text) {
    const size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
    std::string_view number = text.substr(0, end);
    text.remove_prefix(end);
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

// Ports under construction.
class PortTable {
public:
    size_t get(size_t router, const std::string &name) { return get({router, name, std::nullopt}); }

    // A port with an unknown name: a separate one for each port that hears it.
    size_t add_nameless(size_t router, size_t heard_by) { return get({router, "", heard_by}); }

    bool has(size_t router, const std::string &name) const {
        return ports_by_key_.contains({router, name, std::nullopt});
    }

    std::vector<Port> &ports() { return ports_; }

    // The port's sort key: its name, or that of the port that hears it.
    std::pair<size_t, std::string_view> order_of(size_t port, const std::vector<size_t> &router_order) const {
        const auto heard_by = heard_by_[port];
        if (!heard_by)
            return {0, ports_[port].name};
        return {1 + router_order[ports_[*heard_by].router], ports_[*heard_by].name};
    }

private:
    using Key = std::tuple<size_t, std::string, std::optional<size_t>>;

    size_t get(const Key &key) {
        const auto [place, added] = ports_by_key_.try_emplace(key, ports_.size());
        if (added) {
            ports_.push_back({std::get<0>(key), std::get<1>(key), {}});
            heard_by_.push_back(std::get<2>(key));
        }
        return place->second;
    }

    std::map<Key, size_t> ports_by_key_;
    std::vector<Port> ports_;
    std::vector<std::optional<size_t>> heard_by_;
};

// The numbers from 0 to `count` - 1, sorted by `before`.
template <class Before> std::vector<size_t> sorted_numbers(size_t count, Before before) {
    std::vector<size_t> order(count);
    std::iota(order.begin(), order.end(), size_t{0});
    std::stable_sort(order.begin(), order.end(), before);
    return order;
}

// Moves the items into that order and returns each item's new position.
template <class Item>
std::vector<size_t> move_sorted(std::vector<Item> &from, const std::vector<size_t> &order,
                                std::vector<Item> &to) {
    std::vector<size_t> places(order.size());
    for (size_t place = 0; place < order.size(); place++) {
        places[order[place]] = place;
        to.push_back(std::move(from[order[place]]));
    }
    return places;
}

class Builder {
public:
    explicit Builder(const std::vector<Report> &reports)
        : reports_(reports), assignment_(assign_routers(reports)) {}

    Topology build() {
        add_interfaces();
        add_named_ports();
        add_other_ports();
        sort();
        add_segments();
        count_networks();
        return std::move(topology_);
    }

private:
    struct Unnamed {
        size_t by;
        size_t router;
        const Neighbor *neighbor;
    };

    void add_interfaces() {
        for (size_t i = 0; i < reports_.size(); i++)
            for (const Interface &interface : reports_[i].interfaces)
                table_.get(assignment_.reports[i], interface.name);
    }

    // Handles neighbors whose port id or description names an interface of a read router; leaves the others for
    // the next step.
    void add_named_ports() {
        for (size_t i = 0; i < reports_.size(); i++) {
            for (size_t j = 0; j < reports_[i].interfaces.size(); j++) {
                const Interface &interface = reports_[i].interfaces[j];
                const size_t by = table_.get(assignment_.reports[i], interface.name);
                for (size_t k = 0; k < interface.neighbors.size(); k++)
                    add_named_port(by, assignment_.neighbors[i][j][k], interface.neighbors[k]);
            }
        }
    }

    void add_named_port(size_t by, size_t router, const Neighbor &neighbor) {
        if (assignment_.routers[router].read) {
            for (const std::string *name : {&neighbor.port_id, &neighbor.port_description}) {
                if (!name->empty() && table_.has(router, *name)) {
                    see(by, table_.get(router, *name), neighbor);
                    return;
                }
            }
        }
        unnamed_.push_back({by, router, &neighbor});
    }

    // A neighbor's unknown port id means the interface that hears the observer, if there is exactly one of
    // each.
    void add_other_ports() {
        std::map<std::pair<size_t, size_t>, std::set<size_t>> listeners; // by observer and its neighbor
        for (const Sighting &sighting : sightings_)
            listeners[{sighting.of, table_.ports()[sighting.by].router}].insert(sighting.by);
        std::map<std::pair<size_t, size_t>, std::set<std::string>> words; // by observer and its neighbor
        for (const Unnamed &unnamed : unnamed_)
            words[{unnamed.by, unnamed.router}].insert(unnamed.neighbor->port_id);
        const std::set<Sighting> named = sightings_;
        for (const Unnamed &unnamed : unnamed_) {
            const std::string &name = unnamed.neighbor->port_id;
            const std::set<size_t> &candidates = listeners[{unnamed.by, unnamed.router}];
            const bool known = candidates.size() == 1 && words[{unnamed.by, unnamed.router}].size() == 1 &&
                               !named.contains({unnamed.by, *candidates.begin()});
            const size_t port = known          ? *candidates.begin()
                                : name.empty() ? table_.add_nameless(unnamed.router, unnamed.by)
                                               : table_.get(unnamed.router, name);
            see(unnamed.by, port, *unnamed.neighbor);
        }
    }

    void see(size_t by, size_t of, const Neighbor &neighbor) {
        const std::string &port_id = neighbor.port_id;
        sightings_.insert({by, of});
        heard_.try_emplace({by, of}, &neighbor);
        Port &port = table_.ports()[of];
        if (!port_id.empty() && port_id != port.name)
            port.announced_as.push_back(port_id);
    }

    void sort() {
        std::vector<Router> &routers = assignment_.routers;
        const std::vector<size_t> router_order =
            move_sorted(routers,
                        sorted_numbers(routers.size(),
                                       [&](size_t a, size_t b) {
                                           return natural_less(routers[a].label, routers[b].label);
                                       }),
                        topology_.routers);
        const std::vector<size_t> port_order = sort_ports(router_order);
        std::set<Sighting> moved;
        for (const Sighting &sighting : sightings_)
            moved.insert({port_order[sighting.by], port_order[sighting.of]});
        for (const auto &[sighting, neighbor] : heard_)
            topology_.heard.insert({{port_order[sighting.by], port_order[sighting.of]}, *neighbor});
        sightings_ = std::move(moved);
    }

    std::vector<size_t> sort_ports(const std::vector<size_t> &router_order) {
        std::vector<Port> &ports = table_.ports();
        const std::vector<size_t> order = sorted_numbers(ports.size(), [&](size_t a, size_t b) {
            if (ports[a].router != ports[b].router)
                return router_order[ports[a].router] < router_order[ports[b].router];
            const auto x = table_.order_of(a, router_order), y = table_.order_of(b, router_order);
            return x.first != y.first ? x.first < y.first : natural_less(x.second, y.second);
        });
        for (Port &port : ports) {
            port.router = router_order[port.router];
            auto &words = port.announced_as;
            std::sort(words.begin(), words.end());
            words.erase(std::unique(words.begin(), words.end()), words.end());
        }
        return move_sorted(ports, order, topology_.ports);
    }

    void add_segments() {
        DisjointSets connected(topology_.ports.size());
        std::vector<bool> in_use(topology_.ports.size());
        for (const Sighting &sighting : sightings_) {
            connected.join(sighting.by, sighting.of);
            in_use[sighting.by] = in_use[sighting.of] = true;
        }
        std::map<size_t, size_t> segments; // by the set of connected ports
        for (size_t port = 0; port < topology_.ports.size(); port++) {
            if (!in_use[port])
                continue;
            const auto [place, added] = segments.try_emplace(connected.find(port), topology_.segments.size());
            if (added)
                topology_.segments.emplace_back();
            topology_.segments[place->second].ports.push_back(port);
        }
        for (const Sighting &sighting : sightings_)
            topology_.segments[segments.at(connected.find(sighting.by))].sightings.push_back(sighting);
    }

    void count_networks() {
        DisjointSets connected(topology_.routers.size());
        for (const Segment &segment : topology_.segments)
            for (const size_t port : segment.ports)
                connected.join(topology_.ports[port].router, topology_.ports[segment.ports.front()].router);
        for (size_t router = 0; router < topology_.routers.size(); router++)
            topology_.networks += connected.find(router) == router ? 1 : 0;
    }

    const std::vector<Report> &reports_;
    RouterAssignment assignment_;
    PortTable table_;
    std::set<Sighting> sightings_;
    std::map<Sighting, const Neighbor *> heard_;
    std::vector<Unnamed> unnamed_;
    Topology topology_;
};

} // namespace

bool Segment::sees(size_t by, size_t of) const {
    return std::binary_search(sightings.begin(), sightings.end(), Sighting{by, of});
}

bool natural_less(std::string_view a, std::string_view b) {
    std::string_view left = a, right = b;
    while (!left.empty() && !right.empty()) {
        if (is_digit(left.front()) && is_digit(right.front())) {
            const std::string_view x = take_number(left), y = take_number(right);
            if (x != y)
                return x.size() != y.size() ? x.size() < y.size() : x < y;
            continue;
        }
        if (left.front() != right.front())
            return left.front() < right.front();
        left.remove_prefix(1);
        right.remove_prefix(1);
    }
    if (left.empty() != right.empty())
        return left.empty();
    return a < b; // equal except for leading zeros
}

Topology build(const std::vector<Report> &reports) {
    return Builder(reports).build();
}

} // namespace yfw::pictures

// Random tables of neighbors: hostile names, any numbers.
#pragma once

#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace yfw::test {

/// One announcement, and the neighbor's expected id in the answer.
struct RandomNeighbor {
    std::string interface;
    std::string device;
    std::optional<std::string> port;

    std::string id() const;
};

/// The same seed gives the same tables.
class RandomTable {
public:
    explicit RandomTable(unsigned seed) : engine_(seed) {}

    /// No two have the same device on the same interface.
    std::vector<RandomNeighbor> make(std::size_t count);
    /// What a neighbor announces, as the last argument of native_neighbor().
    std::string announcement(const RandomNeighbor &neighbor);

private:
    unsigned number() { return static_cast<unsigned>(engine_()); }
    unsigned long long wide() { return static_cast<unsigned long long>(number()) << (number() % 33); }
    const std::string &pick(const std::vector<std::string> &texts) { return texts[number() % texts.size()]; }

    std::mt19937 engine_;
};

} // namespace yfw::test

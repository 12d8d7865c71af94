#include "yang/near_name.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <vector>

namespace yfw::yang {
namespace {

// How many characters are added, left out, replaced or swapped with the next one; letter case does not count.
size_t distance(std::string_view a, std::string_view b) {
    const auto same = [&](size_t i, size_t j) {
        return std::tolower(static_cast<unsigned char>(a[i])) == std::tolower(static_cast<unsigned char>(b[j]));
    };
    std::vector<size_t> before, last, row(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < a.size(); i++) {
        before = std::move(last);
        last = row;
        row[0] = i + 1;
        for (size_t j = 0; j < b.size(); j++) {
            row[j + 1] = std::min({last[j] + (same(i, j) ? 0 : 1), last[j + 1] + 1, row[j] + 1});
            if (i > 0 && j > 0 && same(i, j - 1) && same(i - 1, j))
                row[j + 1] = std::min(row[j + 1], before[j - 1] + 1);
        }
    }
    return row.back();
}

// Remembers the name that is spelled most like another one.
class Nearest {
public:
    explicit Nearest(std::string_view name) : name_(name), least_(std::max<size_t>(1, name.size() / 3) + 1) {}

    void consider(const char *candidate) {
        const size_t found = distance(name_, candidate);
        if (found < least_ && found < name_.size()) {
            nearest_ = candidate;
            least_ = found;
        }
    }

    const std::string &name() const { return nearest_; }

private:
    std::string_view name_;
    size_t least_;
    std::string nearest_;
};

void consider_all(Nearest &nearest, const lysc_node *parent) {
    for (const lysc_node *child = lysc_node_child(parent); child != nullptr; child = child->next) {
        nearest.consider(child->name);
        consider_all(nearest, child);
    }
}

// The path of the first node by that name below `parent`; empty when there is none.
std::string path_below(const lysc_node *parent, std::string_view name) {
    for (const lysc_node *child = lysc_node_child(parent); child != nullptr; child = child->next) {
        if (name == child->name)
            return child->name;
        if (const std::string rest = path_below(child, name); !rest.empty())
            return std::string(child->name) + "/" + rest;
    }
    return "";
}

} // namespace

std::string near_child(const lysc_node *parent, std::string_view name) {
    Nearest nearest(name);
    for (const lysc_node *child = lysc_node_child(parent); child != nullptr; child = child->next)
        nearest.consider(child->name);
    return nearest.name().empty() ? path_below(parent, name) : nearest.name();
}

std::string near_descendant(const lysc_node *top, std::string_view name) {
    Nearest nearest(name);
    consider_all(nearest, top);
    return nearest.name();
}

} // namespace yfw::yang

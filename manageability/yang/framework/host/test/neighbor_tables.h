// Native operational data as a test describes it, and the neighbor ids that the mapping gives it.
#ifndef HOST_TEST_NEIGHBOR_TABLES_H
#define HOST_TEST_NEIGHBOR_TABLES_H

#include <map>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace yfw::host::test {

using Text = std::optional<std::string>; // a leaf; nothing when it is absent

// Leaf names and values, in the device's order.
using LeafTexts = std::vector<std::pair<std::string, std::string>>;

struct Tlv {
    Text oui, subtype, value;
};

struct Announcement {
    Text port;
    LeafTexts leaves = {}; // besides device-id and port-id-detail
    LeafTexts detail = {};
    LeafTexts mib = {};
    LeafTexts addresses = {}; // ipv4-address or ipv6-address, each an entry of its own
    std::vector<Tlv> tlvs = {};
};

// A neighbor on an interface of one node; interface and device are its keys there.
struct Detail {
    std::string interface;
    std::string device;
    std::vector<Announcement> announcements;
};

struct Interface {
    std::string name;
    LeafTexts leaves = {};
    LeafTexts stats = {};
};

struct Card {
    std::string name;
    std::vector<Detail> details = {};
    std::vector<Interface> interfaces = {};
    LeafTexts statistics = {};
};

struct Table {
    std::vector<Card> cards;
    LeafTexts system = {}; // what the device announces about itself

    // As instance data.
    std::string xml() const;
    size_t neighbors() const;
};

template <class Visit> void for_each_announcement(const Table &table, Visit &&visit) {
    for (const Card &card : table.cards)
        for (const Detail &detail : card.details)
            for (const Announcement &made : detail.announcements)
                visit(detail, made);
}

// The id that an announcement has in OpenConfig: device, "#" and port, at most 255 characters.
std::string neighbor_id(const std::string &device, const Text &port);

// An OpenConfig neighbor: its interface and its id.
using NeighborKey = std::pair<std::string, std::string>;

// The keys of all announcements that have one, each with the number of announcements that share it.
std::map<NeighborKey, int> neighbor_keys(const Table &table);

// Whether the text ends inside a multi-byte UTF-8 character.
bool ends_inside_a_character(const std::string &text);

// Whether a read of that id, on one interface or on all, finds exactly one announcement, and no other has the
// id. The mapping asks the device for the part of the id before the first "#" and compares the part after it
// with the announcement's port, if any; it answers from the first announcement that it finds.
bool meets_its_own_alone(const Table &table, const std::string &id, const Text &interface = {});

// A table of about `neighbors` neighbors with all kinds of values that devices announce; all subtypes are
// valid.
Table random_table(std::mt19937 &random, int neighbors);

// The value as a quoted path literal.
std::string quoted(const std::string &value);

} // namespace yfw::host::test

#endif

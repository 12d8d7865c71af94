#include "lab/json_reader.h"
#include "lab/topology_file.h"

namespace yfw::lab {
namespace {

// The interfaces are numbered in the order of the links. This order makes the interface numbers announced with
// the addresses match the recordings.
constexpr const char *text = R"({
  "routers": [
    {"name": "r1", "system-name": "r1.example.net", "system-description": "Router r1 software 1.0",
     "addresses": {"eth3": ["192.0.2.1/24", "2001:db8::1/64"]}},
    {"name": "r2", "system-name": "r2.example.net", "system-description": "Router r2 software 1.0",
     "addresses": {"eth3": ["192.0.2.2/24", "2001:db8::2/64"]},
     "custom-tlvs": [{"oui": "00:80:c2", "subtype": 9, "value": "61:62:63"}]},
    {"name": "r3", "system-name": "r3.example.net", "system-description": "Router r3 software 1.0",
     "capabilities": ["bridge", "router"],
     "custom-tlvs": [{"oui": "33:44:55", "subtype": 44, "value": "45:45:45:45:45"}]},
    {"name": "r4", "system-name": "r4.example.net", "system-description": "Router r4 software 1.0",
     "addresses": {"eth3": ["192.0.2.4/24", "2001:db8::4/64"]}}
  ],
  "links": [
    ["r1:eth1", "r2:eth1"],
    ["r1:eth2", "r3:eth1"],
    ["r2:eth2", "r3:eth2"]
  ],
  "segments": [
    {"name": "lan", "ports": ["r1:eth3", "r2:eth3", "r4:eth3"]}
  ]
})";

} // namespace

Topology default_topology() {
    return read_topology(parse_json(text, "default topology"), "default topology");
}

} // namespace yfw::lab

// A large synthetic device, for benchmarks only.
#ifndef YFW_BENCH_DEVICE_GENERATOR_H
#define YFW_BENCH_DEVICE_GENERATOR_H

#include <ostream>

namespace yfw::bench {

struct DeviceSize {
    unsigned interfaces = 10000;
    unsigned neighbors = 40000; // spread evenly over the interfaces
    unsigned nodes = 40;        // the interfaces are spread evenly over the nodes
};

// Writes native XML: the operational data, and the configuration of every interface.
void write_device(std::ostream &to, const DeviceSize &size);

} // namespace yfw::bench

#endif

// make_device [INTERFACES [NEIGHBORS [NODES]]]: writes a large device as native XML to standard output.
#include <cstdlib>
#include <iostream>

#include "device_generator.h"

int main(int argc, char **argv) {
    yfw::bench::DeviceSize size;
    unsigned *const members[] = {&size.interfaces, &size.neighbors, &size.nodes};
    for (int i = 1; i < argc && i <= 3; i++)
        *members[i - 1] = static_cast<unsigned>(std::strtoul(argv[i], nullptr, 10));
    if (size.interfaces == 0 || size.nodes == 0) {
        std::cerr
            << "usage: make_device [INTERFACES [NEIGHBORS [NODES]]], for example make_device 10000 40000 40\n";
        return 2;
    }
    std::ios::sync_with_stdio(false);
    yfw::bench::write_device(std::cout, size);
    return std::cout.flush() ? 0 : 1;
}

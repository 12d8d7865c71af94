// Several descriptors waited for as one.
#ifndef YFW_BASE_ANY_READABLE_H
#define YFW_BASE_ANY_READABLE_H

#include <initializer_list>

#include "base/descriptor.h"

namespace yfw {

// Its descriptor is readable while any of the others is. They are borrowed.
class AnyReadable {
public:
    // Ignores descriptors that are -1. Throws std::system_error when out of descriptors.
    AnyReadable(std::initializer_list<int> descriptors);

    int descriptor() const { return all_.get(); }

private:
    Descriptor all_;
};

} // namespace yfw

#endif

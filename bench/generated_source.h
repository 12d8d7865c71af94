// A synthetic device as a source of native data, for benchmarks only.
#ifndef YFW_BENCH_GENERATED_SOURCE_H
#define YFW_BENCH_GENERATED_SOURCE_H

#include <string>

#include "device_generator.h"
#include "sources/native_source.h"
#include "yang/schemas.h"

namespace yfw::bench {

// A generated device as native XML.
std::string generated_device(const DeviceSize &size);

// Returns one device, or copies of it, so that parsing is not measured. Borrows the schemas.
class GeneratedSource final : public sources::NativeSource {
public:
    GeneratedSource(const yang::Schemas &schemas, const DeviceSize &size)
        : GeneratedSource(schemas, generated_device(size)) {}
    // `xml`: a device as native XML.
    GeneratedSource(const yang::Schemas &schemas, const std::string &xml);

    yang::DataTree read(const ly_ctx *) override;
    sources::Snapshot snapshot(const ly_ctx *) override { return {forest_}; }

private:
    yang::DataTree data_;
    yang::SharedForest forest_; // the same
};

} // namespace yfw::bench

#endif

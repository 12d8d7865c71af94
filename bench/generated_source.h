// A synthetic device as a source of native data, for benchmarks only.
#ifndef YFW_BENCH_GENERATED_SOURCE_H
#define YFW_BENCH_GENERATED_SOURCE_H

#include "device_generator.h"
#include "sources/native_source.h"
#include "yang/schemas.h"

namespace yfw::bench {

// Returns one device, or copies of it, so that parsing is not measured. Borrows the schemas.
class GeneratedSource final : public sources::NativeSource {
public:
    GeneratedSource(const yang::Schemas &schemas, const DeviceSize &size);

    yang::DataTree read(const ly_ctx *) override;
    sources::Snapshot snapshot(const ly_ctx *) override { return {forest_}; }

private:
    yang::DataTree data_;
    yang::SharedForest forest_; // the same
};

} // namespace yfw::bench

#endif

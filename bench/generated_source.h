// A made-up device as a source of native data, for benchmarks only.
#ifndef YFW_BENCH_GENERATED_SOURCE_H
#define YFW_BENCH_GENERATED_SOURCE_H

#include "device_generator.h"
#include "host/schemas.h"
#include "sources/native_source.h"

namespace yfw::bench {

// Gives out copies of one device, so that parsing is not measured. Borrows the schemas.
class GeneratedSource final : public sources::NativeSource {
public:
    GeneratedSource(const host::Schemas &schemas, const DeviceSize &size);

    host::DataTree read(const ly_ctx *) override;

private:
    host::DataTree data_;
};

} // namespace yfw::bench

#endif

// The entry point of a fuzzing engine.
#include "fuzz/support/fuzz_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    yfw::fuzz::run({reinterpret_cast<const char *>(data), size});
    return 0;
}

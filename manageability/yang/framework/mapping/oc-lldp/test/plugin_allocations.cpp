#include "plugin_allocations.h"

#include <cstddef>
#include <cstdint>

#include "recording_double.h"

// The executable's definitions take precedence over the C library's, for the plug-in and for everything else.
// Calls from outside the plug-in's code pass straight through. Not instrumented: the first calls arrive before
// the sanitizers have started.
#ifdef YFW_SANITIZED
extern "C" void *__interceptor_malloc(std::size_t size);
extern "C" void *__interceptor_calloc(std::size_t count, std::size_t size);
extern "C" void __interceptor_free(void *memory);
#define REAL_MALLOC __interceptor_malloc
#define REAL_CALLOC __interceptor_calloc
#define REAL_FREE __interceptor_free
#else
extern "C" void *__libc_malloc(std::size_t size);
extern "C" void *__libc_calloc(std::size_t count, std::size_t size);
extern "C" void __libc_free(void *memory);
#define REAL_MALLOC __libc_malloc
#define REAL_CALLOC __libc_calloc
#define REAL_FREE __libc_free
#endif
#define UNINSTRUMENTED __attribute__((no_sanitize("address", "undefined")))

namespace {

std::uintptr_t plugin_begin = 0;
std::uintptr_t plugin_end = 0;
unsigned allocations_until_failure = 0; // 0: none fails

UNINSTRUMENTED bool is_plugin_code(const void *address) {
    const auto number = reinterpret_cast<std::uintptr_t>(address);
    return number >= plugin_begin && number < plugin_end;
}

UNINSTRUMENTED bool fails_now(const void *caller) {
    if (allocations_until_failure == 0 || !is_plugin_code(caller))
        return false;
    return --allocations_until_failure == 0;
}

} // namespace

namespace oclldp_test {

void arm_allocation_failure(unsigned nth) {
    allocations_until_failure = nth;
}

void set_plugin_range(std::uintptr_t begin, std::uintptr_t end) {
    plugin_begin = begin;
    plugin_end = end;
}

} // namespace oclldp_test

extern "C" UNINSTRUMENTED void *malloc(std::size_t size) noexcept {
    return fails_now(__builtin_return_address(0)) ? nullptr : REAL_MALLOC(size);
}

extern "C" UNINSTRUMENTED void *calloc(std::size_t count, std::size_t size) noexcept {
    return fails_now(__builtin_return_address(0)) ? nullptr : REAL_CALLOC(count, size);
}

extern "C" UNINSTRUMENTED void free(void *memory) noexcept {
    if (memory != nullptr && is_plugin_code(__builtin_return_address(0)))
        oclldp_test::contract().forget_string(memory);
    REAL_FREE(memory);
}

#include "base/mapped_memory.h"

#include <cstdint>
#include <new>

#include <sys/mman.h>

namespace yfw {
namespace {

#ifdef YFW_SANITIZED
constexpr size_t least_mapped = SIZE_MAX; // leak checkers do not look for pointers in mapped memory
#else
constexpr size_t least_mapped = 128 * 1024; // octets
#endif

} // namespace

void *MappedMemory::do_allocate(size_t bytes, size_t alignment) {
    if (bytes < least_mapped)
        return std::pmr::new_delete_resource()->allocate(bytes, alignment);
    void *block = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED)
        throw std::bad_alloc();
    return block;
}

void MappedMemory::do_deallocate(void *block, size_t bytes, size_t alignment) {
    if (bytes < least_mapped)
        std::pmr::new_delete_resource()->deallocate(block, bytes, alignment);
    else
        ::munmap(block, bytes);
}

bool MappedMemory::do_is_equal(const std::pmr::memory_resource &other) const noexcept {
    return dynamic_cast<const MappedMemory *>(&other) != nullptr;
}

} // namespace yfw

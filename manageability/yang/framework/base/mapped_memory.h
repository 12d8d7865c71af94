// Memory that goes back to the system as soon as it is freed.
#ifndef YFW_BASE_MAPPED_MEMORY_H
#define YFW_BASE_MAPPED_MEMORY_H

#include <memory_resource>

namespace yfw {

// For what is built quickly and freed as a whole: malloc() keeps freed memory for the thread that used it,
// which adds up where many threads build something large now and then. Small blocks come from malloc() all the
// same.
class MappedMemory final : public std::pmr::memory_resource {
private:
    void *do_allocate(size_t bytes, size_t alignment) override;
    void do_deallocate(void *block, size_t bytes, size_t alignment) override;
    bool do_is_equal(const std::pmr::memory_resource &other) const noexcept override;
};

} // namespace yfw

#endif

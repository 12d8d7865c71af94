// Owned file descriptors.
#ifndef YFW_BASE_DESCRIPTOR_H
#define YFW_BASE_DESCRIPTOR_H

#include <utility>

#include <unistd.h>

namespace yfw {

// Closes the descriptor on destruction.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor &&other) noexcept : number_(other.number_) { other.number_ = -1; }
    Descriptor &operator=(Descriptor &&other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() { close(); }

    int get() const { return number_; }
    bool is_open() const { return number_ >= 0; }
    void close() {
        if (number_ >= 0)
            ::close(number_);
        number_ = -1;
    }

private:
    int number_;
};

} // namespace yfw

#endif

// Owned file descriptors and pipes.
#ifndef YFW_BASE_DESCRIPTOR_H
#define YFW_BASE_DESCRIPTOR_H

#include <string>
#include <string_view>
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
    // Gives up ownership: the caller closes the descriptor.
    int release() { return std::exchange(number_, -1); }

private:
    int number_;
};

// A pipe; neither end survives an exec.
struct Pipe {
    // Throws std::runtime_error.
    Pipe();

    Descriptor read_end;
    Descriptor write_end;
};

// Writes all of the content. Returns false and sets errno on failure.
bool write_all(int descriptor, std::string_view content);

// Appends the available bytes, waiting for the first. Returns false at the end of the stream and on error; an
// interrupted read appends nothing and returns true.
bool append_from(int descriptor, std::string &text);

} // namespace yfw

#endif

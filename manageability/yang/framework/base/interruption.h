// Work that nobody waits for any more.
#ifndef YFW_BASE_INTERRUPTION_H
#define YFW_BASE_INTERRUPTION_H

#include <exception>
#include <functional>

namespace yfw {

// What a step of interrupted work ends with. Not an Error: the work must not be tried in another way.
class Interrupted : public std::exception {
public:
    const char *what() const noexcept override { return "interrupted: nobody waits for the result any more"; }
};

// While it lives, the work of this thread ends at its next step once `is_unwanted` returns true, which may be
// asked many times. The innermost of several is asked.
class Interruptible {
public:
    explicit Interruptible(std::function<bool()> is_unwanted);
    ~Interruptible();
    Interruptible(const Interruptible &) = delete;
    Interruptible &operator=(const Interruptible &) = delete;

private:
    friend void end_if_interrupted();

    std::function<bool()> is_unwanted_;
    const Interruptible *around_;
};

// To be called between the steps of long work that has not changed anything yet. Throws Interrupted.
void end_if_interrupted();

} // namespace yfw

#endif

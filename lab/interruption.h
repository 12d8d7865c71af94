// Defers signals that ask the program to end until it is ready.
#ifndef YFW_LAB_INTERRUPTION_H
#define YFW_LAB_INTERRUPTION_H

#include <array>
#include <csignal>
#include <stdexcept>

namespace yfw::lab {

class Interrupted : public std::runtime_error {
public:
    Interrupted() : std::runtime_error("interrupted") {}
};

// While an instance exists, SIGINT, SIGTERM and SIGHUP are noted instead of ending the program, and writing to
// a closed pipe is an error. Only one may exist at a time.
class Interruption {
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

    // Throws Interrupted if a signal has been noted.
    static void check();

private:
    std::array<struct sigaction, 4> before_{};
};

} // namespace yfw::lab

#endif

// Programs that are run to their end, with arguments as they are (no shell).
#ifndef YFW_FRONTENDS_LAB_PROCESS_H
#define YFW_FRONTENDS_LAB_PROCESS_H

#include <chrono>
#include <string>
#include <vector>

#include <unistd.h>

namespace yfw::lab {

struct Finished {
    int status = 0; // exit status; 128 + the signal that ended it
    std::string output;
    std::string errors;

    // The first line that it said on standard error, or its status when it said nothing.
    std::string reason() const;
};

// Runs `arguments`, the program's path first, in a process group of its own (Ctrl-C at the terminal does not
// end it) and collects what it prints. `inherited`, when it is one, stays open in the program: a lock is then
// held until the program has ended too. Throws std::runtime_error when the program cannot be started or takes
// longer than `limit`; then it is killed.
Finished run(const std::vector<std::string> &arguments, int inherited = -1,
             std::chrono::milliseconds limit = std::chrono::seconds(20));

// The path of a program, from PATH or from where the system keeps programs for root. Throws host::Error that
// says which package to install.
std::string find_program(const std::string &name, const std::string &package);

// The same, in these directories alone.
std::string find_program(const std::string &name, const std::string &package,
                         const std::vector<std::string> &directories);

// A descriptor that is closed with the object.
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

} // namespace yfw::lab

#endif

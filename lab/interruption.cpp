#include "lab/interruption.h"

namespace yfw::lab {
namespace {

volatile std::sig_atomic_t noted = 0;
constexpr std::array<int, 4> numbers{SIGINT, SIGTERM, SIGHUP, SIGPIPE};

void note(int) {
    noted = 1;
}

} // namespace

Interruption::Interruption() {
    noted = 0;
    for (size_t i = 0; i < numbers.size(); ++i) {
        struct sigaction action {};
        action.sa_handler = numbers[i] == SIGPIPE ? SIG_IGN : note;
        action.sa_flags = SA_RESTART; // calls under way resume; check() reports the signal later
        ::sigaction(numbers[i], &action, &before_[i]);
    }
}

Interruption::~Interruption() {
    for (size_t i = 0; i < numbers.size(); ++i)
        ::sigaction(numbers[i], &before_[i], nullptr);
}

void Interruption::check() {
    if (noted != 0)
        throw Interrupted();
}

} // namespace yfw::lab

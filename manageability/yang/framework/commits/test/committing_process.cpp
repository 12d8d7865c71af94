#include "committing_process.h"

#include <unistd.h>

namespace yfw::commits::test {

CommittingProcess::CommittingProcess(const std::function<void(const Report &report)> &body) {
    Pipe reports;
    process_ = Process::copy([&] {
        reports.read_end.close();
        body([&reports](int64_t number) {
            if (!write_all(reports.write_end.get(), {reinterpret_cast<const char *>(&number), sizeof number}))
                _exit(2);
        });
        return 0;
    });
    reports_ = std::move(reports.read_end);
}

std::vector<int64_t> CommittingProcess::reported() {
    std::vector<int64_t> numbers;
    for (int64_t number = 0; read(reports_.get(), &number, sizeof number) == sizeof number;)
        numbers.push_back(number);
    return numbers;
}

} // namespace yfw::commits::test

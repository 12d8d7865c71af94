#include "support/running_yfw.h"

#include <algorithm>

#include <fcntl.h>

#include "support/child_process.h"
#include "support/eventually.h"

namespace yfw::test {

RunningYfw::RunningYfw(const std::vector<std::string> &arguments) {
    const Descriptor printed(::open(files_.add("output", "").c_str(), O_WRONLY | O_CLOEXEC));
    const Descriptor complained(::open(files_.add("errors", "").c_str(), O_WRONLY | O_CLOEXEC));
    Program program = program_under_test(arguments);
    program.output = printed.get();
    program.errors = complained.get();
    process_ = Process(program);
}

std::optional<std::string> RunningYfw::line_with(const std::vector<std::string> &words,
                                                 std::chrono::milliseconds limit) {
    std::optional<std::string> found;
    const auto holds_words = [&](const std::string &line) {
        return std::all_of(words.begin(), words.end(),
                           [&](const std::string &word) { return line.find(word) != std::string::npos; });
    };
    const auto search = [&] {
        const bool ended = !runs();
        const std::string text = output();
        for (size_t start = seen_, end = 0; (end = text.find('\n', start)) != std::string::npos;
             start = end + 1) {
            const std::string line = text.substr(start, end - start);
            if (!holds_words(line))
                continue;
            found = line;
            seen_ = end + 1;
            return true;
        }
        return ended;
    };
    eventually(search, limit);
    return found;
}

std::string RunningYfw::output() {
    return read_file(files_.path() / "output");
}

std::string RunningYfw::errors() {
    return read_file(files_.path() / "errors");
}

} // namespace yfw::test

#include "fuzz/support/fuzz_target.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace yfw::fuzz {

void require(bool holds, std::string_view what, std::string_view text) {
    if (holds)
        return;
    std::fprintf(stderr, "%.*s\n%.*s\n", static_cast<int>(what.size()), what.data(),
                 static_cast<int>(text.size()), text.data());
    std::abort();
}

bool is_one_line(std::string_view text) {
    return !text.empty() && text.find('\n') == std::string_view::npos;
}

uint8_t Input::byte() {
    const std::string_view taken = take(1);
    return taken.empty() ? uint8_t{0} : static_cast<uint8_t>(taken.front());
}

uint16_t Input::number() {
    const unsigned low = byte();
    return static_cast<uint16_t>(low | static_cast<unsigned>(byte()) << 8U);
}

std::string_view Input::take(size_t count) {
    const std::string_view taken = bytes_.substr(0, count);
    bytes_.remove_prefix(taken.size());
    return taken;
}

std::string read_file(const std::filesystem::path &file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + file.string());
    return {std::istreambuf_iterator<char>(stream), {}};
}

void write_file(const std::filesystem::path &file, std::string_view bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + file.string());
}

} // namespace yfw::fuzz

// What every fuzz target needs: its input, piece by piece, and a check that ends the process.
#ifndef YFW_FUZZ_SUPPORT_FUZZ_TARGET_H
#define YFW_FUZZ_SUPPORT_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace yfw::fuzz {

// Prints what was expected, and the text it was expected of, and ends the process, unless it holds.
void require(bool holds, std::string_view what, std::string_view text);

bool is_one_line(std::string_view text);

// An input, read from its start. Borrows the bytes.
class Input {
public:
    explicit Input(std::string_view bytes) : bytes_(bytes) {}

    bool is_empty() const { return bytes_.empty(); }
    // At the end of the input, 0.
    uint8_t byte();
    // Little-endian.
    uint16_t number();
    // Fewer bytes at the end of the input.
    std::string_view take(size_t count);
    std::string_view rest() { return take(bytes_.size()); }

private:
    std::string_view bytes_;
};

// Throws std::runtime_error.
std::string read_file(const std::filesystem::path &file);
void write_file(const std::filesystem::path &file, std::string_view bytes);

// What a target does with one input. Every target defines it.
void run(std::string_view bytes);

} // namespace yfw::fuzz

#endif

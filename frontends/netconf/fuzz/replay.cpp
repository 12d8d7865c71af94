// Gives the fuzzer's target every file of a directory: what the fuzzer found stays found in every build.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char **argv) {
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < argc; i++)
        for (const auto &file : std::filesystem::directory_iterator(argv[i]))
            files.push_back(file.path());
    std::sort(files.begin(), files.end());
    for (const auto &file : files) {
        std::cout << file.filename().string() << std::endl; // the last one is at fault
        std::ifstream stream(file, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
    }
    return files.empty() ? 1 : 0;
}

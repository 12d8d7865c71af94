// Replays every file of a directory on the fuzz target, so that what the fuzzer found is tested in every build.
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
        std::cout << file.filename().string()
                  << std::endl; // if the replay crashes, the last name printed is the culprit
        std::ifstream stream(file, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
    }
    return files.empty() ? 1 : 0;
}

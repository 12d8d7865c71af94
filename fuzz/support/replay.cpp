// Replays every file of the given directories on a fuzz target, so that what a fuzzer found is tested in every
// build.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <vector>

#include "fuzz/support/fuzz_target.h"

int main(int argc, char **argv) {
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < argc; i++)
        for (const auto &file : std::filesystem::directory_iterator(argv[i]))
            files.push_back(file.path());
    std::sort(files.begin(), files.end());
    for (const auto &file : files) {
        std::cout << file.filename().string()
                  << std::endl; // if the replay crashes, the last name printed is the culprit
        yfw::fuzz::run(yfw::fuzz::read_file(file));
    }
    return files.empty() ? 1 : 0;
}

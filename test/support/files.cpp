#include "support/files.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace yfw::test {

namespace fs = std::filesystem;

std::string read_file(const fs::path &path) {
    std::ifstream stream(path, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad())
        throw std::runtime_error(path.string() + " cannot be read");
    return content;
}

void write_file(const fs::path &path, const std::string &content) {
    std::ofstream stream(path, std::ios::binary);
    if (!(stream << content).flush())
        throw std::runtime_error(path.string() + " cannot be written");
}

std::vector<std::string> lines_of(const std::string &text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

TemporaryDirectory::TemporaryDirectory() {
    std::string pattern = (fs::temp_directory_path() / "yfw-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error(pattern + " cannot be created");
    path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TemporaryDirectory::add(const std::string &name, const std::string &content) const {
    write_file(path_ / name, content);
    return (path_ / name).string();
}

} // namespace yfw::test

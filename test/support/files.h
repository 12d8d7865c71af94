// Small files for tests.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace yfw::test {

/// The file's content. Throws std::runtime_error naming the file when it cannot be read.
std::string read_file(const std::filesystem::path &path);

/// Creates or replaces the file. Throws std::runtime_error naming the file when it cannot be written.
void write_file(const std::filesystem::path &path, const std::string &content);

/// The lines of a text, without line ends.
std::vector<std::string> lines_of(const std::string &text);

/// A directory that is removed with the object, and everything in it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory &) = delete;
    TemporaryDirectory &operator=(const TemporaryDirectory &) = delete;

    const std::filesystem::path &path() const { return path_; }

    /// Writes a file to the directory and returns its path.
    std::string add(const std::string &name, const std::string &content) const;

private:
    std::filesystem::path path_;
};

} // namespace yfw::test

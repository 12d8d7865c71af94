// Runs Graphviz as an external program.
#ifndef YFW_FRONTENDS_PICTURES_GRAPHVIZ_H
#define YFW_FRONTENDS_PICTURES_GRAPHVIZ_H

#include <chrono>
#include <filesystem>
#include <string>

namespace yfw::pictures {

struct Graphviz {
    std::string program = "dot"; // searched for in PATH unless it contains a slash
    std::chrono::milliseconds limit = std::chrono::minutes(1);
};

// Returns the graph as SVG. Throws std::runtime_error with a one-line message when the program is missing,
// fails, or exceeds the limit, in which case it is killed. Call while no other thread is running.
std::string make_svg(const std::string &graph, const Graphviz &graphviz = {});

// Writes the whole file or nothing: the old content stays until the new content is complete. Throws
// std::runtime_error with the file's name.
void write_file(const std::filesystem::path &file, const std::string &content);

} // namespace yfw::pictures

#endif

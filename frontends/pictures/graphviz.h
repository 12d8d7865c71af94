// Graphviz as a program beside ours.
#ifndef YFW_FRONTENDS_PICTURES_GRAPHVIZ_H
#define YFW_FRONTENDS_PICTURES_GRAPHVIZ_H

#include <chrono>
#include <filesystem>
#include <string>

namespace yfw::pictures {

struct Graphviz {
    std::string program = "dot"; // looked up in PATH when it has no slash
    std::chrono::milliseconds limit = std::chrono::minutes(1);
};

// The graph as SVG. Throws std::runtime_error, with one line, when the program is missing, fails or takes
// longer than the limit; then it is ended. To be called while no other thread runs.
std::string make_svg(const std::string &graph, const Graphviz &graphviz = {});

// Writes the whole file or nothing: what was there before stays until the new content is complete. Throws
// std::runtime_error that names the file.
void write_file(const std::filesystem::path &file, const std::string &content);

} // namespace yfw::pictures

#endif

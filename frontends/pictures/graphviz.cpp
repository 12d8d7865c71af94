#include "frontends/pictures/graphviz.h"

#include <cerrno>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include <fmt/format.h>

#include "base/descriptor.h"
#include "base/run_program.h"
#include "base/system_error.h"

namespace yfw::pictures {
namespace {

[[noreturn]] void fail(const std::string &what, int error) {
    throw std::runtime_error(what + ": " + system_error_text(error));
}

Finished run_on(const std::string &graph, const Graphviz &graphviz) {
    try {
        return run(Program{.arguments = {graphviz.program, "-Tsvg"}}, graph, graphviz.limit);
    } catch (const TookTooLong &) {
        throw std::runtime_error(fmt::format("'{}' was killed after {} ms without a picture", graphviz.program,
                                             graphviz.limit.count()));
    } catch (const NotStarted &error) {
        if (error.reason() == ENOENT)
            throw std::runtime_error("SVG needs Graphviz, whose program '" + graphviz.program +
                                     "' is missing: install graphviz, or use --dot");
        fail("Graphviz's program '" + graphviz.program + "' cannot be started", error.reason());
    }
}

// A file next to another, deleted with this object unless it has replaced the other.
class Replacement {
public:
    explicit Replacement(const std::filesystem::path &file)
        : target_(file),
          path_(file.parent_path() / fmt::format(".{}.{}", file.filename().string(), ::getpid())),
          file_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)) {
        if (!file_.is_open())
            fail(file.string() + ": cannot be written", errno);
    }
    ~Replacement() {
        if (!path_.empty())
            ::unlink(path_.c_str());
    }
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    void write(std::string_view content) {
        if (!write_all(file_.get(), content) || ::fsync(file_.get()) != 0 ||
            ::rename(path_.c_str(), target_.c_str()) != 0)
            fail(target_.string() + ": cannot be written", errno);
        path_.clear();
    }

private:
    std::filesystem::path target_;
    std::filesystem::path path_;
    Descriptor file_;
};

} // namespace

std::string make_svg(const std::string &graph, const Graphviz &graphviz) {
    Finished finished = run_on(graph, graphviz);
    if (finished.status != 0)
        throw std::runtime_error("'" + graphviz.program + "' failed: " + finished.reason());
    if (finished.output.empty())
        throw std::runtime_error("'" + graphviz.program + "' produced no picture");
    return std::move(finished.output);
}

void write_file(const std::filesystem::path &file, const std::string &content) {
    std::error_code error;
    std::filesystem::path target =
        std::filesystem::canonical(file, error); // follows a link, so that its target is replaced
    if (error)
        target = file;
    else if (!std::filesystem::is_regular_file(target))
        throw std::runtime_error(file.string() + ": is not a file");
    Replacement(target).write(content);
}

} // namespace yfw::pictures

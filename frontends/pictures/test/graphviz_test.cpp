// Running Graphviz, with test programs in its place, and writing files completely or not at all.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frontends/pictures/graphviz.h"

namespace yfw::pictures {
namespace {

using testing::HasSubstr;

class Folder : public testing::Test {
protected:
    Folder() {
        std::string name = (std::filesystem::temp_directory_path() / "yfw-graphviz-XXXXXX").string();
        path_ = ::mkdtemp(name.data());
    }
    ~Folder() override { std::filesystem::remove_all(path_); }

    std::filesystem::path path(const std::string &name) const { return path_ / name; }

    std::string program(const std::string &body) const {
        write(path("dot"), "#!/bin/sh\n" + body + '\n');
        std::filesystem::permissions(path("dot"), std::filesystem::perms::owner_all);
        return path("dot").string();
    }

    static void write(const std::filesystem::path &file, const std::string &content) {
        std::ofstream(file) << content;
    }

    static std::string read(const std::filesystem::path &file) {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    size_t files() const {
        const std::filesystem::directory_iterator all(path_);
        return static_cast<size_t>(std::distance(begin(all), end(all)));
    }

private:
    std::filesystem::path path_;
};

std::string message_of(const std::function<void()> &action) {
    try {
        action();
    } catch (const std::runtime_error &error) {
        return error.what();
    }
    return "";
}

using GraphvizProgram = Folder;

TEST_F(GraphvizProgram, gets_the_graph_on_its_standard_input_and_gives_the_picture_on_its_output) {
    const std::string graph(300000, 'g');
    EXPECT_EQ(make_svg(graph, {program("echo $1; cat"), std::chrono::minutes(1)}), "-Tsvg\n" + graph);
}

struct Failure {
    std::string name;
    std::string program;
    std::string said;
};

class FailingGraphviz : public Folder, public testing::WithParamInterface<Failure> {};

TEST_P(FailingGraphviz, is_one_line_that_says_why) {
    const std::string message = message_of([&] {
        make_svg("graph {}", {program(GetParam().program), std::chrono::minutes(1)});
    });
    EXPECT_THAT(message, HasSubstr(GetParam().said));
    EXPECT_EQ(message.find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Reasons, FailingGraphviz,
    testing::Values(Failure{"its_own_words", "echo 'syntax error in line 1' >&2; echo more >&2; exit 1",
                            "failed: syntax error in line 1"},
                    Failure{"its_exit_status", "echo '<svg/>'; exit 3", "failed: exit status 3"},
                    Failure{"its_signal", "kill -9 $$", "failed: signal 9"},
                    Failure{"no_picture", "exit 0", "produced no picture"}),
    [](const auto &tested) { return tested.param.name; });

TEST_F(GraphvizProgram, that_is_not_installed_is_asked_for) {
    EXPECT_THAT(message_of([&] {
                    make_svg("graph {}", {path("no-such-dot").string(), std::chrono::minutes(1)});
                }),
                HasSubstr("install graphviz"));
}

// The program never ends by itself, so it exceeds any limit.
TEST_F(GraphvizProgram, that_does_not_end_is_ended_and_leaves_no_process) {
    const std::string message = message_of([&] {
        make_svg("graph {}", {program("exec sleep infinity"), std::chrono::milliseconds(0)});
    });
    EXPECT_THAT(message, HasSubstr("was killed after 0 ms"));
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(GraphvizProgram, leaves_the_signals_of_this_process_as_they_were) {
    ::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(make_svg("graph {}", {program("cat"), std::chrono::minutes(1)}), "graph {}");
    sigset_t blocked;
    ::sigprocmask(SIG_BLOCK, nullptr, &blocked);
    EXPECT_EQ(sigismember(&blocked, SIGCHLD), 0);
    EXPECT_EQ(::signal(SIGCHLD, SIG_DFL), SIG_IGN);
}

using WrittenFile = Folder;

TEST_F(WrittenFile, is_new_or_takes_the_place_of_what_was_there) {
    for (const std::string content : {"first", "second"}) {
        write_file(path("a.svg"), content);
        EXPECT_EQ(read(path("a.svg")), content);
    }
    EXPECT_EQ(files(), 1U);
}

TEST_F(WrittenFile, behind_a_link_leaves_the_link) {
    write(path("a.svg"), "before");
    std::filesystem::create_symlink("a.svg", path("link.svg"));
    write_file(path("link.svg"), "after");
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.svg")));
    EXPECT_EQ(read(path("a.svg")), "after");
}

TEST_F(WrittenFile, is_refused_where_something_else_than_a_file_is) {
    EXPECT_THAT(message_of([&] { write_file(path(""), "text"); }), HasSubstr("is not a file"));
    EXPECT_THAT(message_of([&] { write_file("/dev/null", "text"); }), HasSubstr("/dev/null: is not a file"));
}

TEST_F(WrittenFile, names_the_place_that_cannot_be_written) {
    EXPECT_EQ(message_of([&] { write_file(path("missing") / "a.svg", "text"); }),
              (path("missing") / "a.svg").string() + ": cannot be written: No such file or directory");
}

TEST_F(WrittenFile, that_cannot_be_completed_leaves_what_was_there_and_nothing_else) {
    write(path("a.svg"), "before");
    const rlimit small{2, RLIM_INFINITY};
    rlimit usual{};
    ::getrlimit(RLIMIT_FSIZE, &usual);
    const auto action = ::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);
    const std::string message = message_of([&] { write_file(path("a.svg"), "longer than that"); });
    ::setrlimit(RLIMIT_FSIZE, &usual);
    ::signal(SIGXFSZ, action);
    EXPECT_THAT(message, HasSubstr("a.svg: cannot be written: File too large"));
    EXPECT_EQ(read(path("a.svg")), "before");
    EXPECT_EQ(files(), 1U);
}

} // namespace
} // namespace yfw::pictures

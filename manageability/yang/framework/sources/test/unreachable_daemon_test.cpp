// Daemons that are missing or misbehave: an error that names the socket, in bounded time.
#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/error.h"
#include "base/process.h"
#include "fake_daemon.h"
#include "native_modules.h"
#include "sources/lldpd/connection.h"
#include "sources/lldpd/lldpd_source.h"
#include "sources/lldpd/lldpd_watch.h"
#include "sources/lldpd/reader.h"
#include "sources/lldpd/settings_writer.h"
#include "support/files.h"
#include "support/native_xml.h"

namespace yfw::sources::test {
namespace {

using testing::HasSubstr;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds bound{300};
// Allows for waiting for several answers.
constexpr std::chrono::seconds longest{5};

using Question = std::function<void(const std::string &socket)>;

// The path and message of the error that `ask` throws. Fails the test when there is none or it takes too long.
std::string error_of(const Question &ask, const std::string &socket) {
    const auto start = Clock::now();
    std::string text;
    try {
        ask(socket);
        ADD_FAILURE() << "no error was thrown";
    } catch (const Error &error) {
        text = error.path() + ": " + error.what();
    }
    EXPECT_LT(Clock::now() - start, longest);
    return text;
}

struct QuestionCase {
    const char *name;
    Question ask;
};

void read_everything(const std::string &socket) {
    lldpd::read_state(lldpd::Connection(socket, bound));
}

void read_settings(const std::string &socket) {
    lldpd::read_settings(lldpd::Connection(socket, bound));
}

void write_settings(const std::string &socket) {
    const lldpd::Connection connection(socket, bound);
    lldpd::SettingsWriter(connection)
        .restore({.transmit_interval = 30,
                  .system_name = "a",
                  .system_description = {},
                  .chassis_id = {},
                  .ports = {}});
}

// --- nobody listens: also through the whole source, since this takes no time ---

void read_device(const std::string &socket) {
    lldpd::LldpdSource(socket).read(native_modules());
}

void apply_to_device(const std::string &socket) {
    const yang::DataTree configuration =
        native_data(yfw::test::native_configuration(yfw::test::element("enable", "true")));
    lldpd::LldpdSource(socket).apply(nullptr, configuration.get());
}

void restore_device(const std::string &socket) {
    const yang::DataTree configuration =
        native_data(yfw::test::native_configuration(yfw::test::element("enable", "true")));
    lldpd::LldpdSource(socket).restore(configuration.get());
}

void watch_device(const std::string &socket) {
    lldpd::LldpdWatch(socket).run(
        native_modules(), -1,
        {.event = [](NeighborEvent) {}, .lost = [](const std::string &) {}, .back = [] {}});
}

class ADaemonThatIsNotThere : public testing::TestWithParam<QuestionCase> {
protected:
    std::string error(const std::string &socket) const {
        const std::string text = error_of(GetParam().ask, socket);
        EXPECT_THAT(text, HasSubstr("lldpd:" + socket));
        EXPECT_THAT(text, testing::Not(HasSubstr("\n")));
        return text;
    }
    yfw::test::TemporaryDirectory directory_;
};

TEST_P(ADaemonThatIsNotThere, HasNoSocket) {
    EXPECT_THAT(error((directory_.path() / "nowhere").string()), HasSubstr("No such file"));
}

TEST_P(ADaemonThatIsNotThere, HasAFileInPlaceOfASocket) {
    error(directory_.add("file", "no socket"));
}

TEST_P(ADaemonThatIsNotThere, HasADirectoryInPlaceOfASocket) {
    error(directory_.path().string());
}

TEST_P(ADaemonThatIsNotThere, HasLeftItsSocket) {
    const std::string socket = (directory_.path() / "left").string();
    {
        const ListeningSocket listening;
        std::filesystem::rename(listening.path(), socket);
    }
    EXPECT_THAT(error(socket), HasSubstr("refused"));
}

TEST_P(ADaemonThatIsNotThere, HasAPathThatIsTooLongForASocket) {
    error((directory_.path() / std::string(200, 's')).string());
}

TEST_P(ADaemonThatIsNotThere, MayNotBeAsked) {
    const ListeningSocket listening;
    std::filesystem::permissions(listening.directory(), std::filesystem::perms(0755));
    std::filesystem::permissions(listening.path(), std::filesystem::perms(0));
    Pipe pipe;
    native_modules(); // loads them while this user may read them
    Process asking = Process::copy([&] {
        constexpr unsigned nobody = 65534;
        if (geteuid() == 0 && setresuid(nobody, nobody, nobody) != 0)
            return 1;
        return write_all(pipe.write_end.get(), error_of(GetParam().ask, listening.path())) ? 0 : 1;
    });
    pipe.write_end.close();
    std::string text;
    while (append_from(pipe.read_end.get(), text)) {
    }
    ASSERT_EQ(asking.wait(std::chrono::minutes(1)), 0);
    EXPECT_THAT(text, HasSubstr("lldpd:" + listening.path()));
    EXPECT_THAT(text, HasSubstr("ermi")) << "the message does not mention permissions";
}

INSTANTIATE_TEST_SUITE_P(
    On, ADaemonThatIsNotThere,
    testing::Values(QuestionCase{"Reading", read_everything}, QuestionCase{"ReadingSettings", read_settings},
                    QuestionCase{"Writing", write_settings}, QuestionCase{"ReadingTheDevice", read_device},
                    QuestionCase{"Applying", apply_to_device}, QuestionCase{"Restoring", restore_device},
                    QuestionCase{"Watching", watch_device}),
    [](const auto &question) { return question.param.name; });

// --- a daemon that misbehaves ---

struct BehaviourCase {
    const char *name;
    std::function<void(const Client &)> behave;
};

// The header of a message of the control protocol.
struct Header {
    uint32_t type = 0;
    size_t length = 0;
};

std::string header(const std::string &question, size_t length) {
    Header made;
    std::memcpy(&made.type, question.data(), sizeof made.type);
    made.length = length;
    return {reinterpret_cast<const char *>(&made), sizeof made};
}

std::string noise(size_t size) {
    std::minstd_rand random(7);
    std::string bytes;
    for (size_t i = 0; i < size; i++)
        bytes += static_cast<char>(random());
    return bytes;
}

// Reads one request of the client, at least its header, and answers it with `how`.
void answer(const Client &client, const std::function<void(const std::string &question)> &how) {
    const std::string question = client.receive(sizeof(Header));
    if (question.size() >= sizeof(Header))
        how(question);
}

const std::vector<BehaviourCase> behaviours{
    {"NeverAnswers", [](const Client &client) { client.wait(); }},
    {"ClosesAtOnce", [](const Client &) {}},
    {"ClosesAfterTheQuestion", [](const Client &client) { client.receive(1); }},
    {"ClosesWithinAHeader",
     [](const Client &client) {
         answer(client, [&](const std::string &question) { client.send(question.substr(0, 5)); });
     }},
    {"ClosesWithinAnAnswer",
     [](const Client &client) {
         answer(client, [&](const std::string &question) { client.send(header(question, 1000) + noise(10)); });
     }},
    {"FallsSilentWithinAnAnswer",
     [](const Client &client) {
         answer(client, [&](const std::string &question) { client.send(header(question, 1000) + noise(10)); });
         client.wait();
     }},
    {"SendsNoise",
     [](const Client &client) {
         client.send(noise(100000));
         client.wait();
     }},
    {"SendsNoiseAsAnAnswer",
     [](const Client &client) {
         answer(client,
                [&](const std::string &question) { client.send(header(question, 1000) + noise(1000)); });
         client.wait();
     }},
    {"AnswersAnotherQuestion",
     [](const Client &client) {
         answer(client, [&](std::string question) {
             question[0] = static_cast<char>(question[0] + 1);
             client.send(header(question, 8) + noise(8));
         });
         client.wait();
     }},
    {"AnswersWithNothing",
     [](const Client &client) {
         answer(client, [&](const std::string &question) { client.send(header(question, 0)); });
         client.wait();
     }},
    {"AnnouncesAnAnswerWithoutMeasure",
     [](const Client &client) {
         answer(client, [&](const std::string &question) { client.send(header(question, SIZE_MAX)); });
         client.wait();
     }},
    {"AnswersOctetByOctetWithoutEnd",
     [](const Client &client) {
         answer(client, [&](const std::string &question) {
             client.send(header(question, 100000));
             const auto end = Clock::now() + 2 * longest; // so that the test fails instead of hanging
             while (Clock::now() < end && client.send("x") && client.pause()) {
             }
         });
     }},
};

class ADaemonThat : public testing::TestWithParam<std::tuple<BehaviourCase, QuestionCase>> {};

TEST_P(ADaemonThat, IsAnErrorInBoundedTime) {
    const FakeDaemon daemon(std::get<0>(GetParam()).behave);
    const std::string text = error_of(std::get<1>(GetParam()).ask, daemon.path());
    EXPECT_THAT(text, HasSubstr("lldpd:" + daemon.path()));
    EXPECT_THAT(text, testing::Not(HasSubstr("\n")));
}

INSTANTIATE_TEST_SUITE_P(When, ADaemonThat,
                         testing::Combine(testing::ValuesIn(behaviours),
                                          testing::Values(QuestionCase{"Read", read_everything},
                                                          QuestionCase{"AskedForItsSettings", read_settings},
                                                          QuestionCase{"Written", write_settings})),
                         [](const auto &pair) {
                             return std::string(std::get<0>(pair.param).name) + "When" +
                                    std::get<1>(pair.param).name;
                         });

TEST(ADaemonThatAcceptsNobody, IsAnErrorInBoundedTime) {
    const ListeningSocket listening;
    EXPECT_THAT(error_of(read_everything, listening.path()), HasSubstr("lldpd:" + listening.path()));
}

TEST(ADaemonWhoseQueueIsFull, IsAnErrorInBoundedTime) {
    ListeningSocket listening(0);
    listening.fill();
    EXPECT_THAT(error_of(read_everything, listening.path()), HasSubstr("lldpd:" + listening.path()));
}

// Reads in a child process, which is killed if it does not end.
TEST(AnAnswerThatComesTooLate, IsAnErrorInBoundedTime) {
    const ListeningSocket listening;
    Process reading = Process::copy([&] {
        const lldpd::Connection connection(listening.path(), std::chrono::milliseconds(0));
        const auto fails = [&] {
            try {
                lldpd::read_settings(connection);
                return false;
            } catch (const Error &) {
                return true;
            }
        };
        const bool without_answer = fails();
        const Descriptor daemon(accept(listening.descriptor(), nullptr, nullptr));
        return without_answer && write_all(daemon.get(), noise(1)) && fails() ? 0 : 1;
    });
    EXPECT_EQ(reading.wait(longest), 0);
}

TEST(AWatch, OfADaemonThatClosesAtOnceIsAnErrorInBoundedTime) {
    const FakeDaemon daemon([](const Client &) {});
    EXPECT_THAT(error_of(watch_device, daemon.path()), HasSubstr("lldpd:" + daemon.path()));
}

} // namespace
} // namespace yfw::sources::test

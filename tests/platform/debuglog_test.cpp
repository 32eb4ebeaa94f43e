#include "platform/debuglog.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace {

// The ways from a writer to a reader that can be stopped: ends[0] reads, ends[1] writes.
const struct {
    const char* name;
    bool (*make)(int (&ends)[2]);
} ways[] = {
    {"a pipe", [](int (&ends)[2]) { return ::pipe(ends) == 0; }},
    {"a socket", [](int (&ends)[2]) { return ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0; }},
    {"a terminal",
     [](int (&ends)[2]) { return ::openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr) == 0; }},
    {"a stopped terminal",
     [](int (&ends)[2]) {
         return ::openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr) == 0 &&
                ::tcflow(ends[1], TCOOFF) == 0;
     }},
};

// While it lives, the process may not open what stands behind the descriptor. The super-user has to become
// another user for that.
struct AnotherUser {
    explicit AnotherUser(int descriptor) {
        if (descriptor < 0) return;
        ::fchmod(descriptor, 0);
        EXPECT_TRUE(::getuid() != 0 || ::seteuid(65534) == 0);
    }
    ~AnotherUser() { EXPECT_TRUE(::getuid() != 0 || ::seteuid(0) == 0); }
    AnotherUser(const AnotherUser&) = delete;
    AnotherUser& operator=(const AnotherUser&) = delete;
};

// What waits to be read, without the carriage returns of terminals.
std::string drained(int reader) {
    std::string text;
    char part[65536];
    pollfd watched{reader, POLLIN, 0};
    while (::poll(&watched, 1, 50) > 0)  // terminals hand over what was written a little later
        text.append(part, static_cast<std::size_t>(std::max<ssize_t>(0, ::read(reader, part, sizeof part))));
    std::erase(text, '\r');
    return text;
}

std::string line(int number) {
    return "Line " + std::to_string(number) + std::string(static_cast<std::size_t>(number % 80), '.') + "\n";
}

}  // namespace

TEST(DebugLog, NothingUntilAttachedThenLineByLine) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    platform::LineWriter writer(ends[1]);
    DebugLog log;
    EXPECT_FALSE(log.attached());
    log << "lost" << std::endl;
    log.attach(writer);
    EXPECT_TRUE(log.attached());
    log << "Number " << 7 << std::endl << std::string(30000, 'x') << std::endl;
    EXPECT_EQ(drained(ends[0]), "Number 7\n" + std::string(30000, 'x') + "\n");
    log << "unfinished";
    EXPECT_EQ(drained(ends[0]), "");
    log.divert(nullptr);
    EXPECT_EQ(drained(ends[0]), "unfinished");
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(DebugLog, AReaderThatHasStoppedIsNotWaitedForAndHearsHowMuchItMissed) {
    constexpr int written = 10000;
    const auto beginning = [](const std::string& text) { return text.substr(0, 100); };
    const auto look = [&](const auto& way, bool refused, const std::string& next) {
        SCOPED_TRACE(fmt::format("{} {} {}", way.name, refused, next));
        int ends[2];
        ASSERT_TRUE(way.make(ends));
        const int flags = ::fcntl(ends[1], F_GETFL);
        const AnotherUser other(refused ? ends[1] : -1);
        std::optional<platform::LineWriter> writer(std::in_place, ends[1]);
        const auto begin = std::chrono::steady_clock::now();
        for (int i = 0; i < written; ++i) writer->write(line(i));
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3));
        EXPECT_EQ(::fcntl(ends[1], F_GETFL), flags);
        ::tcflow(ends[1], TCOON);
        std::string text = drained(ends[0]);
        writer->write(next);
        writer.reset();
        text += drained(ends[0]);
        int seen = 0;
        for (std::size_t at = 0; text.compare(at, line(seen).size(), line(seen)) == 0; ++seen)
            at += line(seen).size();
        EXPECT_LT(seen, written) << "held everything";
        std::string expected;
        for (int i = 0; i < seen; ++i) expected += line(i);
        const std::size_t whole = expected.size();
        expected += "... " + std::to_string(written - seen) + " lines dropped\n" + next;
        EXPECT_EQ(beginning(text.substr(whole)), beginning(expected.substr(whole)));
        EXPECT_EQ(text.size(), expected.size());
        ::close(ends[0]);
        ::close(ends[1]);
    };
    for (const auto& way : ways)
        for (const bool refused : {false, true})  // the writer may not be opened again
            for (const char* next : {"", "the next line\n"}) look(way, refused, next);
}

TEST(DebugLog, ALogThatCannotBeWrittenIsDropped) {
    platform::LineWriter writer(-1);
    DebugLog log;
    log.attach(writer);
    for (int i = 0; i < 1000; ++i) log << "a line that goes nowhere" << std::endl;
    EXPECT_TRUE(log.good());
    std::stringbuf buffer;
    log.divert(&buffer);
    log << "a line that arrives" << std::endl;
    EXPECT_EQ(buffer.str(), "a line that arrives\n");
}

// The program as a process: its command line, and the ways in which it ends.
#include "tests/e2e/tool.h"
#include "tests/e2e/xsupport.h"
#include "tests/support/simulator.h"
#include "tests/support/temproot.h"

#include <csignal>
#include <pty.h>
#include <termios.h>

namespace {

// The last line of the log once the window is there: nothing is asked of the driver after it.
constexpr char lastAnswer[] = "GET_BRDS_MACADDR\nPrim:129 Type:2 Link:0 Unit:0 Size:23 SzIO:16";

constexpr int lostServer = 0;  // in place of a signal

// Ends the program once its window is there, and returns its status. A server that stands still has to hold
// up nothing.
int endOf(Tool& tool, const Simulator& driver, XServer& server, int signal, bool standsStill = false) {
    EXPECT_TRUE(wasAsked(driver, "adapter.mac"));  // the last of what is asked before the window is shown
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    if (standsStill) server.stop();
    if (signal == lostServer)
        server.kill();
    else
        tool.signal(signal);
    return tool.exitStatusWithin(std::chrono::seconds(standsStill ? 1 : 10));
}

// The two ends of a pipe that is full, or of a terminal whose output is stopped, as with Ctrl+S.
struct Stopped {
    int reader = -1, writer = -1;
    explicit Stopped(bool terminal) {
        int ends[2];
        const int made =
            terminal ? ::openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr) : ::pipe2(ends, O_CLOEXEC);
        if (made != 0) return;
        reader = ends[0];
        writer = ends[1];
        if (terminal) {
            ::tcflow(writer, TCOOFF);
            return;
        }
        ::fcntl(writer, F_SETFL, O_NONBLOCK);
        while (::write(writer, "full", 4) > 0) {
        }
        ::fcntl(writer, F_SETFL, 0);
    }
    ~Stopped() {
        ::close(reader);
        ::close(writer);
    }
    Stopped(const Stopped&) = delete;
    Stopped& operator=(const Stopped&) = delete;
};

}  // namespace

TEST(Process, DebugWritesTheCommandLineFirstAndThenTheRootAndTheRequests) {
    const SampleRoot root;
    const XServer server;
    const Simulator simulator({"--frozen", "--adapters", "2"});
    Tool tool(root, {"-debug", "-ADV"});
    ASSERT_TRUE(tool.prints(lastAnswer)) << tool.output();
    EXPECT_EQ(tool.output().substr(0, tool.output().find("Realloc")),
              "-debug -ADV\nTARVOLIN_ROOT - " + root.path().string() + "\n");
    EXPECT_TRUE(has(tool.output(), "GET_PACKAGE_REV\n"));
    EXPECT_TRUE(has(tool.output(), "NumBoards - 1\nBoards    - 2\n"));
    tool.signal(SIGTERM);
    EXPECT_EQ(tool.exitStatus(), 128 + SIGTERM);
}

TEST(Process, SignalsAndALostServerAreSaidInOneLineAndLeaveNoTemporaryCopy) {
    const struct {
        int signal, status;
        const char* line;
        bool standsStill = false;  // the server does
    } cases[] = {{SIGTERM, 143, "tarvolin: stopped by signal 15 (Terminated)\n"},
                 {SIGINT, 130, "tarvolin: stopped by signal 2 (Interrupt)\n"},
                 {SIGTERM, 143, "tarvolin: stopped by signal 15 (Terminated)\n", true},
                 {lostServer, 1, "tarvolin: the connection to the X server is lost\n"}};
    for (const auto& c : cases) {
        const Place place;
        XServer server;
        Tool tool(place.root, {});
        EXPECT_EQ(endOf(tool, place.simulator, server, c.signal, c.standsStill), c.status) << c.line;
        EXPECT_EQ(tool.output(), c.line);
        EXPECT_EQ(place.root.temporaryCopies(), 0);
    }
}

// Before there is a connection.
TEST(Process, AServerThatDoesNotAnswerAtTheStartDoesNotHoldUpTheEnd) {
    const Place place;
    XServer server;
    server.stop();
    Tool tool(place.root, {});
    std::this_thread::sleep_for(std::chrono::seconds(2));  // it waits for the server
    tool.signal(SIGTERM);
    waitABit();
    tool.signal(SIGINT);  // is too late to be the reason
    EXPECT_EQ(tool.exitStatusWithin(std::chrono::seconds(1)), 143);
    EXPECT_EQ(tool.output(), "tarvolin: stopped by signal 15 (Terminated)\n");
}

// The program is there when it is asked to end after a second, and ends.
TEST(Process, StartsAsTheShellLeavesIt) {
    constexpr int ended = 124, killed = 137;  // timeout(1) says so
    const struct {
        const char* command;
        int status;
    } cases[] = {{"timeout -k 3 1 {} -debug 1>&- 2>&-", ended},
                 {"timeout -k 3 1 {} -debug 0<&- 1>&- 2>&-", ended},
                 {"timeout -k 2 -s HUP 1 sh -c 'trap \"\" HUP; exec {}' 2>&-", killed}};
    const Place place;
    const XServer server;
    for (const auto& c : cases) {
        const int status = std::system(fmt::format(fmt::runtime(c.command), TARVOLIN_PROGRAM).c_str());
        EXPECT_EQ(WEXITSTATUS(status), c.status) << c.command;
    }
}

TEST(Process, AReaderOfItsOutputThatHasStoppedHoldsUpNeitherTheWindowsNorTheEnd) {
    const struct {
        bool terminal;
        int signal, status;
    } cases[] = {{false, SIGTERM, 143}, {true, SIGTERM, 143}, {false, lostServer, 1}};
    for (const auto& c : cases) {
        TempRoot root;  // without a parameter file: the section engine says so on standard output
        XServer server;
        Simulator simulator({"--frozen", "--adapters", "1"});
        const Stopped output(c.terminal);
        Tool tool(root, {"-debug"}, output.writer);
        EXPECT_EQ(endOf(tool, simulator, server, c.signal), c.status) << c.terminal;
        EXPECT_EQ(::fcntl(output.writer, F_GETFL) & O_NONBLOCK, 0) << "other processes write there, too";
    }
}

TEST(Process, WithoutADisplayItSaysSo) {
    TempRoot root;
    ::setenv("DISPLAY", ":4711", 1);
    Tool tool(root, {});
    EXPECT_EQ(tool.exitStatus(), 1);
    EXPECT_EQ(tool.output(), "tarvolin: cannot open the display \":4711\"\n");
}

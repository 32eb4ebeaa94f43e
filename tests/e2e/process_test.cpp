// The program as a process: its command line, and the ways in which it ends.
#include "tests/e2e/tool.h"
#include "tests/e2e/xsupport.h"
#include "tests/support/simulator.h"
#include "tests/support/temproot.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <pty.h>
#include <termios.h>
#include <thread>

namespace {

// The last line of the log once the window is there: nothing is asked of the driver after it.
constexpr char lastAnswer[] = "GET_BRDS_MACADDR\nPrim:129 Type:2 Link:0 Unit:0 Size:23 SzIO:16";

// Waits until the program has asked the driver everything that it asks before its window is shown.
bool hasAsked(const Simulator& simulator) {
    for (int i = 0; i < 500; ++i) {
        if (simulator.ctl("log all").find("adapter.mac") != std::string::npos) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
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
    TempRoot root;
    writeSampleConfiguration(root);
    XServer server;
    Simulator simulator({"--frozen", "--adapters", "2"});
    Tool tool(root, {"-debug", "-ADV"});
    ASSERT_TRUE(tool.prints(lastAnswer)) << tool.output();
    EXPECT_EQ(tool.output().substr(0, tool.output().find("Realloc")),
              "-debug -ADV\nTARVOLIN_ROOT - " + root.path().string() + "\n");
    EXPECT_NE(tool.output().find("GET_PACKAGE_REV\n"), std::string::npos);
    EXPECT_NE(tool.output().find("NumBoards - 1\nBoards    - 2\n"), std::string::npos);
    tool.signal(SIGTERM);
    EXPECT_EQ(tool.exitStatus(), 128 + SIGTERM);
}

TEST(Process, SignalsAndALostServerAreSaidInOneLineAndLeaveNoTemporaryCopy) {
    const struct {
        int signal;  // 0: the X server dies
        int status;
        const char* line;
    } cases[] = {{SIGTERM, 143, "tarvolin: stopped by signal 15 (Terminated)\n"},
                 {SIGINT, 130, "tarvolin: stopped by signal 2 (Interrupt)\n"},
                 {0, 1, "tarvolin: the connection to the X server is lost\n"}};
    for (const auto& c : cases) {
        TempRoot root;
        writeSampleConfiguration(root);
        XServer server;
        Simulator simulator({"--frozen", "--adapters", "1"});
        Tool tool(root, {});
        EXPECT_TRUE(hasAsked(simulator));
        std::this_thread::sleep_for(std::chrono::milliseconds(300));  // it shows its window
        if (c.signal)
            tool.signal(c.signal);
        else
            server.kill();
        EXPECT_EQ(tool.exitStatus(), c.status) << c.line;
        EXPECT_EQ(tool.output(), c.line);
        EXPECT_EQ(root.temporaryCopies(), 0);
    }
}

TEST(Process, AReaderOfItsOutputThatHasStoppedHoldsUpNeitherTheWindowsNorTheEnd) {
    const struct {
        bool terminal;
        int signal;  // 0: the X server dies
        int status;
    } cases[] = {{false, SIGTERM, 143}, {true, SIGTERM, 143}, {false, 0, 1}};
    for (const auto& c : cases) {
        TempRoot root;  // without a parameter file: the section engine says so on standard output
        XServer server;
        Simulator simulator({"--frozen", "--adapters", "1"});
        const Stopped output(c.terminal);
        Tool tool(root, {"-debug"}, output.writer);
        EXPECT_TRUE(hasAsked(simulator)) << c.terminal;
        std::this_thread::sleep_for(std::chrono::milliseconds(300));  // it shows its window
        if (c.signal)
            tool.signal(c.signal);
        else
            server.kill();
        EXPECT_EQ(tool.exitStatusWithin(std::chrono::seconds(10)), c.status) << c.terminal;
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

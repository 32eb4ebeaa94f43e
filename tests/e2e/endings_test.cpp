// The X server is lost, or a signal comes, while a real process is in the middle of Setup.
#include "tests/e2e/outsideuser.h"
#include "tests/support/holder.h"

using namespace std::chrono_literals;

namespace {

constexpr const char *file = "/etc/atm/tvconf", *list = "/etc/atm/pvcconf0.0";

// An administrator with Setup open.
struct Desk : Place, Administrator {
    explicit Desk(const std::vector<std::string>& arguments = {}) : Administrator(root, arguments) {
        EXPECT_TRUE(wasAsked(simulator, "adapter.mac"));
        begin();
    }
};

// Ends a process, by a signal or by the death of its server, and checks that it took at most so long.
double secondsToEnd(Desk& desk, int signal, double most, bool serverStands = false) {
    if (!signal || serverStands) desk.user.leave();
    if (serverStands) desk.server.stop();
    const auto began = std::chrono::steady_clock::now();
    if (signal)
        desk.tool.signal(signal);
    else
        desk.server.kill();
    EXPECT_EQ(desk.tool.exitStatusWithin(20s), signal ? 128 + signal : 1);
    const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
    EXPECT_LT(took, most);
    return took;
}

using Lock = std::unique_ptr<Holder>;

// What stands at the moment of the end. A PVC has been added and two names have been changed by then.
struct Moment {
    const char* name;
    std::function<void(Desk&, Lock&)> reach;
    // Afterwards: names of LEC 1 and 2 in the file, whether the list has the new PVC, how many requests the
    // driver got, without and with a signal.
    const char *one, *two;
    bool listed;
    int starts, startsBySignal;
    bool named = false;  // the list, on standard error
};
void PrintTo(const Moment& moment, std::ostream* out) {
    *out << moment.name;
}

void meetTheLock(Desk& desk, Lock& lock) {
    lock = std::make_unique<Holder>();
    desk.user.click(spot::ok);
    EXPECT_TRUE(desk.user.sees("Configuration Busy"));
}

const Moment moments[] = {
    {"Edited", [](Desk&, Lock&) {}, "engineering", "accounting", true, 0, 0},
    {"SlowDriver",
     [](Desk& d, Lock&) {
         d.simulator.ctl("fault lec.start every late 1200");
         d.user.click(spot::ok);
         EXPECT_TRUE(wasAsked(d.simulator, "lec.start"));
     },
     "one", "two", true, 2, 1},
    {"Conflict",
     [](Desk& d, Lock&) {
         std::string text = d.root.read(file);
         d.root.write(file, text.replace(text.find("engineering"), 11, "theirs"));
         d.user.click(spot::ok);
         EXPECT_TRUE(d.user.sees("Configuration Conflict"));
     },
     "theirs", "two", true, 1, 0},
    {"Busy", meetTheLock, "engineering", "accounting", false, 0, 0, true},
    {"BusyAndFreeAgain", [](Desk& d, Lock& lock) { meetTheLock(d, lock), lock.reset(); }, "one", "two", true,
     2, 0},
    {"Waiting",
     [](Desk& d, Lock& lock) {
         lock = std::make_unique<Holder>();
         d.user.click(spot::ok);
         std::this_thread::sleep_for(500ms);
     },
     "engineering", "accounting", false, 0, 0, true},
};

}  // namespace

class Endings : public testing::TestWithParam<Moment> {};

TEST_P(Endings, WhatTheDriverHasAndWhatWasConfirmedIsSaved) {
    const Moment& moment = GetParam();
    for (const std::string end : {"server", "signal", "signal while the server stands still"}) {
        SCOPED_TRACE(end);
        const int signal = end == "server" ? 0 : SIGTERM;
        Desk desk;
        Lock lock;
        desk.addPvc(204);
        EXPECT_TRUE(wasAsked(desk.simulator, "lec.pvc-add"));
        desk.rename(1, "one");
        desk.rename(2, "two");
        moment.reach(desk, lock);
        secondsToEnd(desk, signal, signal ? 3 : 20, end.size() > 6);
        EXPECT_EQ(nameOfClient(desk.root, 1), moment.one);
        EXPECT_EQ(nameOfClient(desk.root, 2), moment.two);
        EXPECT_EQ(has(desk.root.read(list), "=204"), moment.listed);
        std::istringstream log(desk.simulator.ctl("log all"));
        int starts = 0;
        for (std::string line; std::getline(log, line);) starts += has(line, "lec.start");
        EXPECT_EQ(starts, signal ? moment.startsBySignal : moment.starts);
        EXPECT_EQ(has(desk.tool.output(),
                      "tarvolin: adapter 1: the list of LEC 1 is not saved, the driver has it\n"),
                  moment.named);
        EXPECT_EQ(desk.root.temporaryCopies(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(At, Endings, testing::ValuesIn(moments),
                         [](const auto& of) { return of.param.name; });

// What is between two requests of a change waits for no window.
TEST(EndingsOfRequests, AServerThatStandsStillHoldsUpNoRequest) {
    Desk desk;
    desk.rename(1, "one");
    desk.rename(2, "two");
    desk.simulator.ctl("fault lec.start every late 800");
    desk.user.click(spot::ok);
    EXPECT_TRUE(wasAsked(desk.simulator, "lec.start"));
    desk.user.leave();
    desk.server.stop();
    EXPECT_TRUE(soon([&] { return nameOfClient(desk.root, 2) == "two"; }, 8));
    desk.server.kill();
    EXPECT_EQ(desk.tool.exitStatusWithin(20s), 1);
}

// In a process of its own: the library remembers its first display for good.
TEST(EndingsOfRequests, AServerThatTakesNothingIsGivenUp) {
    EXPECT_EXIT(
        {
            XServer server;
            zApplication application("tarvolin", "Tarvolin", {}, {});
            if (!application.openDisplay()) ::_exit(2);
            server.stop();
            const auto began = std::chrono::steady_clock::now();
            const bool painted = application.paintBetween([&] {
                auto* const display = static_cast<Display*>(application.display());
                for (int i = 0; i < 2'000'000; ++i) XNoOp(display);  // more than the connection holds
            });
            const auto waited = std::chrono::steady_clock::now() - began;
            server.kill();
            ::_exit(painted ? 3 : waited < 1s || waited > 40s ? 4 : 0);
        },
        testing::ExitedWithCode(0), "");
}

// Everything that the driver could be told has changed, and it says nothing.
TEST(EndingsOfRequests, ASilentDriverHoldsUpNoSignal) {
    for (const int signal : {SIGTERM, SIGINT}) {
        Desk desk({"-ADV"});
        for (int client = 1; client <= 4; ++client) {
            desk.user.click(spot::instance(client));
            desk.user.click(client < 4 ? spot::pvcOnly : spot::lecEnable);
        }
        desk.user.turn(spot::lesPage);
        for (int server = 1; server <= 8; ++server) {
            desk.user.click(spot::instance(server));
            desk.user.click(spot::lesEnable);
        }
        desk.user.turn(spot::lecsPage);
        desk.user.click(spot::lecsEnable);
        desk.user.turn(spot::ipPage);
        desk.user.click(spot::ipEnable);
        for (const char* control : {"lec", "les", "lecs", "ip"})
            desk.simulator.ctl(fmt::format("fault {}.control every silent", control));
        const std::string before = desk.root.read(file);
        desk.user.click(spot::ok);
        EXPECT_TRUE(wasAsked(desk.simulator, "lec.start"));
        std::this_thread::sleep_for(300ms);
        RecordProperty(signal == SIGTERM ? "SIGTERM seconds" : "SIGINT seconds",
                       fmt::format("{:.3f}", secondsToEnd(desk, signal, 3)));
        std::istringstream old(before), now(desk.root.read(file));
        int changed = 0;
        for (std::string a, b; std::getline(old, a) && std::getline(now, b);) changed += a != b;
        EXPECT_EQ(changed, 14);
        for (const char* said : {"LEC 1: no answer to the restart.", "LES 8: not "})
            EXPECT_THAT(desk.tool.output(), testing::HasSubstr(said));
    }
}

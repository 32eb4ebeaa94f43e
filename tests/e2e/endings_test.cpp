// The X server is lost, or a signal comes, while a real process is in the middle of Setup.
#include <gtest/gtest.h>  // before the window system's macros

#include "tests/support/holder.h"
#include "tests/e2e/outsideuser.h"
#include "tests/e2e/tool.h"
#include "tests/e2e/xsupport.h"
#include "tests/support/simulator.h"
#include "version.h"

#include <functional>
#include <memory>
#include <sstream>
#include <vector>

using namespace std::chrono_literals;

namespace {

constexpr const char *file = "/etc/atm/tvconf", *list = "/etc/atm/pvcconf0.0";

// A tool on a display of its own, with its user.
struct Desk {
    TempRoot root;
    XServer server;
    Simulator simulator;
    Tool tool;
    OutsideUser user;

    explicit Desk(const std::vector<std::string>& arguments = {})
        : simulator(
              (writeSampleConfiguration(root), std::vector<std::string>{"--frozen", "--adapters", "1"})),
          tool(root, arguments) {
        EXPECT_TRUE(user.sees(programTitle)) << tool.output();
        EXPECT_TRUE(soon([&] { return has(simulator.ctl("log all"), "adapter.mac"); }));
        EXPECT_TRUE(user.opens(spot::setup.x, spot::setup.y, "Setup ATM"));
        turn(spot::lecPage);
    }

    static bool has(const std::string& text, const std::string& part) { return text.find(part) != text.npos; }
    static bool soon(const std::function<bool()>& condition) {
        for (int i = 0; i < 500; ++i) {
            if (condition()) return true;
            std::this_thread::sleep_for(20ms);
        }
        return false;
    }
    bool hasTold(const char* request) {
        return soon([&] { return has(simulator.ctl("log all"), request); });
    }
    bool runs(const char* line) { return has(simulator.ctl("dump config"), line); }
    std::string nameOf(int client) {  // in the file
        std::istringstream words(
            root.read(file).substr(root.read(file).find(fmt::format("[LEC{}", client - 1))));
        std::string word, name;
        while (words >> word && word != "ElanName") {
        }
        words >> word >> name;
        return name;
    }

    void click(Spot spot) { user.click(spot.x, spot.y); }
    void turn(Spot spot) { user.turn(spot.x, spot.y); }
    void addPvc() {
        ASSERT_TRUE(user.opens(spot::addPvc.x, spot::addPvc.y, "PVC Settings"));
        user.enter(spot::pvcVci.x, spot::pvcVci.y, "204");
        user.key("Return");
        ASSERT_TRUE(soon([&] { return runs("pvc 00204"); }));
        ASSERT_TRUE(user.sees("Setup ATM"));
    }
    void renameTwo() {
        user.enter(spot::lecName.x, spot::lecName.y, "one");
        click(spot::instance(2));
        user.enter(spot::lecName.x, spot::lecName.y, "two");
    }
    void confirm() { click(spot::ok); }
};

// What stands at the moment of the end.
struct Moment {
    const char* name;
    std::function<void(Desk&, std::unique_ptr<Holder>&)> reach;
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
const Moment moments[] = {
    {"Edited", [](Desk& d, auto&) { d.renameTwo(), d.click(spot::instance(1)), d.addPvc(); }, "engineering",
     "accounting", true, 0, 0},
    {"SlowDriver",
     [](Desk& d, auto&) {
         d.addPvc();
         d.renameTwo();
         d.simulator.ctl("fault lec.start every late 1200");
         d.confirm();
         EXPECT_TRUE(d.hasTold("lec.start"));
     },
     "one", "two", true, 2, 1},
    {"Conflict",
     [](Desk& d, auto&) {
         d.addPvc();
         d.renameTwo();
         std::string text = d.root.read(file);
         d.root.write(file, text.replace(text.find("engineering"), 11, "theirs"));
         d.confirm();
         EXPECT_TRUE(d.user.sees("Configuration Conflict"));
     },
     "theirs", "two", true, 1, 0},
    {"Busy",
     [](Desk& d, auto& holder) {
         d.addPvc();
         d.renameTwo();
         holder = std::make_unique<Holder>();
         d.confirm();
         EXPECT_TRUE(d.user.sees("Configuration Busy"));
     },
     "engineering", "accounting", false, 0, 0, true},
    {"BusyAndFreeAgain",
     [](Desk& d, auto& holder) {
         d.addPvc();
         d.renameTwo();
         holder = std::make_unique<Holder>();
         d.confirm();
         EXPECT_TRUE(d.user.sees("Configuration Busy"));
         holder.reset();
     },
     "one", "two", true, 2, 0},
    {"Waiting",
     [](Desk& d, auto& holder) {
         d.addPvc();
         d.renameTwo();
         holder = std::make_unique<Holder>();
         d.confirm();
         std::this_thread::sleep_for(500ms);
     },
     "engineering", "accounting", false, 0, 0, true},
};

}  // namespace

class Endings : public testing::TestWithParam<Moment> {};

TEST_P(Endings, WhatTheDriverHasAndWhatWasConfirmedIsSaved) {
    const Moment& moment = GetParam();
    for (const int signal : {0, SIGTERM}) {
        SCOPED_TRACE(signal ? "signal" : "server");
        Desk desk;
        std::unique_ptr<Holder> holder;
        moment.reach(desk, holder);
        const auto began = std::chrono::steady_clock::now();
        if (signal) {
            desk.tool.signal(signal);
        } else {
            desk.user.leave();
            desk.server.kill();
        }
        EXPECT_EQ(desk.tool.exitStatusWithin(20s), signal ? 128 + signal : 1);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
        EXPECT_LT(took, signal ? 3s : 20s);
        EXPECT_EQ(desk.nameOf(1), moment.one);
        EXPECT_EQ(desk.nameOf(2), moment.two);
        EXPECT_EQ(Desk::has(desk.root.read(list), "=204"), moment.listed);
        std::istringstream log(desk.simulator.ctl("log all"));
        int starts = 0;
        for (std::string line; std::getline(log, line);) starts += Desk::has(line, "lec.start");
        EXPECT_EQ(starts, signal ? moment.startsBySignal : moment.starts);
        EXPECT_EQ(Desk::has(desk.tool.output(),
                            "tarvolin: adapter 1: the list of LEC 1 is not saved, the driver has it\n"),
                  moment.named);
        EXPECT_EQ(desk.root.temporaryCopies(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(At, Endings, testing::ValuesIn(moments),
                         [](const auto& of) { return of.param.name; });

// Everything that the driver could be told has changed, and it says nothing.
TEST(EndingsOfRequests, ASilentDriverHoldsUpNoSignal) {
    for (const int signal : {SIGTERM, SIGINT}) {
        Desk desk({"-ADV"});
        for (int client = 1; client <= 4; ++client) {
            desk.click(spot::instance(client));
            desk.click(client < 4 ? spot::pvcOnly : spot::lecEnable);
        }
        desk.turn(spot::lesPage);
        for (int server = 1; server <= 8; ++server) {
            desk.click(spot::instance(server));
            desk.click(spot::lesEnable);
        }
        desk.turn(spot::lecsPage);
        desk.click(spot::lecsEnable);
        desk.turn(spot::ipPage);
        desk.click(spot::ipEnable);
        for (const char* control : {"lec", "les", "lecs", "ip"})
            desk.simulator.ctl(fmt::format("fault {}.control every silent", control));
        const std::string before = desk.root.read(file);
        desk.confirm();
        EXPECT_TRUE(desk.hasTold("lec.start"));
        std::this_thread::sleep_for(300ms);
        const auto began = std::chrono::steady_clock::now();
        desk.tool.signal(signal);
        EXPECT_EQ(desk.tool.exitStatusWithin(20s), 128 + signal);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
        EXPECT_LT(took, 3s);
        RecordProperty(signal == SIGTERM ? "SIGTERM seconds" : "SIGINT seconds",
                       fmt::format("{:.3f}", took.count()));
        std::istringstream old(before), now(desk.root.read(file));
        int changed = 0;
        for (std::string a, b; std::getline(old, a) && std::getline(now, b);) changed += a != b;
        EXPECT_EQ(changed, 14);
    }
}

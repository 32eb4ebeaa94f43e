// The guard of a change that nobody has confirmed is killed: the tool takes it over when it starts.
#include "tests/e2e/outsideuser.h"

#include <filesystem>
#include <nlohmann/json.hpp>

namespace fs = std::filesystem;

namespace {

constexpr const char* noted = "/var/lib/tarvolin/pending.json";

struct Unconfirmed : Place {
    const std::map<std::string, std::string> before = root.files("/etc/atm");
    const std::string driverBefore = simulator.ctl("dump config");

    // A change that has so many seconds, and loses its guard.
    explicit Unconfirmed(int seconds) {
        const std::string command =
            TVCTL_PROGRAM " set adapter1/lec1.elanName=tried adapter1/lec1.mtu=9234 --confirm ";
        EXPECT_EQ(std::system((command + std::to_string(seconds) + " >/dev/null").c_str()), 0);
        EXPECT_EQ(nameOfClient(root, 1), "tried");
        EXPECT_NE(simulator.ctl("dump config"), driverBefore);
        EXPECT_EQ(::kill(guard(), SIGKILL), 0);
    }
    pid_t guard() const { return nlohmann::json::parse(root.read(noted))["guard"].get<pid_t>(); }
    void expectAsBefore() const {
        EXPECT_EQ(root.files("/etc/atm"), before);
        EXPECT_EQ(simulator.ctl("dump config"), driverBefore);
        EXPECT_FALSE(root.exists(noted));
    }
};

}  // namespace

TEST(Guard, WhatWasDueIsTakenBackWhenTheToolStarts) {
    const Unconfirmed change(1);
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    Administrator one(change.root);
    change.expectAsBefore();
    EXPECT_EQ(one.tool.output(),
              "tarvolin: change 0001 of root was not confirmed in time, and has been taken back\n");
    // The window says it with the next change.
    one.begin();
    one.user.click(spot::cancel);
    EXPECT_TRUE(one.user.sees("Configuration Error"));
}

TEST(Guard, WhatIsNotDueYetGetsAnotherGuardThatOutlivesTheTool) {
    const Unconfirmed change(5);
    {
        const Administrator one(change.root);
        EXPECT_TRUE(soon([&] {
            std::error_code ended;
            return fs::equivalent(fmt::format("/proc/{}/exe", change.guard()), TARVOLIN_PROGRAM, ended);
        }));
        EXPECT_EQ(one.tool.output(), "");
    }  // killed, with its X server
    EXPECT_EQ(nameOfClient(change.root, 1), "tried");
    EXPECT_TRUE(soon([&] { return !change.root.exists(noted); }));
    change.expectAsBefore();
}

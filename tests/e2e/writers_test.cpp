// Two real tools and a script change the same files: nothing is lost.
//
// TV_ROUNDS sets how many rounds (bench/writers).
#include <gtest/gtest.h>  // before the window system's macros

#include "tests/e2e/outsideuser.h"
#include "tests/e2e/tool.h"
#include "tests/e2e/xsupport.h"
#include "tests/support/simulator.h"
#include "version.h"

#include <cstdio>
#include <cstdlib>
#include <fmt/format.h>
#include <random>
#include <sstream>

using namespace std::chrono_literals;

namespace {

constexpr const char* file = "/etc/atm/tvconf";

// One administrator, with a display of their own.
struct Administrator {
    XServer server;
    Tool tool;
    OutsideUser user;

    explicit Administrator(const TempRoot& root) : tool(root, {}) {
        EXPECT_TRUE(user.sees(programTitle)) << tool.output();
    }

    void click(Spot spot) { user.click(spot.x, spot.y); }
    void turn(Spot spot) { user.turn(spot.x, spot.y); }
    void begin() {
        ASSERT_TRUE(user.sees(programTitle));
        ASSERT_TRUE(user.opens(spot::setup.x, spot::setup.y, "Setup ATM")) << tool.output();
        turn(spot::lecPage);
    }
    void rename(int client, const std::string& name) {
        click(spot::instance(client));
        user.enter(spot::lecName.x, spot::lecName.y, name);
    }
    void addPvc(int vci) {
        click(spot::instance(1));
        ASSERT_TRUE(user.opens(spot::addPvc.x, spot::addPvc.y, "PVC Settings"));
        user.enter(spot::pvcMac.x, spot::pvcMac.y, fmt::format("00000000{:04}", vci));
        user.enter(spot::pvcVci.x, spot::pvcVci.y, std::to_string(vci));
        user.key("Return");
        while (user.isUp("PVC Settings")) std::this_thread::sleep_for(10ms);
        ASSERT_TRUE(user.sees("Setup ATM"));
    }
    // Answers a question, and notes that there was one.
    void answer(bool ok, bool& asked) {
        if (!user.isUp("Configuration Conflict") || !user.sees("Configuration Conflict")) return;
        asked = true;
        user.key(ok ? "Return" : "Escape");
    }
};

std::string nameOf(const std::string& text, int client) {
    std::istringstream words(text.substr(text.find(fmt::format("[LEC{}", client - 1))));
    std::string word, name;
    while (words >> word && word != "ElanName") {
    }
    words >> word >> name;
    return name;
}

}  // namespace

TEST(WritersInWindows, TheSumOfAllChangesIsInTheFiles) {
    const char* wanted = std::getenv("TV_ROUNDS");
    const int rounds = wanted ? std::atoi(wanted) : 6;
    TempRoot root;
    writeSampleConfiguration(root);
    Simulator simulator({"--frozen", "--adapters", "1"});
    Administrator one(root), two(root);
    std::mt19937 random(1);
    std::string common = "backbone";
    int questions = 0;
    std::vector<int> added;
    for (int round = 1; round <= rounds; ++round) {
        one.begin();
        two.begin();
        one.rename(1, fmt::format("a{}", round));
        two.rename(2, fmt::format("b{}", round));
        const bool named[] = {random() % 2 != 0, random() % 2 != 0};
        if (named[0]) one.rename(3, fmt::format("a{}", round));
        if (named[1]) two.rename(3, fmt::format("b{}", round));
        for (Administrator* each : {&one, &two}) {
            if (random() % 4) continue;
            added.push_back(1001 + static_cast<int>(added.size()));
            each->addPvc(added.back());
        }
        // All three at once.
        const std::string script = fmt::format(
            "cd '{}' && flock run/tarvolin.lock sed -i 's/^# .*First adapter/# {} First adapter/' "
            "etc/atm/tvconf",
            root.path().string(), round);
        one.user.click(spot::ok.x, spot::ok.y, false);
        std::FILE* const running = ::popen(script.c_str(), "w");
        ASSERT_TRUE(running);
        two.user.click(spot::ok.x, spot::ok.y, false);
        const bool ok = random() % 2;
        bool asked[2] = {};
        // Each has changed something, so each save is in the history.
        const std::string last = fmt::format("/var/lib/tarvolin/history/{:04}/manifest.json", 2 * round);
        while (!root.exists(last)) {
            one.answer(ok, asked[0]);
            two.answer(ok, asked[1]);
            std::this_thread::sleep_for(20ms);
        }
        ASSERT_EQ(::pclose(running), 0);
        ASSERT_EQ(asked[0] + asked[1], named[0] && named[1]) << "exactly one is asked";
        questions += asked[0] || asked[1];
        if (named[0] || named[1]) {
            const bool first = asked[0] ? ok : asked[1] ? !ok : named[0];
            common = fmt::format("{}{}", first ? 'a' : 'b', round);
        }

        const std::string text = root.read(file), list = root.read("/etc/atm/pvcconf0.0");
        ASSERT_EQ(nameOf(text, 1), fmt::format("a{}", round));
        ASSERT_EQ(nameOf(text, 2), fmt::format("b{}", round));
        ASSERT_EQ(nameOf(text, 3), common);
        ASSERT_NE(text.find(fmt::format("# {} First adapter", round)), text.npos);
        for (const int vci : added) ASSERT_NE(list.find(fmt::format("={}\t", vci)), list.npos) << vci;
    }
    fmt::print("{} rounds, nothing lost, {} conflicts asked\n", rounds, questions);
}

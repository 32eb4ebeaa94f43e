// Two real tools, tvctl and a script change the same files: nothing is lost.
//
// TV_ROUNDS sets how many rounds (bench/writers).
#include "tests/e2e/outsideuser.h"

#include <cstdio>
#include <random>

namespace {

// Answers a question, and notes that there was one.
void answer(OutsideUser& user, bool ok, bool& asked) {
    if (!user.isUp("Configuration Conflict") || !user.sees("Configuration Conflict")) return;
    asked = true;
    user.pressKey(ok ? "Return" : "Escape");
}

}  // namespace

TEST(WritersInWindows, TheSumOfAllChangesIsInTheFiles) {
    const char* wanted = std::getenv("TV_ROUNDS");
    const int rounds = wanted ? std::atoi(wanted) : 6;
    const Place place;
    const TempRoot& root = place.root;
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
        // All four at once.
        const std::string script = fmt::format(
            "cd '{0}' && flock run/tarvolin.lock sed -i 's/^# .*First adapter/# {1} First adapter/' "
            "etc/atm/tvconf && " TVCTL_PROGRAM
            " --root '{0}' set --file-only adapter1/lec4.elanName=c{1} >/dev/null",
            root.path().string(), round);
        one.user.click(spot::ok, false);
        std::FILE* const running = ::popen(script.c_str(), "w");
        ASSERT_TRUE(running);
        two.user.click(spot::ok, false);
        const bool ok = random() % 2;
        bool asked[2] = {};
        // Each has changed something, so each save is in the history.
        const std::string last = fmt::format("/var/lib/tarvolin/history/{:04}/manifest.json", 3 * round);
        while (!root.exists(last)) {
            answer(one.user, ok, asked[0]);
            answer(two.user, ok, asked[1]);
            waitABit();
        }
        ASSERT_EQ(::pclose(running), 0);
        ASSERT_EQ(asked[0] + asked[1], named[0] && named[1]) << "exactly one is asked";
        questions += asked[0] || asked[1];
        if (named[0] || named[1]) {
            const bool first = asked[0] ? ok : asked[1] ? !ok : named[0];
            common = fmt::format("{}{}", first ? 'a' : 'b', round);
        }

        const std::string text = root.read("/etc/atm/tvconf"), list = root.read("/etc/atm/pvcconf0.0");
        ASSERT_EQ(nameOfClient(root, 1), fmt::format("a{}", round));
        ASSERT_EQ(nameOfClient(root, 2), fmt::format("b{}", round));
        ASSERT_EQ(nameOfClient(root, 3), common);
        ASSERT_EQ(nameOfClient(root, 4), fmt::format("c{}", round));
        ASSERT_TRUE(has(text, fmt::format("# {} First adapter", round)));
        for (const int vci : added) ASSERT_TRUE(has(list, fmt::format("={}\t", vci))) << vci;
    }
    fmt::print("{} rounds, nothing lost, {} conflicts asked\n", rounds, questions);
}

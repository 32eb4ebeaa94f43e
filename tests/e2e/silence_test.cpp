// What the user does while a driver does not answer.
#include "tests/e2e/outsideuser.h"

// A key ends the first wait when that has lasted for some seconds, and each later one at once; a window that
// is opened meanwhile is there soon.
TEST(Silence, HoldsNobodyUp) {
    const Place place;
    Administrator admin(place.root);
    for (const auto patience : {std::chrono::milliseconds(5000), std::chrono::milliseconds(2500)}) {
        SCOPED_TRACE(patience.count());
        const auto asked = std::chrono::steady_clock::now();
        ASSERT_TRUE(admin.user.opens(spot::statistics, "Statistics ATM"));
        EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(3));
        place.simulator.ctl("fault any every silent");
        std::this_thread::sleep_for(patience);  // the next refresh waits meanwhile
        const auto begin = std::chrono::steady_clock::now();
        admin.user.pressKey("Escape");
        EXPECT_TRUE(soon([&] { return !admin.user.isUp("Statistics ATM"); }));
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3));
        ASSERT_TRUE(admin.user.sees(programTitle));
    }
}

// A pointer that is never at rest leaves no wait: what a driver says that is slow now is heard.
TEST(Silence, IsNotKeptByThePointer) {
    const Place place;
    Administrator admin(place.root);
    ASSERT_TRUE(admin.user.opens(spot::statistics, "Statistics ATM"));
    const auto moveUntil = [&](const std::function<bool()>& done, double seconds) {
        int x = 0;
        return soon([&] { return admin.user.point(200 + 37 * (x++ % 10), 250), done(); }, seconds);
    };
    place.simulator.ctl("fault any every silent");
    EXPECT_FALSE(moveUntil([] { return false; }, 5));
    place.simulator.ctl("fault clear");
    place.simulator.ctl("fault any every late 1200");
    place.simulator.ctl("log clear");
    // The second request of a refresh.
    EXPECT_TRUE(moveUntil([&] { return has(place.simulator.ctl("log all"), "vc.table"); }, 25));
}

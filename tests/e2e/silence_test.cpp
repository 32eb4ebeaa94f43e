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

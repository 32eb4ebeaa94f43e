// What the user does while a driver does not answer.
#include "tests/e2e/outsideuser.h"

namespace {

std::ptrdiff_t requestsOf(const Simulator& driver) {
    const std::string log = driver.ctl("log all");
    return std::ranges::count(log, '\n');
}

}  // namespace

// The first wait is as long as it is; a later one, of the page or of a plotted value, ends with the next key.
TEST(Silence, HoldsTheUserUpOnce) {
    const Place place;
    Administrator admin(place.root);
    ASSERT_TRUE(admin.user.opens(spot::statistics, "Statistics ATM"));
    place.simulator.ctl("fault any every silent");
    const auto before = requestsOf(place.simulator);
    ASSERT_TRUE(soon([&] { return requestsOf(place.simulator) >= before + 2; }, 40));
    const auto begin = std::chrono::steady_clock::now();
    admin.user.pressKey("Escape");
    EXPECT_TRUE(soon([&] { return !admin.user.isUp("Statistics ATM"); }));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3));
}

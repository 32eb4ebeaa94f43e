// How often the tool waits for the X server, window by window.
#include "tests/e2e/outsideuser.h"
#include "tests/support/linkproxy.h"

namespace {

// The tool behind a link that counts, its user beside it.
class RoundTrips : public testing::Test {
  protected:
    SampleRoot root;
    Simulator simulator{{"--adapters", "1"}};
    XServer server;
    std::optional<LinkProxy> link;
    std::optional<Tool> tool;
    OutsideUser user;

    void SetUp() override {
        const std::string direct = std::getenv("DISPLAY");
        link.emplace(direct);
        ::setenv("DISPLAY", link->display().c_str(), 1);
        tool.emplace(root, std::vector<std::string>{"-adv"});
        ::setenv("DISPLAY", direct.c_str(), 1);
    }

    // Those since the last call, once there are no more.
    void expectAtMost(int limit, const char* what) {
        LinkProxy::Trips all;
        for (int quiet = 0; quiet < 15; waitABit()) {
            const LinkProxy::Trips more = link->take();
            for (const auto& [name, count] : more) all[name] += count;
            quiet = more.empty() ? quiet + 1 : 0;
        }
        int count = 0;
        std::string names;
        for (const auto& [name, trips] : all) {
            count += trips;
            names += fmt::format(" {}:{}", name, trips);
        }
        EXPECT_LE(count, limit) << what << names;
    }
};

}  // namespace

TEST_F(RoundTrips, StayFew) {
    ASSERT_TRUE(user.sees(programTitle)) << tool->output();
    expectAtMost(40, "start");
    ASSERT_TRUE(user.opens(spot::setup, "Setup ATM"));
    expectAtMost(6, "Setup");
    user.turn(spot::lecPage);
    expectAtMost(4, "LEC page");
    ASSERT_TRUE(user.opens(spot::addPvc, "PVC Settings"));
    expectAtMost(6, "PVC dialog");
    user.pressKey("Escape");
    ASSERT_TRUE(user.sees("Setup ATM"));
    expectAtMost(4, "PVC dialog closed");
    user.turn(spot::lesPage);
    expectAtMost(4, "LES page");
    user.click(spot::cancel);
    ASSERT_TRUE(user.sees(programTitle));
    ASSERT_TRUE(user.opens(spot::setup, "Setup ATM"));
    expectAtMost(6, "Setup again");
    user.click(spot::cancel);
    ASSERT_TRUE(user.sees(programTitle));
    ASSERT_TRUE(user.opens(spot::statistics, "Statistics"));
    expectAtMost(2, "Statistics");
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    expectAtMost(0, "ticks");
}

// Values that are watched beside the pages.
#include "tests/e2e/statisticstest.h"
#include "ui/adapterwatch.h"

namespace {

class WatchedValues : public StatisticsTest {
  protected:
    void SetUp() override {
        StatisticsTest::SetUp();
        timerTime = 200;
    }
    // Requests of a kind within a second and a half.
    double requests(const std::string& name) {
        loggedRequests();
        pass(1.5);
        return static_cast<double>(
            std::ranges::count(loggedRequests(), name, &std::pair<std::string, std::string>::first));
    }
};

}  // namespace

TEST_F(WatchedValues, AreAskedOnceWithThePage) {
    startOn("aal5Stats", "set adapter 1 rxPackets 1000");
    const double ofPage = requests("adapter.aal");
    const auto watch = AdapterWatch::of(application, 0);
    const auto packets = watch->sampler().watch(metrics::subjectOf({}, "", "rxPackets"));
    const auto frames =
        watch->sampler().watch(metrics::subjectOf({metrics::Service::signalling, 0, 0}, "", "ilmiRxFrames"));
    EXPECT_NEAR(requests("adapter.aal"), ofPage, 1);
    EXPECT_EQ(std::get<double>(packets->last()), 0);

    // The page is not on top, and then there is none.
    turnTo("lecStats");
    EXPECT_NEAR(requests("adapter.aal"), ofPage, 1);
    turnTo("signallingStats");
    pass(0.5);
    EXPECT_EQ(requests("vc.rows"), 0) << "the page asks for the first rows without it";
    press("close");
    EXPECT_NEAR(requests("adapter.aal"), ofPage, 1);
    ctl("set adapter 1 rxPackets 1100");
    EXPECT_TRUE(user->until([&] { return std::get<double>(packets->last()) > 0; }, 2));
}

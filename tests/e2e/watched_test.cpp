// Values that are watched beside the pages.
#include "tests/e2e/statisticstest.h"
#include "ui/adapterwatch.h"
#include "ui/plot/plotwindows.h"

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

// By keys alone, from fields and cells; plots stay when the statistics are closed.
TEST_F(WatchedValues, ArePlotted) {
    startOn("lecStats",
            "set lec 1.1 state 7; rows lec 1.1 2; set lec 1.1 row 1 vci 40; set lec 1.1 row 2 vci 41");
    const auto plots = PlotWindows::of(application);
    zTable& connections = table("lecTable");
    expectCell("lecTable", 2, 2, "  0/  41");
    XmProcessTraversal(connections.widget(), XmTRAVERSE_CURRENT);
    connections.setActiveCell({2, 2});
    user->key("p", "Control_L");
    EXPECT_FALSE(user->shellLike("Plot of ")) << "a VCI has no course";
    connections.setActiveCell({4, 2});
    user->key("p", "Control_L");
    const Widget plot = user->shellLike("Plot of adapter 1");
    ASSERT_TRUE(plot);
    raise(dialog);
    XmProcessTraversal(connections.widget(), XmTRAVERSE_CURRENT);
    connections.setActiveCell({3, 1});
    user->key("d", "Control_L");
    turnTo("aal5Stats");
    XmProcessTraversal(onPage("rxCells"), XmTRAVERSE_CURRENT);
    user->key("d", "Control_L");

    const auto watch = AdapterWatch::present(0);
    ASSERT_TRUE(watch);
    const auto packets = watch->sampler().watch(
        metrics::subjectOf({metrics::Service::lec, 0, 0}, "connections", "rxPackets", "41"));
    press("close");
    const auto rate = [&] {
        const double* known = std::get_if<double>(&packets->last());
        return known ? *known : -1;
    };
    EXPECT_TRUE(user->until([&] { return rate() == 0; }));
    ctl("set lec 1.1 row 2 rxPackets 100");
    EXPECT_TRUE(user->until([&] { return rate() > 0; }));
    EXPECT_TRUE(plots->canAdd(0));
    raise(plot);
    user->key("Escape");
    EXPECT_FALSE(user->shellLike("Plot of "));
    EXPECT_FALSE(plots->canAdd(0));
}

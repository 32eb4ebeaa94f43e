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
    // How many of each kind there are within a second and a half.
    std::vector<double> requests(const Names& names) {
        loggedRequests();
        pass(1.5);
        const auto logged = loggedRequests();
        std::vector<double> counts;
        for (const std::string& name : names)
            counts.push_back(static_cast<double>(
                std::ranges::count(logged, name, &std::pair<std::string, std::string>::first)));
        return counts;
    }
};

}  // namespace

TEST_F(WatchedValues, AreAskedOnceWithThePage) {
    startOn("aal5Stats", "set adapter 1 rxPackets 1000");
    const auto watch = AdapterWatch::of(application, 0);
    const auto packets = watch->sampler().watch(metrics::subjectOf({}, "", "rxPackets"));
    const auto frames =
        watch->sampler().watch(metrics::subjectOf({metrics::Service::signalling, 0, 0}, "", "ilmiRxFrames"));
    const auto rate = [&] {
        const double* known = std::get_if<double>(&packets->last());
        return known ? *known : -1;
    };
    EXPECT_TRUE(user->until([&] { return rate() == 0; }));
    // The page asks for the alarms and the counters.
    const auto both = requests({"adapter.aal", "adapter.suni"});
    EXPECT_GT(both[0], 1);
    EXPECT_NEAR(both[0], both[1], 1);

    // The page is not on top, and then there is none.
    turnTo("lecStats");
    EXPECT_GT(requests({"adapter.aal"})[0], 1);
    turnTo("signallingStats");
    pass(0.5);
    EXPECT_EQ(requests({"vc.rows"})[0], 0) << "the page asks for the first rows without it";
    press("close");
    EXPECT_GT(requests({"adapter.aal"})[0], 1);
    ctl("set adapter 1 rxPackets 1100");
    EXPECT_TRUE(user->until([&] { return rate() > 0; }, 2));
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

    press("close");
    EXPECT_TRUE(AdapterWatch::present(0));
    EXPECT_GT(requests({"lec.rows"})[0], 1);
    const auto value = [](const char* name) { return metrics::subjectOf({}, "", name); };
    EXPECT_TRUE(plots->canAdd(value("txCells")));
    EXPECT_FALSE(plots->canAdd(value("rxCells"))) << "it is there";
    raise(plot);
    user->key("Escape");
    EXPECT_FALSE(user->shellLike("Plot of "));
    EXPECT_FALSE(plots->canAdd(value("txCells")));
    EXPECT_FALSE(AdapterWatch::present(0));
}

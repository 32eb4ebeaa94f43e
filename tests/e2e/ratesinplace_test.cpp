// Counters per second on the pages of the statistics.
#include "tests/e2e/statisticstest.h"

namespace {

class RatesInPlace : public StatisticsTest {
  protected:
    void SetUp() override {
        StatisticsTest::SetUp();
        timerTime = 250;
    }
    double rate(const std::string& name) {
        const std::string text = look(name);
        return text == "unknown" ? -1 : std::stod(text);
    }
    // For one interval at least.
    bool becomes(const std::string& name, const std::string& text) {
        return user->until([&] { return look(name) == text; }, 2);
    }
    // A counter that grows once has a rate during one interval.
    double highest(const std::string& name, const std::string& commands) {
        double most = 0;
        ctl(commands);
        user->until([&] { return most = std::max(most, rate(name)), most > 0 && rate(name) == 0; }, 2);
        return most;
    }
};

}  // namespace

TEST_F(RatesInPlace, FieldsAndBack) {
    startOn("aal5Stats", "set adapter 1 rxPackets 1000; set adapter 1 txCells 5");
    user->focus(dialog);
    // Without an answer no number stands beside a label that it does not have.
    ctl("fault adapter.suni every errno 62");
    expectSoon<bool>([&] { return greyed("rxPackets"); }, true);
    user->key("r", "Control_L");
    EXPECT_EQ(look("rxPacketsLabel"), "Received Packets/s");
    EXPECT_EQ(look("rxPackets"), "");
    ctl("fault clear");
    EXPECT_TRUE(becomes("rxPackets", "unknown")) << "nothing to compare with";
    expectLooks("rxPacketsLabel=Received Packets/s; rxFrameErrorsLabel=Rx Frame Errors/s");
    expectLooks("rxPackets=0; txCells=0");

    // Within a quarter of a second, or a little more.
    const double grown = highest("rxPackets", "set adapter 1 rxPackets 2000");
    EXPECT_TRUE(grown > 100 && grown < 4100) << grown;

    // Clear changes totals alone.
    std::vector<double> seen;
    ctl("set adapter 1 txCells 1005");
    press("clear");
    user->until([&] { return seen.push_back(rate("txCells")), false; }, 1);
    EXPECT_THAT(seen, testing::Each(testing::AllOf(testing::Ge(0), testing::Lt(8000))));
    EXPECT_GT(*std::ranges::max_element(seen), 100);

    // A counter that is set back has no rate for one interval.
    ctl("set adapter 1 rxPackets 1990");
    EXPECT_TRUE(becomes("rxPackets", "unknown"));
    expectLooks("rxPackets=0");

    // Ten seconds say the same of a growth that they contain.
    user->key("t", "Control_L");
    ctl("set adapter 1 rxPackets 2290");
    user->until([&] { return rate("rxPackets") > 0; }, 2);
    const double first = rate("rxPackets");
    pass(1);
    EXPECT_TRUE(rate("rxPackets") > 0 && rate("rxPackets") < first) << first << " " << rate("rxPackets");

    user->key("r", "Control_L");
    expectLooks("rxPacketsLabel=Received Packets:; rxPackets={}; txCells=0", 2290 - 2000);
}

TEST_F(RatesInPlace, TablesAndBack) {
    startOn("lecStats",
            "set lec 1.1 state 7; rows lec 1.1 2; set lec 1.1 row 1 vci 40; set lec 1.1 row 2 vci 41; "
            "set lec 1.1 row 1 txPackets 100; set lec 1.1 row 2 txPackets 7");
    expectCell("lecTable", 3, 1, "100");
    press("clear");
    expectCell("lecTable", 3, 1, "0");
    user->key("r", "Control_L");
    EXPECT_EQ(cell("lecTable", 3, 0), "Tx Packets/s");
    EXPECT_EQ(cell("lesBusTable", 3, 0), "Rx Packets/s");
    expectCell("lecTable", 3, 1, "0");
    expectCell("lecTable", 4, 2, "0");
    EXPECT_EQ(cell("lecTable", 2, 2), "  0/  41");
    // Each row has its own: they change places.
    ctl("set lec 1.1 row 1 vci 41; set lec 1.1 row 2 vci 40; set lec 1.1 row 1 txPackets 7; "
        "set lec 1.1 row 2 txPackets 400");
    std::string other;
    user->until([&] { return other = cell("lecTable", 3, 2), other != "0"; }, 2);
    EXPECT_NE(other, "unknown");
    EXPECT_EQ(cell("lecTable", 3, 1), "0");
    user->key("r", "Control_L");
    EXPECT_EQ(cell("lecTable", 3, 0), "Tx Packets");
    expectCell("lecTable", 3, 2, "300");
    expectCell("lecTable", 3, 1, "0");
}

// A rate is of one driver, and of the client that is shown.
TEST_F(RatesInPlace, OfWhatIsShown) {
    startOn("lecStats", "set lec 1.1 state 7; rows lec 1.1 1; set lec 1.1 row 1 txPackets 100; "
                        "set lec 1.2 state 7; rows lec 1.2 1; set lec 1.2 row 1 txPackets 50000");
    user->key("r", "Control_L");
    expectCell("lecTable", 3, 1, "0");
    std::set<std::string> seen;
    show("lecTabs", 2);
    user->until([&] { return seen.insert(cell("lecTable", 3, 1)), seen.contains("unknown"); }, 2);
    expectCell("lecTable", 3, 1, "0");
    startDriver();
    ctl("set lec 1.2 state 7; rows lec 1.2 1; set lec 1.2 row 1 txPackets 60000");
    user->until([&] { return seen.insert(cell("lecTable", 3, 1)), false; }, 1);
    expectCell("lecTable", 3, 1, "0");
    EXPECT_EQ(seen, (std::set<std::string>{"0", "unknown"}));
}

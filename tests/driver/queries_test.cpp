#include "driver/dai_io.h"
#include "tests/support/scripteddriver.h"

namespace {

// Queries of adapter 1, and with link 2, unit 3, rows 4 and 5. One of each form; the windows' tests ask all
// of them of the simulator, which has a table of its own.
struct Case {
    const char *trace, *request;
    bool (*ask)(DriverChannel&);
};
#define ASK(Info, operation) [](DriverChannel& d) { return static_cast<bool>(Info(d, 1).operation); }
const Case cases[] = {
    {"GET_LEC_STATE", "1400 0100 01 00 2000 1000 0100 0000 adde", ASK(lecInfo, GetState())},
    {"GET_LEC_STATE", "1400 0100 02 03 2000 1000 0100 0000 adde", ASK(lecInfo, GetState(2, 3))},
    {"GET_LEC_STATS", "1400 0200 02 03 bc03 1000 0100 0000 adde", ASK(lecInfo, GetStats(2, 3))},
    {"GET_NROWS", "1400 0300 01 00 1000 1000 0100 0000 adde", ASK(lecInfo, GetNRows())},
    {"GET_NROWS", "1400 0300 02 03 1000 1000 0100 0000 adde", ASK(lecInfo, GetNRows(2, 3))},
    {"GET_LECS_TBL", "1600 0400 01 00 1000 1000 0100 0000 adde", ASK(lecsInfo, GetTable())},
    {"GET_LECS_TBL", "1600 0400 02 03 3d00 1000 0400 0500 adde", ASK(lecsInfo, GetTable(2, 3, 4, 5))},
    {"GET_BRDS_STATE", "8100 0100 02 03 1600 1000 0100 0000 adde", ASK(aalInfo, GetBoardState(2, 3))},
    {"GET_BRDS_MACADDR", "8100 0200 01 00 1700 1000 0100 0000 adde 04",
     ASK(aalInfo, GetBoardMacAddress(0x1204))},  // the low byte names the board
    {"DaiSigLnkStatus", "2100 0100 02 03 4c00 1000 0100 0000 adde", ASK(sigInfo, GetLinkState(2, 3))},
    {"GET_VC_TBL", "0100 0400 02 03 7400 1000 0400 0500 adde", ASK(vccInfo, GetTable(2, 3, 4, 5))},
    {"GET_NROWS", "4200 0500 02 03 1000 1000 0100 0000 adde", ASK(ip1577Info, GetPvcNRows(2, 3))},
    {"GET_IP_PVC_TBL", "4200 0600 02 03 6000 1000 0400 0500 adde", ASK(ip1577Info, GetPvcTable(2, 3, 4, 5))},
};
#undef ASK

}  // namespace

TEST(Queries, RequestsTraceAndFailure) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.request);
        ScriptedDriver driver;
        LogCapture log;
        driver.expect(c.request).rows(7);
        EXPECT_TRUE(c.ask(driver.channel()));
        EXPECT_NE(log.text.find("\n" + std::string(c.trace) + "\nPrim:"), std::string::npos) << log.text;
        driver.expect(c.request).resp(1);
        EXPECT_FALSE(c.ask(driver.channel())) << "a failed request gives a false view, or 0 rows";
    }
}

TEST(Queries, ShortRepliesReadAsZerosNotAsTheReplyBefore) {
    ScriptedDriver driver;
    lecInfo info(driver.channel(), 0);
    driver.expectAny().data(ByteVector(940, 0xee));
    EXPECT_EQ(info.GetStats().mtuClass(), 0xee);
    driver.expect("14 00 02 00 00 00 bc 03 10 00 01 00 00 00 ad de").data(ByteVector(21, 0x11));
    const LecStatsView stats = info.GetStats();
    EXPECT_EQ(stats.elanType(), 0x11);
    EXPECT_EQ(stats.mtuClass(), 0);
    EXPECT_EQ(stats.elanName(), "");
    EXPECT_EQ(stats.vci(LecConnection::multicastForward), 0);
}

TEST(Queries, SignallingKeepsTheBufferItWasMadeWith) {
    ScriptedDriver driver;
    LogCapture log;
    sigInfo info(driver.channel(), 0);
    EXPECT_EQ(log.take(), "Realloc:Old Size-     0 NewSize-    76\n");
    info.prepareMsg(10'000);
    EXPECT_EQ(info.header().Size, 76);
    driver.expect("21 00 01 00 00 00 4c 00 10 00 01 00 00 00 ad de").data(ByteVector(9999, 9));
    EXPECT_EQ(info.GetLinkState().ilmi(), 9);
    EXPECT_EQ(info.capacity(), 76U);
    EXPECT_EQ(log.take().find("Realloc"), std::string::npos);
}

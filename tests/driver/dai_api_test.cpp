#include "driver/dai_api.h"

#include "driver/channel.h"
#include "driver/reqparam.h"
#include "tests/support/scripteddriver.h"

TEST(DaiApi, RefusesWhatIsNoMessageOrNoChannelWithoutACall) {
    ScriptedDriver driver;
    const struct {
        int descriptor;
        std::uint16_t size;
        unsigned resp;
    } cases[] = {{7, 17, 206}, {7, 65535, 206}, {7, 15, 206}, {7, 0, 206}, {0, 16, 201}, {-1, 16, 201}};
    for (const auto& c : cases) {
        std::array<std::uint8_t, 16> message{};
        req_param_t{.Size = c.size}.pack(message);
        EXPECT_EQ(dai_req(c.descriptor, message), -1);
        EXPECT_EQ(req_param_t::unpack(message).Resp, c.resp) << c.descriptor << " " << c.size;
    }
    std::array<std::uint8_t, 15> tooShort{};
    EXPECT_EQ(dai_req(7, tooShort), -1);
    EXPECT_EQ(dai_close(0, 0), 0) << "0 is no channel";
    EXPECT_TRUE(driver.requests().empty() && driver.closed().empty());
}

TEST(ReqParam, OutcomesAndTheirTrace) {
    const struct {
        Answer answer;
        int result;
        std::uint16_t resp;
    } cases[] = {
        {Answer(), 0, 0},
        {Answer().resp(42), -1, 42},
        {Answer().unanswered(), -1, 57005},
        {Answer().error(EACCES), -1, 203},
        {Answer().error(EIO), -1, 207},
        {Answer().error(ENODEV), -1, 201},
        {Answer().error(EBUSY), -1, 202},
        {Answer().error(132), -1, 205},
    };
    for (const auto& c : cases) {
        ScriptedDriver driver;
        LogCapture log;
        reqParam block(driver.channel(), {.Prim = 129, .Type = 1, .Size = 22, .SzIO = 16, .RowM = 1});
        EXPECT_EQ(log.take(), "Realloc:Old Size-     0 NewSize-    22\n");
        driver.expect("81 00 01 00 00 00 16 00 10 00 01 00 00 00 ad de") = c.answer;
        EXPECT_EQ(block.daiRequest(), c.result);
        EXPECT_EQ(block.result(), c.result);
        EXPECT_EQ(block.header().Resp, c.resp);
        const std::string line = "Prim:129 Type:1 Link:0 Unit:0 Size:22 SzIO:16 RowM:1 NRow:0 Resp:";
        EXPECT_EQ(log.take(), line + "57005\n" + line + std::to_string(c.resp) + "\n" +
                                  (c.result ? "Dai Request Failure\n" : ""));
    }
}

TEST(ReqParam, TheBufferOnlyGrowsAndKeepsTheHeader) {
    LogCapture log;
    DriverChannel closed;
    reqParam block(closed, {.Prim = 22, .Size = 16});
    EXPECT_EQ(log.take(), "Realloc:Old Size-     0 NewSize-    16\n");
    EXPECT_EQ(block.SetupMsg(16).size(), 0U);
    EXPECT_EQ(block.SetupMsg(3).size(), 0U);
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(block.SetupMsg(100).size(), 84U);
    EXPECT_EQ(log.take(), "Realloc:Old Size-    16 NewSize-   100\n");
    block.data()[83] = 1;
    EXPECT_EQ(block.SetupMsg(50)[83], 1);
    EXPECT_EQ(block.SetupMsg(5'000'000).size(), 4'999'984U);
    EXPECT_EQ(block.header(), (req_param_t{.Prim = 22, .Size = 16}));
}

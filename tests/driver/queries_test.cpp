#include "driver/dai_io.h"
#include "tests/support/scripteddriver.h"

#include <fmt/format.h>
#include <functional>
#include <gtest/gtest.h>

namespace {

// One object per service, for adapter 1.
struct Services {
    explicit Services(DriverChannel& channel)
        : vcc(channel, 1), lec(channel, 1), lecs(channel, 1), sig(channel, 1), ip(channel, 1),
          aal(channel, 1) {}

    vccInfo vcc;
    lecInfo lec;
    lecsInfo lecs;
    sigInfo sig;
    ip1577Info ip;
    aalInfo aal;
};

struct Case {
    const char* trace;
    const char* kind;   // Prim and Type
    const char* size;   // of the operation without arguments on a fresh object
    const char* sized;  // of a table with link 2, unit 3, rows 4 and 5; else null
    std::function<bool(Services&)> ask;
    std::function<bool(Services&)> askAddressed;  // with link 2, unit 3

    std::string plain() const { return bytes("01 00", size, "01 00 00 00"); }
    std::string addressed() const {
        return sized ? bytes("02 03", sized, "04 00 05 00") : bytes("02 03", size, "01 00 00 00");
    }

  private:
    std::string bytes(const char* place, const char* length, const char* rows) const {
        return fmt::format("{} {} {} 10 00 {} ad de", kind, place, length, rows);
    }
};

#define REPLY(service, operation)                                                                            \
    [](Services& s) { return static_cast<bool>(s.service.operation()); },                                    \
        [](Services& s) { return static_cast<bool>(s.service.operation(2, 3)); }
#define COUNT(service, operation)                                                                            \
    [](Services& s) { return s.service.operation() == 0; },                                                  \
        [](Services& s) { return s.service.operation(2, 3) == 0; }
#define TABLE(service, operation)                                                                            \
    [](Services& s) { return static_cast<bool>(s.service.operation()); },                                    \
        [](Services& s) { return static_cast<bool>(s.service.operation(2, 3, 4, 5)); }

// One of each form; the windows' tests ask all of them of the simulator, which has a table of its own.
const Case cases[] = {
    {"GET_LEC_STATE", "14 00 01 00", "20 00", nullptr, REPLY(lec, GetState)},
    {"GET_LEC_STATS", "14 00 02 00", "bc 03", nullptr, REPLY(lec, GetStats)},
    {"GET_NROWS", "14 00 03 00", "10 00", nullptr, COUNT(lec, GetNRows)},
    {"GET_LECS_TBL", "16 00 04 00", "10 00", "3d 00", TABLE(lecs, GetTable)},
    {"GET_BRDS_STATE", "81 00 01 00", "16 00", nullptr, REPLY(aal, GetBoardState)},
    {"DaiSigLnkStatus", "21 00 01 00", "4c 00", nullptr, REPLY(sig, GetLinkState)},
    {"GET_VC_TBL", "01 00 04 00", "10 00", "74 00", TABLE(vcc, GetTable)},
    {"GET_NROWS", "42 00 05 00", "10 00", nullptr, COUNT(ip, GetPvcNRows)},
    {"GET_IP_PVC_TBL", "42 00 06 00", "10 00", "60 00", TABLE(ip, GetPvcTable)},
};

// A row count has no view: a request that failed counts 0 rows.
bool isCount(const Case& c) {
    return c.trace == std::string_view("GET_NROWS");
}

}  // namespace

TEST(Queries, RequestsTraceAndFailure) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.plain());
        ScriptedDriver driver;
        LogCapture log;
        Services services(driver.channel());
        log.take();
        driver.expect(c.plain());
        EXPECT_TRUE(c.ask(services));
        const std::string text = log.take();
        EXPECT_NE(("\n" + text).find("\n" + std::string(c.trace) + "\nPrim:"), std::string::npos) << text;
        driver.expect(c.addressed()).resp(1);
        EXPECT_EQ(c.askAddressed(services), isCount(c)) << "a failed request gives a false view";
    }
}

TEST(Queries, ABoardIsNamedInTheData) {
    ScriptedDriver driver;
    aalInfo info(driver.channel(), 1);
    for (const int board : {3, 0x1204}) {  // its low byte
        driver.expect(fmt::format("81 00 02 00 01 00 17 00 10 00 01 00 00 00 ad de {:02x}", board & 255));
        EXPECT_TRUE(info.GetBoardMacAddress(static_cast<std::uint16_t>(board)));
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

#include "driver/dai_io.h"
#include "tests/support/scripteddriver.h"

namespace {

// A driver with a table of `rows` rows: answers row counts, and table requests with as many rows from RowM on
// as were asked for, fit into Size and are there; moves RowM on. A row holds its number (from 0) in its first
// two bytes, and in its last byte its low byte.
ScriptedDriver::Responder tableOf(int rows, std::size_t rowSize) {
    return [=](std::span<const std::uint8_t> request, Answer& answer) {
        const int type = wordAt(request, 2), marker = wordAt(request, 10), wanted = wordAt(request, 12);
        if (type == 3 || type == 5) {
            answer.rows(static_cast<std::uint16_t>(rows));
            return;
        }
        const int fit = static_cast<int>((request.size() - 16) / rowSize);
        const int count = std::min({wanted, fit, rows - (marker - 1)});
        ByteVector data(static_cast<std::size_t>(count) * rowSize);
        for (int i = 0; i < count; ++i) {
            const int row = marker - 1 + i;
            const std::size_t at = static_cast<std::size_t>(i) * rowSize;
            data[at] = data[at + rowSize - 1] = static_cast<std::uint8_t>(row);
            data[at + 1] = static_cast<std::uint8_t>(row >> 8);
        }
        answer.data(std::move(data)).rows(static_cast<std::uint16_t>(count));
        answer.rowMarker(static_cast<std::uint16_t>(marker + count));
    };
}

// The number of rows when each holds its number, else -1.
template <typename Row> int wholeRows(const TableView<Row>& table) {
    int number = 0;
    for (const Row row : table) {
        const auto bytes = row.bytes();
        if (wordAt(bytes, 0) != number || bytes.back() != static_cast<std::uint8_t>(number)) return -1;
        ++number;
    }
    return static_cast<std::size_t>(number) == table.size() ? number : -1;
}

template <typename Info, typename Get>
void expectTable(std::size_t rowSize, int rows, std::size_t requests, std::uint16_t size,
                 std::string_view trace, Get get) {
    SCOPED_TRACE(std::string(trace) + " " + std::to_string(rows));
    ScriptedDriver driver;
    LogCapture log;
    driver.otherwise(tableOf(rows, rowSize));
    Info info(driver.channel(), 0);
    for (int refresh = 0; refresh < 2; ++refresh) {
        const auto table = get(info);
        EXPECT_EQ(static_cast<bool>(table), rows != 0);
        EXPECT_EQ(wholeRows(table), rows);
        const auto& sent = driver.requests();
        ASSERT_EQ(sent.size(), (requests + 1) * static_cast<std::size_t>(refresh + 1));
        if (requests) {
            EXPECT_EQ(info.header().NRow, rows);
            EXPECT_EQ(info.header().Size,
                      std::min<std::size_t>(16 + static_cast<std::size_t>(rows) * rowSize, 65535));
            EXPECT_EQ(wordAt(sent.back(), 6), size);
            EXPECT_EQ(sent[1].size(), size);
        }
        const std::string text = log.take();
        EXPECT_EQ(text.find(std::string(trace) + "\n") != std::string::npos, requests != 0);
        EXPECT_EQ(text.find("Incr ") != std::string::npos, requests > 1);
        EXPECT_TRUE(refresh == 0 || text.find("Realloc") == std::string::npos) << "a refresh allocated";
    }
}

constexpr auto entire = [](auto& info) { return info.GetEntireTable(); };
constexpr auto entirePvc = [](auto& info) { return info.GetEntirePvcTable(); };

}  // namespace

TEST(Tables, ChunkArithmetic) {
    struct Case {
        int rows;
        std::size_t requests;
        std::uint16_t size;
    };
    for (const Case& c : {Case{0, 0, 0}, {1, 1, 88}, {13, 1, 952}, {14, 2, 952}, {65535, 5042, 952}})
        expectTable<lecInfo>(72, c.rows, c.requests, c.size, "GET_LEC_TBL", entire);
    for (const Case& c : {Case{15, 1, 976}, {16, 2, 976}})
        expectTable<lesInfo>(64, c.rows, c.requests, c.size, "GET_LES_TBL", entire);
    for (const Case& c : {Case{50, 1, 1016}, {51, 2, 1016}})
        expectTable<vccInfo>(20, c.rows, c.requests, c.size, "GET_VC_TBL", entire);
    for (const Case& c : {Case{7279, 1, 65527}, {7280, 2, 65527}, {65535, 10, 65527}})
        expectTable<lecsInfo>(9, c.rows, c.requests, c.size, "GET_LECS_TBL", entire);
    for (const Case& c : {Case{1169, 1, 65480}, {1170, 2, 65480}, {65535, 57, 65480}})
        expectTable<ip1577Info>(56, c.rows, c.requests, c.size, "GET_IP_TBL", entire);
    for (const Case& c : {Case{4094, 1, 65520}, {4095, 2, 65520}, {65535, 17, 65520}})
        expectTable<ip1577Info>(16, c.rows, c.requests, c.size, "GET_IP_PVC_TBL", entirePvc);
}

TEST(Tables, ChunksGoOutAsTheReplyBeforeLeftTheHeader) {
    ScriptedDriver driver;
    lecInfo info(driver.channel(), 1);
    driver.expect("14 00 03 00 01 00 10 00 10 00 01 00 00 00 ad de").rows(30);
    driver.expect("14 00 04 00 01 00 b8 03 10 00 01 00 0d 00 ad de").rows(12).rowMarker(0x4321).data("07 07");
    Answer& third = driver.expect("14 00 04 00 01 00 b8 03 10 00 21 43 0c 00 ad de").rows(0).rowMarker(2);
    for (const std::size_t field : {0U, 2U, 4U, 6U, 8U}) third.header(field, 65535);  // these are not taken
    driver.expect("14 00 04 00 01 00 b8 03 10 00 02 00 00 00 ad de").rows(65535).data(ByteVector(65519, 1));
    const auto table = info.GetEntireTable();
    EXPECT_EQ(table.size(), 12U + 13U);
    EXPECT_EQ(table[0].bytes()[0], 7);
    EXPECT_EQ(table[11].bytes()[71], 0);
    EXPECT_EQ(table[12].bytes()[0], 1);
    EXPECT_EQ(info.header().NRow, 25);
}

// 50 rows in four chunks. The driver of this test does not move on when a chunk fails, so the chunk behind it
// asks for the same rows and the last 11 are left out.
TEST(Tables, OnlyTheLastChunksFailureOrSilenceIsTheTables) {
    const struct {
        int failing, error;  // call 1 is the row count
        std::size_t requests;
        int rows;
    } cases[] = {{2, EIO, 5, 39}, {3, EIO, 5, 39},  {4, EIO, 5, 39},
                 {5, EIO, 5, 0},  {3, ETIME, 3, 0}, {3, ENXIO, 3, 0}};
    for (const auto& c : cases) {
        ScriptedDriver driver;
        lecInfo info(driver.channel(), 0);
        driver.otherwise(tableOf(50, 72));
        driver.failCall(c.failing, c.error);
        const auto table = info.GetEntireTable();
        EXPECT_EQ(static_cast<bool>(table), c.rows != 0);
        EXPECT_EQ(wholeRows(table), c.rows);
        EXPECT_EQ(driver.requests().size(), c.requests)
            << "after a silence each further wait would be as long";
    }
}

// With one request and with chunks: the same rows, another byte in the last one, another row.
TEST(Tables, TellsATableThatCameAsItWas) {
    for (const int rows : {5, 50}) {
        SCOPED_TRACE(rows);
        ScriptedDriver driver;
        lecInfo info(driver.channel(), 0);
        const auto same = [&](int fetched, std::uint8_t lastByte) {
            driver.otherwise([=, reply = tableOf(fetched, 72)](auto request, Answer& answer) {
                reply(request, answer);
                if (wordAt(request, 2) != 4) return;
                ByteVector data(request.size() - 16, lastByte);
                answer.data(std::move(data));
            });
            EXPECT_EQ(info.GetEntireTable().size(), static_cast<std::size_t>(fetched));
            return info.sameTable();
        };
        EXPECT_FALSE(same(rows, 1));
        EXPECT_TRUE(same(rows, 1));
        EXPECT_FALSE(same(rows, 2));
        EXPECT_FALSE(same(rows + 1, 2));
        driver.failCall(2, EIO);
        EXPECT_FALSE(info.GetEntireTable() && rows == 5);
        EXPECT_EQ(same(rows + 1, 2), rows == 5) << "what failed left a chunk out";
    }
}

// What is on the screen reads the rows of the last table while the next one is asked for.
TEST(Tables, ATableStaysUntilAnotherOneIsWhole) {
    for (const int rows : {5, 50}) {  // in one request, and in four
        for (const int failing : {1, 2, 3}) {
            ScriptedDriver driver;
            lecInfo info(driver.channel(), 0);
            driver.otherwise(tableOf(rows, 72));
            const auto table = info.GetEntireTable();
            driver.otherwise(tableOf(rows, 72));
            driver.failCall(failing, ETIME);
            EXPECT_EQ(static_cast<bool>(info.GetEntireTable()), rows == 5 && failing == 3);
            EXPECT_EQ(wholeRows(table), rows);
        }
    }
}

TEST(Tables, AnInterruptionEndsAQueryBetweenItsRequests) {
    for (const std::size_t allowed : {1U, 2U, 4U}) {
        ScriptedDriver driver;
        driver.otherwise(tableOf(50, 72));
        lecInfo info(driver.channel(), 0);
        driver.channel().interrupt = [&] { return driver.requests().size() >= allowed; };
        EXPECT_FALSE(info.GetEntireTable());
        EXPECT_EQ(driver.requests().size(), allowed);
        EXPECT_EQ(info.outcome(), Outcome::withheld);
        EXPECT_EQ(driver.channel().unanswered(), 0U) << "the driver was not asked";
        driver.channel().interrupt = [] { return false; };
        EXPECT_EQ(wholeRows(info.GetEntireTable()), 50);
        driver.channel().interrupt = {};
    }
}

TEST(Tables, NoTableWithoutARowCount) {
    for (const bool written : {false, true}) {
        ScriptedDriver driver;
        vccInfo info(driver.channel(), 0);
        Answer& answer = driver.expectAny().resp(5);
        if (written) answer.rows(65535);
        EXPECT_FALSE(info.GetEntireTable());
        driver.expectAny().resp(5).rows(written ? 9 : 0);
        EXPECT_EQ(info.GetNRows(), written ? 9 : 0) << "a plain row count is what NRow holds";
    }
}

TEST(Tables, NoMoreRowsThanWereAskedFor) {
    ScriptedDriver driver;
    lecsInfo info(driver.channel(), 0);
    driver.expect("16 00 04 00 00 00 2b 00 10 00 01 00 03 00 ad de").rows(65535).data(ByteVector(18, 2));
    const auto table = info.GetTable(1, 3);
    EXPECT_EQ(table.size(), 3U);
    EXPECT_EQ(table[1].kind(), 2);
    EXPECT_EQ(table[2].kind(), 0) << "what did not come reads as zeros";
    EXPECT_EQ(info.header().NRow, 3);
    driver.expectAny().rows(1);
    EXPECT_EQ(info.GetTable(1, 3).size(), 1U);
    driver.expect("16 00 04 00 00 00 10 00 10 00 01 00 00 00 ad de");
    const auto none = info.GetTable(1, 0);
    EXPECT_TRUE(none);
    EXPECT_EQ(none.size(), 0U);
}

TEST(Tables, LooksUpTheFirstCircuitOfTheLastTable) {
    ScriptedDriver driver;
    vccInfo info(driver.channel(), 0);
    EXPECT_FALSE(info.GetVciEntry(0)) << "no table yet";
    ByteVector rows(60);
    rows[0] = 16, rows[20] = 5, rows[21] = 1, rows[40] = 16;
    rows[12] = 1, rows[52] = 2;
    driver.expectAny().rows(4).data(rows);
    EXPECT_EQ(info.GetTable(1, 3).size(), 3U);
    EXPECT_EQ(info.GetVciEntry(16).tx(), 1U);
    EXPECT_TRUE(info.GetVciEntry(0x105));
    EXPECT_FALSE(info.GetVciEntry(5));
    EXPECT_FALSE(info.GetVciEntry(0)) << "a row beyond the table";
    driver.expectAny().rows(2).data(rows).resp(1);
    EXPECT_FALSE(info.GetTable(1, 3));
    EXPECT_FALSE(info.GetVciEntry(16)) << "the table is gone";
    EXPECT_EQ(driver.requests().size(), 2U);
    driver.expect("01 00 03 00 00 00 10 00 10 00 01 00 00 00 ad de");  // not the rows of the table before
    EXPECT_EQ(info.GetNRows(), 0);
}

// Asking a driver that refuses, is silent, or answers less than it says.
#include "metrics/reading.h"
#include "tests/support/scripteddriver.h"
#include "tests/support/simulator.h"

#include <cerrno>
#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>

using metrics::Group;
using metrics::Place;
using metrics::Reader;
using metrics::Reading;
using metrics::Service;
using metrics::Unknown;

namespace {

// Every service is there: all states are 6, every table has two rows.
void answer(std::span<const std::uint8_t> request, Answer& answer) {
    const int prim = wordAt(request, 0), type = wordAt(request, 2);
    const bool adapter = prim == 129, signalling = prim == 33;
    if (!adapter && !signalling && (type == 3 || type == 4)) answer.rows(2);
    answer.data(ByteVector{6, 0, 0, 0});
}

std::vector<Reading> readAll(Reader& reader) {
    std::vector<Reading> readings;
    for (const Place& place : metrics::placesOf(1)) readings.push_back(reader.read(place));
    return readings;
}

struct Missing {
    int known = 0, refused = 0, silent = 0, notAsked = 0, other = 0;
};
Missing missing(const std::vector<Reading>& readings) {
    Missing counts;
    for (const Reading& reading : readings)
        for (const Group& group : metrics::groupsOf(reading.place().service)) {
            const auto why = reading.missing(group);
            ++(!why                        ? counts.known
               : *why == Unknown::refused  ? counts.refused
               : *why == Unknown::silent   ? counts.silent
               : *why == Unknown::notAsked ? counts.notAsked
                                           : counts.other);
        }
    return counts;
}

struct Simulated : SampleRoot {
    Simulated() { simulator.ctl("clock step 100"), channel.open(O_RDONLY); }

    Simulator simulator;
    DriverChannel channel;
};

}  // namespace

// Four single replies and the circuits of the adapter; the link; state, statistics and a table of 4 LECs, 8
// LESs, the LECS and the IP client. A table is two requests.
TEST(MetricReading, EachQueryIsSentOnceAndInOrder) {
    ScriptedDriver driver;
    driver.otherwise(answer);
    Reader reader(driver.channel());
    const Missing counts = missing(readAll(reader));
    EXPECT_EQ(counts.known, 4 + 2 + 4 * 4 + 8 * 3 + 3 + 3);
    EXPECT_EQ(counts.refused + counts.silent + counts.notAsked + counts.other, 0);
    EXPECT_TRUE(reader.owed().empty());
    std::string sent;
    for (const ByteVector& request : driver.requests()) {
        EXPECT_EQ(request[4], 1);  // the second adapter
        sent += fmt::format("{}/{}.{} ", wordAt(request, 0), wordAt(request, 2), request[5]);
    }
    std::string expected = "129/2.0 129/4.0 129/3.0 1/3.0 1/4.0 33/1.0 ";
    const auto service = [&](int prim, int count) {
        for (int unit = 0; unit < count; ++unit)
            expected += fmt::format("{0}/1.{1} {0}/2.{1} {0}/3.{1} {0}/4.{1} ", prim, unit);
    };
    service(20, 4), service(21, 8), service(22, 1), service(66, 1);
    EXPECT_EQ(sent, expected);
    EXPECT_EQ(driver.requests()[0][16], 2);  // its board
}

// Whichever request it is.
TEST(MetricReading, AfterARequestWithoutAnAnswerNothingMoreIsAsked) {
    const std::vector<ByteVector> all = [] {
        ScriptedDriver driver;
        driver.otherwise(answer);
        Reader reader(driver.channel());
        readAll(reader);
        return driver.requests();
    }();
    for (const int error : {ETIME, ENXIO, EPROTO})
        for (int k = 1; k <= static_cast<int>(all.size()); ++k) {
            ScriptedDriver driver;
            driver.otherwise(answer);
            driver.channel();
            driver.failCall(k, error);
            Reader reader(driver.channel());
            const Missing counts = missing(readAll(reader));
            ASSERT_EQ(driver.requests().size(), static_cast<std::size_t>(k));
            ASSERT_EQ(reader.owed().size(), 1U);
            EXPECT_EQ(reader.owed()[0].why, Unknown::silent);
            EXPECT_GE(counts.silent, 1) << k;
            EXPECT_EQ(counts.refused + counts.other, 0) << k;
        }
}

TEST(MetricReading, ARefusalIsOfOneQuery) {
    const struct {
        int call;  // see EachQueryIsSentOnceAndInOrder
        int refused;
    } cases[] = {
        {1, 1},          // the adapter's MAC address
        {4, 2},          // the number of circuits, which signalling wants, too
        {5, 2}, {7, 4},  // a LEC's state: nobody knows whether it is there, and nothing more is asked of it
        {8, 2},          // its statistics, which its connections are of, too
        {9, 1}, {10, 1},
    };
    for (const auto& c : cases) {
        ScriptedDriver driver;
        driver.otherwise(answer);
        driver.channel();
        driver.failCall(c.call, EIO);
        Reader reader(driver.channel());
        const Missing counts = missing(readAll(reader));
        EXPECT_EQ(counts.refused, c.refused) << c.call;
        EXPECT_EQ(counts.silent + counts.notAsked + counts.other, 0) << c.call;
        ASSERT_EQ(reader.owed().size(), 1U);
        EXPECT_EQ(reader.owed()[0].why, Unknown::refused);
        EXPECT_EQ(reader.owed()[0].resp, 207);
    }
}

TEST(MetricReading, AnAbsentServiceIsAskedForItsStateOnly) {
    ScriptedDriver driver;
    driver.otherwise([](auto, Answer& reply) { reply.data(ByteVector{0, 0, 0, 0}); });
    Reader reader(driver.channel());
    const Reading reading = reader.read({Service::les, 0, 7});
    EXPECT_TRUE(reading.absent());
    EXPECT_EQ(driver.requests().size(), 1U);
    EXPECT_TRUE(reader.owed().empty());
    for (const Group& group : metrics::groupsOf(Service::les).subspan(1))
        EXPECT_EQ(reading.missing(group), Unknown::absent);
}

// What did not come is not taken for zeros, and what came is told.
TEST(MetricReading, AnswersThatAreCutOrInPieces) {
    Simulated driver;
    driver.simulator.ctl("rows lec 1.1 30");
    const struct {
        const char* fault;
        const char* what;  // query and why it is missing, of each of the LEC's groups
    } cases[] = {
        {"lec.stats nth 1 resp 0", "- - - -"},
        {"lec.state nth 1 short 16", "incomplete incomplete incomplete incomplete"},
        {"lec.state nth 1 short 19", "incomplete incomplete incomplete incomplete"},
        {"lec.stats nth 1 short 955", "- incomplete incomplete -"},
        {"lec.stats nth 1 short 956", "- - - -"},
        {"lec.stats nth 1 short 3", "- incomplete incomplete -"},
        {"lec.stats nth 1 dead", "- incomplete incomplete -"},
        {"lec.rows nth 1 short 4", "- - - incomplete"},
        {"lec.rows nth 1 dead", "- - - incomplete"},
        {"lec.table nth 1 short 16", "- - - incomplete"},
        {"lec.table nth 3 short 100", "- - - incomplete"},
        {"lec.table nth 3 resp 5", "- - - refused"},     // the last part
        {"lec.table nth 2 resp 5", "- - - incomplete"},  // another one
        {"lec.table nth 1 nrow 65535", "- - - -"},       // a part is no larger than what was asked for
    };
    for (const auto& c : cases) {
        driver.simulator.ctl(std::string("fault ") + c.fault);
        Reader reader(driver.channel);
        const Reading reading = reader.read({Service::lec, 0, 0});
        std::string what;
        for (const Group& group : metrics::groupsOf(Service::lec)) {
            const auto why = reading.missing(group);
            what += !why                          ? "- "
                    : *why == Unknown::incomplete ? "incomplete "
                    : *why == Unknown::refused    ? "refused "
                                                  : "else ";
        }
        EXPECT_EQ(what, std::string(c.what) + ' ') << c.fault;
        EXPECT_LE(reading.rows(metrics::groupsOf(Service::lec)[3]), 30U) << c.fault;
        driver.simulator.ctl("fault clear");
    }
}

TEST(MetricReading, TablesOfAnyLength) {
    Simulated driver;
    const Group& connections = metrics::groupsOf(Service::lec)[3];
    for (const std::size_t rows : {0U, 1U, 13U, 14U, 65535U}) {
        driver.simulator.ctl(fmt::format("rows lec 1.1 {}", rows));
        Reader reader(driver.channel);
        const Reading reading = reader.read({Service::lec, 0, 0});
        EXPECT_FALSE(reading.missing(connections));
        ASSERT_EQ(reading.rows(connections), rows);
        if (rows == 0) continue;
        driver.simulator.ctl(fmt::format("set lec 1.1 row {} txPackets 4711", rows));
        Reader again(driver.channel);
        const Reading changed = again.read({Service::lec, 0, 0});
        EXPECT_EQ(changed.value(connections, connections.metrics[4], rows - 1),
                  metrics::Value(std::uint32_t{4711}));
    }
}
